// A real full disk under the whole model: a small tmpfs, mounted in the mount namespace of a
// child process so that nothing outlives the test, fills up in the middle of a working session.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

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

// Adds tasks, as a day of planning does, until the disk has refused a save a few times. Gives
// the broken promise, or nothing; `lastSaved` follows the plan as it was last saved.
std::string addTasksUntilTheDiskIsFull(AppModelWorld& world, PersistedState& lastSaved) {
  AppModel& model = world.model();
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
  return {};
}

// The first task saved before that is missing from `kept`, or nothing.
std::string lostTasks(const PersistedState& saved, const PersistedState& kept) {
  for (const FocusTask& task : saved.tasks) {
    if (std::none_of(kept.tasks.begin(), kept.tasks.end(),
                     [&](const FocusTask& candidate) { return candidate.id == task.id; })) {
      return "the saved task " + task.title.substr(0, 20) + " is gone";
    }
  }
  return {};
}

// The checks run in the child, which has the small disk; it reports the first broken promise.
std::string fillTheDiskMidSession(const fs::path& root) {
  AppModelWorld world(root, FileService::system());
  world.store(PersistedState::initial());
  AppModel& model = world.launch();

  // Work goes on as usual until the disk refuses a save.
  PersistedState lastSaved = world.stored();
  if (std::string problem = addTasksUntilTheDiskIsFull(world, lastSaved); !problem.empty()) {
    return problem;
  }
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
  if (std::string problem = lostTasks(lastSaved, kept); !problem.empty()) return problem;
  world.relaunch();
  if (world.model().state().taskSnapshot.state() != kept) return "a restart doesn't see the plan";
  return {};
}

// Takes whatever room the disk has left, to the last byte, so that no file can grow any more.
void takeTheLastOfTheRoom(const fs::path& ballast) {
  const int fd = ::open(ballast.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (fd < 0) return;
  const std::string chunk(64 * 1024, 'b');
  for (std::size_t size = chunk.size(); size > 0; size /= 2) {
    while (::write(fd, chunk.data(), size) > 0) {
    }
  }
  ::close(fd);
}

// Frees the last `pages` pages of the ballast: just enough room for as many small files.
void makeRoomFor(const fs::path& ballast, std::uintmax_t pages) {
  const auto page = static_cast<std::uintmax_t>(::sysconf(_SC_PAGESIZE));
  fs::resize_file(ballast, fs::file_size(ballast) - pages * page);
}

// Runs one command of a blocking session on a disk without a byte to spare: it must be refused
// with the system's words, in the alert or in the protection line, and leave the plan as it
// was, every task saved before still there, and the hosts file the one with the session's
// block or the one without it, whole. Gives the broken promise, or nothing.
std::string sessionCommandOnAFullDisk(AppModelWorld& world, const std::string& name,
                                      const std::function<void(AppModel&)>& command,
                                      const PersistedState& lastSaved,
                                      const std::string& blockedHosts) {
  AppModel& model = world.model();
  model.clearEditorError();
  const std::optional<std::string> protectionBefore = model.state().protectionError;
  const PersistedState before = world.stored();
  command(model);

  const std::optional<std::string>& alert = model.state().editorError;
  const std::optional<std::string>& protection = model.state().protectionError;
  const bool alertSays = alert && alert->find(kNoSpace) != std::string::npos;
  const bool protectionSays = protection && protection != protectionBefore &&
                              protection->find(kNoSpace) != std::string::npos;
  if (!alertSays && !protectionSays) {
    return name + " wasn't refused in the system's words\n  alert: " + alert.value_or("(none)") +
           "\n  protection: " + protection.value_or("(none)");
  }
  const PersistedState after = world.stored();
  // The session's need of attention is the engine's note to itself; the plan is the rest.
  if (planWithoutHistory(after) != planWithoutHistory(before)) {
    return name + " was refused but changed the plan";
  }
  if (std::string problem = lostTasks(lastSaved, after); !problem.empty()) {
    return name + ": " + problem;
  }
  const std::string hosts = world.hostsText();
  if (hosts != blockedHosts && hosts != kWorldPlainHosts) {
    return name + " left a hosts file that is neither the old one nor the new one:\n" + hosts;
  }
  const std::vector<std::string> problems = problemsWithFilesOf(world);
  if (!problems.empty()) return name + ": " + problems.front();
  return {};
}

// A blocking session runs while the disk fills up; then each of the session's writes (the
// session in the state file, the hosts file and its copies) meets a disk that is full to the
// last byte.
std::string fillTheDiskDuringABlockingSession(const fs::path& root) {
  AppModelWorld world(root, FileService::system());
  // Someone else's large file shares the disk; removing it later makes room again.
  const fs::path ballast = root / "ballast";
  writeBytes(ballast, std::string(std::size_t{128} * 1024, 'b'));
  world.store(PersistedState::initial());
  AppModel& model = world.launch();
  model.start();
  if (model.state().editorError) return "the session didn't start: " + *model.state().editorError;
  const std::string blockedHosts = world.hostsText();
  if (!world.stored().activeSession || blockedHosts == kWorldPlainHosts) {
    return "the session isn't in the state file and the hosts file";
  }

  PersistedState lastSaved = world.stored();
  if (std::string problem = addTasksUntilTheDiskIsFull(world, lastSaved); !problem.empty()) {
    return problem;
  }
  // Small files may still fit in what the plan couldn't use; this takes the rest.
  takeTheLastOfTheRoom(ballast);

  const FocusTask first = model.state().tasks().front();
  const DomainRule rule = model.state().selectedGroup().rules.front();
  const std::vector<std::pair<std::string, std::function<void(AppModel&)>>> commands = {
      {"addDomain",
       [](AppModel& m) {
         m.setDomainInput("example.com");
         m.addDomain();
       }},
      {"setEnabled", [&](AppModel& m) { m.setEnabled(rule, false); }},
      {"retryProtection", [](AppModel& m) { m.retryProtection(); }},
      {"startTask", [&](AppModel& m) { m.startTask(first); }},
      {"endFlexible", [](AppModel& m) { m.endFlexible(); }},
      // Room for the copies of the hosts file, the old and the new one, but not for the swap
      // itself, nor for putting the old one back.
      {"endFlexible with room for two small files",
       [&](AppModel& m) {
         makeRoomFor(ballast, 2);
         m.endFlexible();
       }},
      {"heartbeat at the session's end",
       [&](AppModel& m) {
         takeTheLastOfTheRoom(ballast);
         world.clock->advance(25 * 60 + 1);
         m.heartbeat();
       }},
      // Room for the swap of the hosts file, which goes through, but not for the state file
      // after it: the block is out, and the session stays on record until a write succeeds.
      {"endFlexible with room for three small files",
       [&](AppModel& m) {
         takeTheLastOfTheRoom(ballast);
         makeRoomFor(ballast, 3);
         m.endFlexible();
       }},
  };
  for (const auto& [name, command] : commands) {
    if (std::string problem =
            sessionCommandOnAFullDisk(world, name, command, lastSaved, blockedHosts);
        !problem.empty()) {
      return problem;
    }
  }

  // The session outlived its end, blocked still. Once there is room again a restart ends it: the
  // block comes out, the session leaves the state file, and the plan saved before is all there.
  fs::remove(ballast);
  world.relaunch();
  const PersistedState kept = world.stored();
  if (std::string problem = lostTasks(lastSaved, kept); !problem.empty()) return problem;
  if (world.model().state().taskSnapshot.state() != kept) return "a restart doesn't see the plan";
  if (world.hostsText() != kWorldPlainHosts) return "after the restart the block is still there";
  if (kept.activeSession) return "after the restart the ended session is still in the state file";
  if (const auto& error = world.model().state().protectionError) {
    return "after the restart protection still needs attention: " + *error;
  }
  const std::vector<std::string> problems = problemsWithFilesOf(world);
  if (!problems.empty()) return "after the restart: " + problems.front();
  return {};
}

// Runs `check` in a child process over a small file system of its own at `folder`, mounted in
// the child's mount namespace so that nothing outlives it. Gives the child's first broken
// promise, or nothing; absent when the file system can't be mounted.
std::optional<std::string> onASmallDisk(const fs::path& folder,
                                        const std::function<std::string(const fs::path&)>& check) {
  int report[2];
  if (::pipe(report) != 0) return "no pipe to the child";
  const pid_t child = runInChild([&] {
    if (::unshare(CLONE_NEWNS) != 0 ||
        ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=512k,mode=0700") != 0) {
      return kCannotMount;
    }
    std::string problem;
    try {
      problem = check(folder);
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
  if (status == kCannotMount) return std::nullopt;
  if (problem.empty() && status != 0)
    return "the child ended with status " + std::to_string(status);
  return problem;
}

TEST(AppModelFullDiskTest, FullDiskMidSessionRefusesWritesInTheSystemsWordsAndLosesNothing) {
  const TempDir dir;
  const std::optional<std::string> problem = onASmallDisk(dir.path(), fillTheDiskMidSession);
  if (!problem) GTEST_SKIP() << "needs root to mount a small file system";
  EXPECT_EQ(*problem, "");
}

TEST(AppModelFullDiskTest, FullDiskDuringABlockingSessionRefusesItsWritesAndKeepsHostsWhole) {
  const TempDir dir;
  const std::optional<std::string> problem =
      onASmallDisk(dir.path(), fillTheDiskDuringABlockingSession);
  if (!problem) GTEST_SKIP() << "needs root to mount a small file system";
  EXPECT_EQ(*problem, "");
}

}  // namespace
}  // namespace brindlet::testing
