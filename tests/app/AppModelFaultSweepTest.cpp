// Every command of the model that writes, run once for every single failure the file system can
// give it: the plan on disk is the one from before the command (or a point the command also
// passes through when nothing fails), the recovery copies and backups are whole documents, the
// hosts file is the old one or the new one, and the user is told in the system's own words.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <functional>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "AppModelWorld.h"
#include "Builders.h"
#include "FaultSweep.h"

namespace brindlet::testing {
namespace {

namespace fs = std::filesystem;

constexpr LocalDay kToday{2026, 11, 21};
constexpr LocalDay kTomorrow{2026, 11, 22};
const Uuid kReport = Uuid::fromLiteral("B0000000-0000-4000-8000-000000000001");
const Uuid kCall = Uuid::fromLiteral("B0000000-0000-4000-8000-000000000002");
const Uuid kPutOff = Uuid::fromLiteral("B0000000-0000-4000-8000-000000000003");

// A file service that also notes, after each rename onto the state file, the plan the file then
// holds: the points a command passes through when nothing fails.
class TracingFileService : public FaultyFileService {
 public:
  void trace(fs::path stateFile) { stateFile_ = std::move(stateFile); }

  int rename(const char* from, const char* to) const override {
    const int result = FaultyFileService::rename(from, to);
    if (result == 0 && !stateFile_.empty() && fs::path(to) == stateFile_) {
      states.insert(planText(LocalStore(stateFile_).load()));
    }
    return result;
  }

  mutable std::set<std::string> states;

 private:
  fs::path stateFile_;
};

struct Scenario {
  std::string name;
  /// Brings a launched model to the moment before the command.
  std::function<void(AppModelWorld&)> arrange;
  std::function<void(AppModelWorld&)> command;
  /// What the command leaves outside the state file when it succeeds; nothing to check if empty.
  std::function<bool(const AppModelWorld&)> madeItsFile = nullptr;
  /// A task that a failed start puts back as pending, whatever it was before: the undo of a
  /// start doesn't bring back an earlier pause.
  std::optional<Uuid> pendingAfterAFailedStart = std::nullopt;
  /// For a command made of commits that each stand on their own, those commits one by one, in
  /// the command's order. A failure may stop any of them and let the others through, so the
  /// plan from before with any of them done, in order, is a plan the command may leave. Empty
  /// for a command that commits once or not at all.
  std::vector<std::function<void(AppModelWorld&)>> parts = {};
};

void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }

// The document as a failed start of the task leaves it.
PersistedState withStartUndone(PersistedState state, const Uuid& taskID) {
  for (FocusTask& task : state.tasks) {
    if (task.id != taskID) continue;
    task.status = TaskStatus::pending;
    task.startedAt.reset();
    task.activeSegmentStartedAt.reset();
  }
  return state;
}

FocusTask task(const Uuid& id, std::string title, bool blocking = false) {
  FocusTask made = makeTask().titled(std::move(title)).plannedOn(kToday).estimated(25);
  made.id = id;
  if (blocking) made.blockingGroupID = PersistedState::initial().groups.front().id;
  return made;
}

// Stores the tasks beside the seeded group and launches the model over them.
void launchWith(AppModelWorld& world, std::vector<FocusTask> tasks) {
  PersistedState state = PersistedState::initial();
  state.tasks = std::move(tasks);
  for (std::size_t i = 0; i < state.tasks.size(); ++i) {
    state.tasks[i].manualPosition = static_cast<std::int64_t>(i);
  }
  world.store(state);
  world.launch();
}

FocusTask shown(const AppModelWorld& world, const Uuid& id) {
  for (const FocusTask& candidate : world.model().state().tasks()) {
    if (candidate.id == id) return candidate;
  }
  ADD_FAILURE() << "no task " << id.uppercaseText();
  return {};
}

const DomainRule& firstRule(const AppModelWorld& world) {
  return world.model().state().groups.front().rules.front();
}

void launchWithTwo(AppModelWorld& world) {
  launchWith(world, {task(kReport, "Report", true), task(kCall, "Call the bank")});
}

// Three tasks put off often enough that the review proposes to move each of them.
void launchWithThreeProposals(AppModelWorld& world) {
  std::vector<FocusTask> putOff = {task(kReport, "Report"), task(kCall, "Call the bank"),
                                   task(kPutOff, "Tax return")};
  for (FocusTask& each : putOff) each.skipCount = 2;
  launchWith(world, std::move(putOff));
  world.model().generateRecommendations();
  ASSERT_EQ(world.model().state().pendingProposals().size(), 3U);
}

// The approval of each proposal on its own, in the order of the document, which is the order
// in which approving all of them takes them.
std::vector<std::function<void(AppModelWorld&)>> eachApproval(std::size_t count) {
  std::vector<std::function<void(AppModelWorld&)>> approvals;
  for (std::size_t index = 0; index < count; ++index) {
    approvals.emplace_back([index](AppModelWorld& w) {
      w.model().approveProposal(w.model().state().taskSnapshot.state().proposals.at(index));
    });
  }
  return approvals;
}

std::vector<Scenario> scenarios() {
  return {
      {"add a task",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.model().setQuickTitle("Plan the week");
       },
       [](AppModelWorld& w) { w.model().addTask(); }},
      {"save a task", launchWithTwo,
       [](AppModelWorld& w) {
         FocusTask edited = shown(w, kCall);
         edited.title = "Call the bank about the loan";
         edited.scheduledStart = kTestNow.advanced(3600);
         edited.reminder = TaskReminder{.isEnabled = true, .remindTenMinutesBefore = true};
         w.model().saveTask(edited);
       }},
      {"move a task", launchWithTwo,
       [](AppModelWorld& w) { w.model().moveTask(shown(w, kCall), kTomorrow); }},
      {"unschedule a task", launchWithTwo,
       [](AppModelWorld& w) { w.model().unscheduleTask(shown(w, kCall)); }},
      {"reorder tasks", launchWithTwo,
       [](AppModelWorld& w) { w.model().reorderTask(kCall, kReport); }},
      {"generate recommendations",
       [](AppModelWorld& w) {
         FocusTask putOff = task(kPutOff, "Tax return");
         putOff.skipCount = 2;
         launchWith(w, {task(kReport, "Report"), putOff});
       },
       [](AppModelWorld& w) { w.model().generateRecommendations(); }},
      {"approve a proposal",
       [](AppModelWorld& w) {
         FocusTask putOff = task(kPutOff, "Tax return");
         putOff.skipCount = 2;
         launchWith(w, {task(kReport, "Report"), putOff});
         w.model().generateRecommendations();
         ASSERT_FALSE(w.model().state().pendingProposals().empty());
       },
       [](AppModelWorld& w) {
         w.model().approveProposal(w.model().state().pendingProposals().front());
       }},
      {"approve every proposal", launchWithThreeProposals,
       [](AppModelWorld& w) { w.model().approveAllProposals(); }, nullptr, std::nullopt,
       eachApproval(3)},
      {"dismiss every proposal",
       [](AppModelWorld& w) {
         FocusTask putOff = task(kPutOff, "Tax return");
         putOff.skipCount = 2;
         launchWith(w, {task(kReport, "Report"), putOff});
         w.model().generateRecommendations();
       },
       [](AppModelWorld& w) { w.model().dismissAllProposals(); }},
      {"start a task without blocking", launchWithTwo,
       [](AppModelWorld& w) { w.model().startTask(shown(w, kCall)); }},
      {"start a task with blocking", launchWithTwo,
       [](AppModelWorld& w) { w.model().startTask(shown(w, kReport)); }},
      {"pause a task with blocking",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.model().startTask(shown(w, kReport));
       },
       [](AppModelWorld& w) { w.model().pauseActiveTask(); }},
      {"resume a paused task",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.model().startTask(shown(w, kReport));
         w.model().pauseActiveTask();
       },
       [](AppModelWorld& w) { w.model().resumeTask(shown(w, kReport)); }, nullptr, kReport},
      {"skip a task with blocking",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.model().startTask(shown(w, kReport));
       },
       [](AppModelWorld& w) { w.model().skipActiveTask(); }},
      {"complete a running task",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.model().startTask(shown(w, kReport));
       },
       [](AppModelWorld& w) { w.model().completeTask(shown(w, kReport)); }},
      {"complete a paused task",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.model().startTask(shown(w, kCall));
         w.model().pauseActiveTask();
       },
       [](AppModelWorld& w) { w.model().completeTask(shown(w, kCall)); }},
      {"start a blocking session", launchWithTwo, [](AppModelWorld& w) { w.model().start(); }},
      {"end a flexible session",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.model().start();
       },
       [](AppModelWorld& w) { w.model().endFlexible(); }},
      {"add a domain",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.model().setDomainInput("example.com");
       },
       [](AppModelWorld& w) { w.model().addDomain(); }},
      {"disable a rule", launchWithTwo,
       [](AppModelWorld& w) { w.model().setEnabled(firstRule(w), false); }},
      {"remove a rule", launchWithTwo,
       [](AppModelWorld& w) { w.model().remove(DomainRule(firstRule(w))); }},
      {"export a backup", launchWithTwo,
       [](AppModelWorld& w) { w.model().exportBackup(w.root / "Exports" / "plan.json"); },
       [](const AppModelWorld& w) { return fs::exists(w.root / "Exports" / "plan.json"); }},
      {"restore a backup",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.model().exportBackup(w.root / "plan.json");
         w.model().setQuickTitle("Added after the export");
         w.model().addTask();
       },
       [](AppModelWorld& w) { w.model().restoreBackup(w.root / "plan.json"); }},
      {"take the next day's backup",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.clock->advance(86400);
         w.model().heartbeat();
       },
       [](AppModelWorld& w) { w.model().createDailyBackup(); },
       [](const AppModelWorld& w) {
         return fs::exists(w.folders.dailyBackupFolder() / "Brindlet-2026-11-22.json");
       }},
      {"end a session at its time (heartbeat)",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.model().start();
         w.clock->advance(25 * 60 + 1);
       },
       [](AppModelWorld& w) { w.model().heartbeat(); }},
      {"retry protection",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.model().start();
         writeBytes(w.hostsPath, kWorldPlainHosts);
       },
       [](AppModelWorld& w) { w.model().retryProtection(); }},
      {"repair the block at launch",
       [](AppModelWorld& w) {
         launchWithTwo(w);
         w.model().start();
         writeBytes(w.hostsPath, kWorldPlainHosts);
       },
       [](AppModelWorld& w) { w.relaunch(); }},
  };
}

// Whether the failure's system text is on screen, in the alert or the protection line, and
// wasn't there before the command.
bool userSees(const AppModelState& state, const std::optional<std::string>& editorErrorBefore,
              const std::optional<std::string>& protectionErrorBefore, int errorNumber) {
  const std::string words = std::strerror(errorNumber);
  const auto newlyShows = [&](const std::optional<std::string>& now,
                              const std::optional<std::string>& earlier) {
    return now && now != earlier && now->find(words) != std::string::npos;
  };
  return newlyShows(state.editorError, editorErrorBefore) ||
         newlyShows(state.protectionError, protectionErrorBefore);
}

struct Outcome {
  std::string plan;
  std::string hosts;
  bool madeItsFile = true;
};

// A world brought to the moment before the command, with its file calls counted from there on.
struct Arranged {
  std::shared_ptr<TracingFileService> files = std::make_shared<TracingFileService>();
  TempDir folder{inMemoryTemporaryFolder()};
  AppModelWorld world{folder.path(), files};
  std::optional<std::string> editorErrorBefore;
  std::optional<std::string> protectionErrorBefore;
  PersistedState documentBefore;
  std::string hostsBefore;

  explicit Arranged(const Scenario& scenario) {
    files->setDurable(false);
    scenario.arrange(world);
    world.model().clearEditorError();
    editorErrorBefore = world.model().state().editorError;
    protectionErrorBefore = world.model().state().protectionError;
    documentBefore = world.stored();
    hostsBefore = world.hostsText();
    files->resetCounts();
  }

  [[nodiscard]] Outcome outcome(const Scenario& scenario) const {
    return {planText(world.stored()), world.hostsText(),
            !scenario.madeItsFile || scenario.madeItsFile(world)};
  }
};

// Every plan a command of several commits may leave behind: the plan from before with each
// choice of its parts done, in their order, each found by a run without faults. Each choice
// gives a plan of its own, so the set is exact: 2^n plans for n parts.
std::set<std::string> plansWithSomeOfTheParts(const Scenario& scenario) {
  std::set<std::string> plans;
  const std::size_t count = scenario.parts.size();
  for (std::size_t chosen = 0; chosen < (std::size_t{1} << count); ++chosen) {
    Arranged run(scenario);
    for (std::size_t index = 0; index < count; ++index) {
      if ((chosen & (std::size_t{1} << index)) != 0) scenario.parts[index](run.world);
    }
    EXPECT_FALSE(run.world.model().state().editorError)
        << "parts " << chosen
        << " fail without a fault: " << *run.world.model().state().editorError;
    plans.insert(planText(run.world.stored()));
  }
  EXPECT_EQ(plans.size(), std::size_t{1} << count) << "two choices of parts give the same plan";
  return plans;
}

class AppModelFaultSweepTest : public ::testing::TestWithParam<Scenario> {};

TEST_P(AppModelFaultSweepTest, EveryFailureKeepsThePlanAndIsShown) {
  const Scenario& scenario = GetParam();

  // The clean run: where the command goes, and every plan the file holds on the way.
  std::vector<FileFault> faults;
  std::set<std::string> passedThrough;
  Outcome clean;
  {
    Arranged run(scenario);
    run.files->trace(run.world.folders.stateFile());
    scenario.command(run.world);
    run.files->trace({});
    for (const FileStep step : kAllFileSteps) {
      for (std::size_t n = 1; n <= run.files->calls(step); ++n) {
        for (const int error : {ENOSPC, EIO, EACCES}) faults.push_back({step, n, error});
      }
    }
    passedThrough = run.files->states;
    clean = run.outcome(scenario);
    ASSERT_FALSE(run.world.model().state().editorError)
        << "fails without a fault: " << *run.world.model().state().editorError;
    ASSERT_EQ(problemsWithFilesOf(run.world), std::vector<std::string>{});
    ASSERT_TRUE(clean.madeItsFile);
  }
  ASSERT_FALSE(faults.empty()) << "the command touches no file";

  // A command of several commits: the clean run does all its parts and passes through some of
  // the choices of them on the way.
  std::set<std::string> withSomeParts;
  if (!scenario.parts.empty()) {
    withSomeParts = plansWithSomeOfTheParts(scenario);
    EXPECT_EQ(withSomeParts.count(clean.plan), 1U) << "the clean run isn't all of its parts";
    for (const std::string& plan : passedThrough) {
      EXPECT_EQ(withSomeParts.count(plan), 1U)
          << "the clean run passes through a plan of none of its parts\n  " << plan;
    }
  }

  for (const FileFault& fault : faults) {
    const std::string context = scenario.name + ", " + fault.describe();
    Arranged run(scenario);
    run.files->failAt(fault.step, fault.occurrence, fault.errorNumber);
    scenario.command(run.world);
    run.files->clearFault();
    ASSERT_TRUE(run.files->faultHappened()) << context;

    const std::vector<std::string> problems = problemsWithFilesOf(run.world);
    EXPECT_EQ(problems, std::vector<std::string>{}) << context;
    if (!problems.empty()) continue;
    const Outcome outcome = run.outcome(scenario);
    if (scenario.parts.empty()) {
      const PersistedState after = run.world.stored();
      const bool undone = planWithoutHistory(after) == planWithoutHistory(run.documentBefore) ||
                          (scenario.pendingAfterAFailedStart &&
                           planWithoutHistory(after) ==
                               planWithoutHistory(withStartUndone(
                                   run.documentBefore, *scenario.pendingAfterAFailedStart)));
      EXPECT_TRUE(undone || passedThrough.count(outcome.plan) > 0)
          << context << ": the plan is neither the one from before nor one the command passes "
          << "through\n  " << outcome.plan;
    } else {
      // Each part commits whole or not at all, with its own revision and audit event: the plan
      // is exactly the one from before with some of them done, history and all.
      EXPECT_EQ(withSomeParts.count(outcome.plan), 1U)
          << context << ": the plan isn't the one from before with some of the command's parts "
          << "done in order\n  " << outcome.plan;
    }
    EXPECT_TRUE(outcome.hosts == run.hostsBefore || outcome.hosts == clean.hosts)
        << context << ": the hosts file is neither the old one nor the new one";
    const bool finished =
        outcome.plan == clean.plan && outcome.hosts == clean.hosts && outcome.madeItsFile;
    const AppModelState& state = run.world.model().state();
    if (!finished) {
      EXPECT_TRUE(
          userSees(state, run.editorErrorBefore, run.protectionErrorBefore, fault.errorNumber))
          << context << ": the command fell short and the user isn't told\n  editorError: "
          << state.editorError.value_or("(none)")
          << "\n  protectionError: " << state.protectionError.value_or("(none)");
    }
    // The next heartbeat shows what the disk holds.
    run.world.model().heartbeat();
    EXPECT_EQ(planText(run.world.model().state().taskSnapshot.state()),
              planText(run.world.stored()))
        << context;
  }
}

INSTANTIATE_TEST_SUITE_P(Commands, AppModelFaultSweepTest, ::testing::ValuesIn(scenarios()),
                         [](const ::testing::TestParamInfo<Scenario>& info) {
                           std::string name;
                           bool upper = true;
                           for (const char c : info.param.name) {
                             if (std::isalnum(static_cast<unsigned char>(c)) == 0) {
                               upper = true;
                               continue;
                             }
                             name += upper ? static_cast<char>(std::toupper(c)) : c;
                             upper = false;
                           }
                           return name;
                         });

// ---- start-up over a file of the older, blocking-only form ----

const std::string kCurrentSchema = "\"schemaVersion\": 2";
const std::string kOlderSchema = "\"schemaVersion\": 1";

// A state file of the older form, which held only the blocking side: a group of the user's own
// beside the seeded one, and perhaps a session under way whose block the hosts file doesn't
// hold, so that the launch puts it back and stores the session again.
std::string olderStateFile(bool withSession) {
  PersistedState older = PersistedState::initial();
  const DomainGroup news{.name = "News", .rules = {DomainRule{.domain = "news.example"}}};
  older.groups.push_back(news);
  if (withSession) {
    older.activeSession = BlockSession{.group = news,
                                       .mode = SessionMode::flexible,
                                       .startedAt = kTestNow.advanced(-300),
                                       .endsAt = kTestNow.advanced(1200)};
  }
  std::string text = encodeState(older);
  text.replace(text.find(kCurrentSchema), kCurrentSchema.size(), kOlderSchema);
  return text;
}

// A world whose state file is of the older form, launched as the program launches: the model
// is built, which moves the file to the current form, and the start-up pass runs.
struct OlderFileLaunch {
  std::shared_ptr<TracingFileService> files = std::make_shared<TracingFileService>();
  TempDir folder{inMemoryTemporaryFolder()};
  AppModelWorld world{folder.path(), files};
  /// What the alert shows first, before the start-up pass.
  std::optional<std::string> startupError;
  /// The state file once the model is built, before the start-up pass writes to it.
  std::string fileAfterMigration;

  explicit OlderFileLaunch(const std::string& olderFile) {
    files->setDurable(false);
    writeBytes(world.folders.stateFile(), olderFile);
  }

  void launch() {
    startupError = world.compose().state().editorError;
    fileAfterMigration = stateFileBytes();
    world.model().recover();
  }

  [[nodiscard]] std::string stateFileBytes() const { return readBytes(world.folders.stateFile()); }
  [[nodiscard]] std::vector<std::string> recoveryCopies() const {
    std::vector<std::string> copies;
    for (const fs::path& file : filesIn(world.local().recoveryFolder())) {
      copies.push_back(readBytes(file));
    }
    return copies;
  }
};

// Launches over the older file once cleanly, then once with each single fault.
void sweepTheLaunchOver(const std::string& olderFile, bool withSession) {
  const fs::path dailyBackup = fs::path("Brindlet Backups") / "Brindlet-2026-11-21.json";

  std::vector<FileFault> faults;
  std::set<std::string> passedThrough;
  PersistedState asRead;
  std::string migratedFile;
  std::string cleanPlan;
  std::string cleanHosts;
  {
    OlderFileLaunch run(olderFile);
    asRead = run.world.stored();
    migratedFile = encodeState(asRead);
    run.files->trace(run.world.folders.stateFile());
    run.launch();
    run.files->trace({});
    for (const FileStep step : kAllFileSteps) {
      for (std::size_t n = 1; n <= run.files->calls(step); ++n) {
        for (const int error : {ENOSPC, EIO, EACCES}) faults.push_back({step, n, error});
      }
    }
    passedThrough = run.files->states;
    const AppModelState& state = run.world.model().state();
    ASSERT_FALSE(run.startupError) << *run.startupError;
    ASSERT_FALSE(state.editorError) << *state.editorError;
    ASSERT_FALSE(state.protectionError) << *state.protectionError;
    ASSERT_EQ(problemsWithFilesOf(run.world), std::vector<std::string>{});
    ASSERT_NE(run.stateFileBytes().find(kCurrentSchema), std::string::npos);
    ASSERT_EQ(run.fileAfterMigration, migratedFile);
    const std::vector<std::string> copies = run.recoveryCopies();
    ASSERT_EQ(std::count(copies.begin(), copies.end(), olderFile), 1);
    ASSERT_TRUE(fs::exists(run.world.folders.documents / dailyBackup));
    cleanPlan = planText(run.world.stored());
    cleanHosts = run.world.hostsText();
    ASSERT_EQ(cleanHosts != kWorldPlainHosts, withSession)
        << "the launch didn't put the session's block back";
    ASSERT_EQ(planWithoutHistory(run.world.stored()), planWithoutHistory(asRead));
  }

  for (const FileFault& fault : faults) {
    const std::string context = "launch over an older file, " + fault.describe();
    OlderFileLaunch run(olderFile);
    run.files->failAt(fault.step, fault.occurrence, fault.errorNumber);
    run.launch();
    run.files->clearFault();
    ASSERT_TRUE(run.files->faultHappened()) << context;

    // A migration happens whole or not at all: the file is the older one or the same document
    // in the current form, and without a start-up error it is the latter. (A read that fails
    // after the migration, when the store first loads the file, gives the start-up error over a
    // file already migrated, so that error allows both.)
    EXPECT_TRUE(run.fileAfterMigration == olderFile || run.fileAfterMigration == migratedFile)
        << context << ": the model was built over a part-migrated file\n  "
        << run.fileAfterMigration;
    if (!run.startupError) {
      EXPECT_EQ(run.fileAfterMigration, migratedFile)
          << context << ": the file wasn't migrated, and no error says so";
    }

    const std::vector<std::string> problems = problemsWithFilesOf(run.world);
    EXPECT_EQ(problems, std::vector<std::string>{}) << context;
    if (!problems.empty()) continue;

    // The start-up pass may write the file too (it stores the session it finds), which also
    // brings an older file to the current form. The state file is the older one, byte for byte, or
    // a whole document of the current form with the same content, and then the older one is kept in
    // the recovery copies.
    const std::string file = run.stateFileBytes();
    const std::vector<std::string> copies = run.recoveryCopies();
    if (file != olderFile) {
      EXPECT_NE(file.find(kCurrentSchema), std::string::npos)
          << context << ": the state file is neither the older one nor of the current form";
      const PersistedState after = run.world.stored();
      EXPECT_TRUE(planWithoutHistory(after) == planWithoutHistory(asRead) ||
                  passedThrough.count(planText(after)) > 0)
          << context << ": the migrated file doesn't hold what the older one did\n  "
          << planText(after);
      // A migration that failed after its copy leaves one more, of the same bytes.
      EXPECT_GE(std::count(copies.begin(), copies.end(), olderFile), 1)
          << context << ": the older file was replaced without a copy of it being kept";
    }
    for (const std::string& copy : copies) {
      EXPECT_TRUE(copy == olderFile || copy.find(kCurrentSchema) != std::string::npos)
          << context << ": a recovery copy is part of the older file\n  " << copy;
    }
    const std::string hosts = run.world.hostsText();
    EXPECT_TRUE(hosts == kWorldPlainHosts || hosts == cleanHosts)
        << context << ": the hosts file is neither the old one nor the new one";

    const bool finished = planText(run.world.stored()) == cleanPlan &&
                          file.find(kCurrentSchema) != std::string::npos && hosts == cleanHosts &&
                          fs::exists(run.world.folders.documents / dailyBackup);
    if (!finished) {
      // The start-up error is what the alert shows first; the start-up pass may then put the
      // daily backup's own complaint in its place.
      const std::string words = std::strerror(fault.errorNumber);
      const AppModelState& state = run.world.model().state();
      const auto says = [&](const std::optional<std::string>& text) {
        return text && text->find(words) != std::string::npos;
      };
      EXPECT_TRUE(says(run.startupError) || says(state.editorError) || says(state.protectionError))
          << context << ": the launch fell short and the user isn't told\n  start-up error: "
          << run.startupError.value_or("(none)")
          << "\n  editorError: " << state.editorError.value_or("(none)")
          << "\n  protectionError: " << state.protectionError.value_or("(none)");
    }
    run.world.model().heartbeat();
    EXPECT_EQ(planText(run.world.model().state().taskSnapshot.state()),
              planText(run.world.stored()))
        << context;
  }
}

TEST(AppModelStartupFaultSweepTest, EveryFailureOfAMigrationKeepsTheOlderFileWholeAndIsShown) {
  sweepTheLaunchOver(olderStateFile(false), false);
}

TEST(AppModelStartupFaultSweepTest,
     EveryFailureOfAMigrationWithASessionUnderWayKeepsFileAndBlockWholeAndIsShown) {
  sweepTheLaunchOver(olderStateFile(true), true);
}

}  // namespace
}  // namespace brindlet::testing
