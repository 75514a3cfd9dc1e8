// A real full disk under the whole model: a small tmpfs, mounted in the mount namespace of a
// child process so that nothing outlives the test, fills up in the middle of a working session.

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>

#include "AppModelWorld.h"
#include "Builders.h"
#include "ChildProcess.h"

namespace brindlet::testing {
namespace {

namespace fs = std::filesystem;

constexpr int kCannotMount = 77;
const std::string kNoSpace = "No space left on device";

// Runs one command on a full disk: it either goes through, or is refused with the system's words
// and leaves the plan on disk exactly as it was. Gives the broken promise, or nothing.
std::string commandOnAFullDisk(AppModelWorld& world, const std::string& name,
                               const std::function<void(AppModel&)>& command) {
  AppModel& model = world.model();
  model.clearEditorError();
  const PersistedState before = world.stored();
  command(model);
  if (model.state().editorError) {
    if (model.state().editorError->find(kNoSpace) == std::string::npos) {
      return name + " was refused without the system's words: " + *model.state().editorError;
    }
    // A start that couldn't block undoes its task, so only the plan itself is compared.
    if (planWithoutHistory(world.stored()) != planWithoutHistory(before)) {
      return name + " was refused but changed the plan";
    }
  }
  const std::vector<std::string> problems = problemsWithFilesOf(world);
  if (!problems.empty()) return name + ": " + problems.front();
  return {};
}

// The checks run in the child, which has the small disk; it reports the first broken promise.
std::string fillTheDiskMidSession(const fs::path& root) {
  AppModelWorld world(root, FileService::system());
  world.store(PersistedState::initial());
  AppModel& model = world.launch();

  // Work goes on as usual until the disk refuses a save.
  PersistedState lastSaved = world.stored();
  int refused = 0;
  for (int round = 0; round < 2000 && refused < 3; ++round) {
    model.setQuickTitle("Fill the disk " + std::to_string(round) + std::string(200, 'x'));
    model.addTask();
    if (model.state().editorError) {
      ++refused;
      if (model.state().editorError->find(kNoSpace) == std::string::npos) {
        return "refused without the system's words: " + *model.state().editorError;
      }
      model.clearEditorError();
    } else {
      lastSaved = world.stored();
    }
    if (world.stored() != lastSaved) return "the saved plan changed after a refused write";
  }
  if (refused == 0) return "the disk never filled up";
  if (model.state().taskSnapshot.state() != lastSaved) return "the model lost the saved plan";

  const FocusTask first = model.state().tasks().front();
  const std::vector<std::pair<std::string, std::function<void(AppModel&)>>> commands = {
      {"saveTask",
       [&](AppModel& m) {
         FocusTask edited = first;
         edited.notes = std::string(4096, 'n');
         m.saveTask(edited);
       }},
      {"moveTask",
       [&](AppModel& m) {
         m.moveTask(first, {2026, 11, 23});
       }},
      {"startTask", [&](AppModel& m) { m.startTask(first); }},
      {"generateRecommendations", [](AppModel& m) { m.generateRecommendations(); }},
      {"start", [](AppModel& m) { m.start(); }},
      {"addDomain",
       [](AppModel& m) {
         m.setDomainInput("example.com");
         m.addDomain();
       }},
      {"exportBackup", [&](AppModel& m) { m.exportBackup(root / "Exports" / "plan.json"); }},
  };
  for (const auto& [name, command] : commands) {
    if (std::string problem = commandOnAFullDisk(world, name, command); !problem.empty()) {
      return problem;
    }
  }

  // What was saved before the disk filled up is all there after a restart.
  const PersistedState kept = world.stored();
  for (const FocusTask& task : lastSaved.tasks) {
    if (std::none_of(kept.tasks.begin(), kept.tasks.end(),
                     [&](const FocusTask& candidate) { return candidate.id == task.id; })) {
      return "the saved task " + task.title.substr(0, 20) + " is gone";
    }
  }
  world.relaunch();
  if (world.model().state().taskSnapshot.state() != kept) return "a restart doesn't see the plan";
  return {};
}

TEST(AppModelFullDiskTest, FullDiskMidSessionRefusesWritesInTheSystemsWordsAndLosesNothing) {
  const TempDir dir;
  int report[2];
  ASSERT_EQ(::pipe(report), 0);
  const pid_t child = runInChild([&] {
    if (::unshare(CLONE_NEWNS) != 0 ||
        ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", dir.path().c_str(), "tmpfs", 0, "size=512k,mode=0700") != 0) {
      return kCannotMount;
    }
    std::string problem;
    try {
      problem = fillTheDiskMidSession(dir.path());
    } catch (const std::exception& error) {
      problem = std::string("unexpected failure: ") + error.what();
    }
    (void)::write(report[1], problem.data(), problem.size());
    return problem.empty() ? 0 : 1;
  });
  ::close(report[1]);
  std::string problem;
  char buffer[512];
  for (ssize_t n; (n = ::read(report[0], buffer, sizeof buffer)) > 0;) problem.append(buffer, n);
  ::close(report[0]);
  const int status = waitForExit(child);
  if (status == kCannotMount) GTEST_SKIP() << "needs root to mount a small file system";
  EXPECT_EQ(problem, "");
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace brindlet::testing
