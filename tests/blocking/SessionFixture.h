#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "FakePrivilegedRunner.h"
#include "TempDir.h"
#include "blocking/DomainRules.h"
#include "blocking/HostsBlockingEngine.h"
#include "blocking/SessionEngine.h"
#include "persistence/LocalStore.h"
#include "records/DomainGroup.h"

namespace brindlet::testing {

inline const std::string kPlainHosts = "127.0.0.1 localhost\n::1 localhost ip6-localhost\n";

/// A group of two sites, both enabled.
inline DomainGroup makeNewsGroup() {
  return DomainGroup{.id = Uuid::random(),
                     .name = "News",
                     .rules = {{.id = Uuid::random(), .domain = "example.com", .isEnabled = true},
                               {.id = Uuid::random(), .domain = "news.example.org"}},
                     .isEnabled = true};
}

/// The hosts a group's enabled rules block.
inline std::vector<std::string> hostsOf(const DomainGroup& group) {
  std::vector<std::string> domains;
  for (const DomainRule& rule : group.rules) {
    if (rule.isEnabled) domains.push_back(rule.domain);
  }
  return DomainRules::expandedHosts(domains);
}

/// A blocker that passes every call on to another and notes its name: "apply", "remove" or
/// "status".
class RecordingBlocker : public BlockingEngine {
 public:
  explicit RecordingBlocker(std::shared_ptr<BlockingEngine> inner) : inner_(std::move(inner)) {}

  void apply(const std::vector<std::string>& hosts) override {
    calls.emplace_back("apply");
    inner_->apply(hosts);
  }
  void remove() override {
    calls.emplace_back("remove");
    inner_->remove();
  }
  [[nodiscard]] BlockingStatus status(const std::vector<std::string>& expectedHosts) override {
    calls.emplace_back("status");
    return inner_->status(expectedHosts);
  }

  std::vector<std::string> calls;

 private:
  std::shared_ptr<BlockingEngine> inner_;
};

/// Everything a session engine touches, in one temporary folder: the state file, a hosts file
/// with plain contents, a backup folder, a hosts engine over a runner that really copies the
/// file, and the session engine. Nothing outside the folder is read or written.
struct SessionFixture {
  TempDir folder;
  LocalStore local{folder / "Brindlet" / "state.json"};
  std::filesystem::path hostsPath = folder / "hosts";
  std::filesystem::path backups = folder / "Brindlet" / "Backups";
  std::shared_ptr<FakePrivilegedRunner> runner = std::make_shared<FakePrivilegedRunner>();
  std::shared_ptr<HostsBlockingEngine> hosts =
      std::make_shared<HostsBlockingEngine>(hostsPath, backups, runner);
  std::shared_ptr<RecordingBlocker> blocker = std::make_shared<RecordingBlocker>(hosts);
  SessionEngine engine{local, blocker};
  /// Every value `onSessionChanged` was called with, oldest first.
  std::vector<std::optional<BlockSession>> changes;

  SessionFixture() {
    writeBytes(hostsPath, kPlainHosts);
    engine.onSessionChanged = [this](const std::optional<BlockSession>& session) {
      changes.push_back(session);
    };
  }

  /// A second engine over the same files, as after a restart of the program.
  [[nodiscard]] std::unique_ptr<SessionEngine> restartedEngine() const {
    return std::make_unique<SessionEngine>(local, blocker);
  }

  [[nodiscard]] bool blocks(const DomainGroup& group) {
    return hosts->status(hostsOf(group)) == BlockingStatus::active;
  }
  [[nodiscard]] bool hostsFileIsPlain() const { return readBytes(hostsPath) == kPlainHosts; }
  [[nodiscard]] std::optional<BlockSession> storedSession() const {
    return local.load().activeSession;
  }
  /// Makes the next approval be refused by the user.
  void refuseNextApproval() const {
    runner->thenReplace(FakePrivilegedRunner::fails(BlockingError::authorizationCancelled()));
  }
};

/// The exception of type `Error` that `body` raises; fails the test when it raises none.
template <typename Error, typename Body>
std::optional<Error> errorOf(Body&& body) {
  try {
    body();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "the expected error was not raised";
  return std::nullopt;
}

}  // namespace brindlet::testing
