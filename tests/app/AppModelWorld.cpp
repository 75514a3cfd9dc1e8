#include "AppModelWorld.h"

#include <algorithm>
#include <regex>
#include <set>

#include "blocking/DomainRules.h"
#include "blocking/HostsDocument.h"
#include "support/Files.h"

namespace brindlet::testing {

namespace fs = std::filesystem;

const std::string kWorldPlainHosts = "127.0.0.1 localhost\n::1 localhost ip6-localhost\n";

AppModelWorld::AppModelWorld(std::shared_ptr<const FileService> files)
    : AppModelWorld(fs::path(), std::move(files)) {}

AppModelWorld::AppModelWorld(const fs::path& rootFolder, std::shared_ptr<const FileService> files)
    : files(std::move(files)) {
  if (rootFolder.empty()) {
    ownFolder.emplace();
    root = ownFolder->path();
  } else {
    root = rootFolder;
  }
  folders = PlatformFolders{.applicationSupport = root / "Application Support",
                            .documents = root / "Documents"};
  hostsPath = root / "hosts";
  writeBytes(hostsPath, kWorldPlainHosts);
  auto copier = std::make_shared<FaultyFileService>();
  copier->setDurable(false);
  runner->byDefault = [copier](const fs::path& source, const fs::path& destination) {
    copyFileAtomically(source, destination, 0644, *copier);
  };
}

AppModel& AppModelWorld::launch() {
  compose().recover();
  return *model_;
}

AppModel& AppModelWorld::compose() {
  // The old model goes first, as when the program quits before it starts again.
  model_.reset();
  model_ = AppModel::compose(AppModel::Composition{.folders = folders,
                                                   .hostsPath = hostsPath,
                                                   .runner = runner,
                                                   .scheduler = scheduler,
                                                   .clock = clock,
                                                   .calendar = calendar,
                                                   .files = files});
  return *model_;
}

std::string AppModelWorld::hostsText() const { return readBytes(hostsPath); }

std::string planText(const PersistedState& state) {
  static const std::regex uuid(
      "[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}");
  return std::regex_replace(encodeState(state, JsonWriter::Style::compact), uuid, "-");
}

std::string planWithoutHistory(PersistedState state) {
  state.revision = 0;
  state.auditEvents.clear();
  for (FocusTask& task : state.tasks) task.updatedAt = task.createdAt;
  // Whether the session needs attention is the engine's note to itself, not part of the plan.
  if (state.activeSession) state.activeSession->state = SessionState::active;
  return planText(state);
}

namespace {

void checkWholeDocuments(const fs::path& folder, const std::string& what,
                         std::vector<std::string>& problems, std::set<fs::path>* knownWhole) {
  for (const fs::path& file : filesIn(folder)) {
    if (knownWhole != nullptr && knownWhole->count(file) > 0) continue;
    try {
      (void)LocalStore(file).load();
      if (knownWhole != nullptr) knownWhole->insert(file);
    } catch (const std::exception& error) {
      problems.push_back(what + " " + file.filename().string() + " is not whole: " + error.what());
    }
  }
}

std::vector<std::string> expectedHostsOf(const BlockSession& session) {
  std::vector<std::string> domains;
  for (const DomainRule& rule : session.group.rules) {
    if (rule.isEnabled) domains.push_back(rule.domain);
  }
  return DomainRules::expandedHosts(domains);
}

}  // namespace

std::vector<std::string> problemsWithFilesOf(const AppModelWorld& world,
                                             std::set<fs::path>* knownWhole) {
  std::vector<std::string> problems;
  std::optional<PersistedState> state;
  try {
    state = world.stored();
  } catch (const BrindletError& error) {
    problems.push_back("the state file doesn't load: " + error.description());
  }
  if (state) {
    if (state->revision != static_cast<std::int64_t>(state->auditEvents.size())) {
      problems.push_back("revision " + std::to_string(state->revision) + " with " +
                         std::to_string(state->auditEvents.size()) + " audit events");
    }
    const auto active =
        std::count_if(state->tasks.begin(), state->tasks.end(),
                      [](const FocusTask& task) { return task.status == TaskStatus::active; });
    if (active > 1) problems.push_back(std::to_string(active) + " active tasks");
  }
  checkWholeDocuments(world.local().recoveryFolder(), "the recovery copy", problems, knownWhole);
  checkWholeDocuments(world.folders.dailyBackupFolder(), "the daily backup", problems, knownWhole);

  std::set<std::string> block;
  try {
    block = HostsDocument(world.hostsText()).managedHosts();
  } catch (const std::exception& error) {
    problems.push_back(std::string("the hosts file can't be read: ") + error.what());
  }
  if (!block.empty()) {
    if (!state || !state->activeSession) {
      problems.push_back("the hosts file blocks sites with no session running");
    } else {
      const std::vector<std::string> expected = expectedHostsOf(*state->activeSession);
      if (block != std::set<std::string>(expected.begin(), expected.end())) {
        problems.push_back("the hosts file's block isn't the running session's");
      }
    }
  }
  return problems;
}

}  // namespace brindlet::testing
