// Opening the state at launch, the start-up pass and the heartbeat, each case on real files.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "AppModelFixture.h"
#include "ChildProcess.h"
#include "blocking/BlockingError.h"
#include "persistence/PersistedState.h"

namespace brindlet::testing {
namespace {

namespace fs = std::filesystem;

const std::string kStartupPrefix =
    "Your Brindlet data could not be opened. The original file was left untouched: ";
const std::string kUnreadablePrefix = "Brindlet data could not be read: ";
const std::string kProtectionMissing =
    "The active task expects website blocking, but protection is not active.";
const std::string kAlreadyActive = "A focus session is already active.";
const std::string kCancelled = "Administrator approval was cancelled. No changes were made.";
constexpr const char* kBrokenJson = "{\"schemaVersion\": 2, \"tasks\": [";

bool startsWith(const std::optional<std::string>& text, const std::string& prefix) {
  return text && text->rfind(prefix, 0) == 0;
}

BlockSession sessionOf(const DomainGroup& group, Instant startedAt, Instant endsAt) {
  return BlockSession{.id = Uuid::random(),
                      .group = group,
                      .mode = SessionMode::flexible,
                      .startedAt = startedAt,
                      .endsAt = endsAt,
                      .state = SessionState::active};
}

// ---- opening the state ----

TEST_F(AppModelTest, TaskSnapshotShowsTheInitialDocumentUntilRecoverRefreshesIt) {
  PersistedState state = PersistedState::initial();
  state.groups = {makeNewsGroup()};
  state.tasks = {makeTask().titled("Draft").plannedOn(kToday),
                 makeTask().titled("Review").plannedOn(kToday)};
  state.revision = 7;
  store(state);

  const auto model = makeModel();
  EXPECT_EQ(model->state().taskSnapshot.revision(), 0);
  EXPECT_EQ(model->state().taskSnapshot.state(), PersistedState::initial());
  EXPECT_EQ(model->state().groups, std::vector{DomainGroup::socialDistractions()});

  model->recover();
  EXPECT_EQ(model->state().taskSnapshot.revision(), 7);
  EXPECT_EQ(model->state().tasks().size(), 2U);
  EXPECT_EQ(model->state().groups, state.groups);
}

TEST_F(AppModelTest, ActiveTaskFindsAPausedTaskWhileNoWorkGoesOn) {
  const FocusTask pending = makeTask().titled("Pending").plannedOn(kToday);
  const FocusTask paused =
      makeTask().titled("Paused").plannedOn({2026, 11, 2}).withStatus(TaskStatus::paused);
  storeTasks({pending, paused});

  const auto model = makeRecoveredModel();
  ASSERT_TRUE(model->state().activeTask());
  EXPECT_EQ(model->state().activeTask()->id, paused.id);
  EXPECT_FALSE(model->state().isWorking);
  EXPECT_FALSE(model->state().activeSession);
}

TEST_F(AppModelTest, UnparsableStateFileShowsTheStartupSentenceAndKeepsItsBytes) {
  writeBytes(folders.stateFile(), kBrokenJson);

  const auto model = makeModel();
  EXPECT_TRUE(startsWith(model->state().editorError, kStartupPrefix))
      << model->state().editorError.value_or("(none)");
  EXPECT_EQ(readBytes(folders.stateFile()), kBrokenJson);
  EXPECT_EQ(model->state().taskSnapshot.state(), PersistedState::initial());
}

// ---- launch cases ----

TEST_F(AppModelTest, FirstLaunchAlertsOnceAboutTheBackupAndWritesNoStateFile) {
  const auto model = makeModel();
  EXPECT_FALSE(model->state().editorError);
  EXPECT_EQ(model->state().backupStatus, "Preparing backup…");

  model->recover();
  EXPECT_EQ(alertsShown(), 1);
  EXPECT_TRUE(model->state().editorError);
  EXPECT_EQ(model->state().backupStatus, "Backup needs attention");
  EXPECT_FALSE(fs::exists(folders.stateFile()));
  EXPECT_TRUE(filesIn(folders.dailyBackupFolder()).empty());
  EXPECT_EQ(model->state().protectionStatus, ProtectionStatus::off);
  EXPECT_FALSE(model->state().protectionError);
  // Nothing asks the notification service anything at start.
  EXPECT_TRUE(scheduler->calls.empty());
}

TEST_F(AppModelTest, UnparsableStateFileRefusesEveryWriteAndStaysUntouched) {
  writeBytes(folders.stateFile(), kBrokenJson);
  const auto model = makeRecoveredModel();

  // The daily backup fails on the same file, and its words replace the start-up sentence.
  EXPECT_TRUE(model->state().editorError);
  EXPECT_FALSE(startsWith(model->state().editorError, kStartupPrefix));
  EXPECT_EQ(model->state().backupStatus, "Backup needs attention");
  EXPECT_EQ(model->state().protectionStatus, ProtectionStatus::attentionRequired);
  EXPECT_TRUE(model->state().protectionError);

  model->setQuickTitle("Write anyway");
  model->addTask();
  EXPECT_TRUE(startsWith(model->state().editorError, kUnreadablePrefix));
  EXPECT_EQ(model->state().quickTitle, "Write anyway");

  model->clearEditorError();
  model->setDomainInput("example.com");
  model->addDomain();
  EXPECT_TRUE(startsWith(model->state().editorError, kUnreadablePrefix));

  model->clearEditorError();
  model->start();
  EXPECT_TRUE(startsWith(model->state().editorError, kUnreadablePrefix));

  model->heartbeat();
  EXPECT_EQ(readBytes(folders.stateFile()), kBrokenJson);
  EXPECT_TRUE(hostsFileIsPlain());
  EXPECT_TRUE(runner->calls.empty());
}

TEST_F(AppModelTest, NewerSchemaStartsInRecoveryWithTheSchemaSentence) {
  const std::string newer = R"({"schemaVersion": 3, "tasks": []})";
  writeBytes(folders.stateFile(), newer);

  const auto model = makeModel();
  EXPECT_EQ(model->state().editorError,
            kStartupPrefix + "This data was created by unsupported schema version 3.");

  model->recover();
  EXPECT_EQ(model->state().editorError,
            "This backup uses legacy schema 3 and cannot safely restore task history.");
  EXPECT_EQ(model->state().backupStatus, "Backup needs attention");

  model->setQuickTitle("Write anyway");
  model->addTask();
  EXPECT_EQ(readBytes(folders.stateFile()), newer);
}

TEST_F(AppModelTest, SchemaOneFileIsMigratedAndTheOldFileKeptInStateBackups) {
  PersistedState legacy = PersistedState::initial();
  legacy.groups = {makeNewsGroup()};
  std::string json = encodeState(legacy);
  json.replace(json.find("\"schemaVersion\": 2"), 18, "\"schemaVersion\": 1");
  writeBytes(folders.stateFile(), json);

  const auto model = makeModel();
  EXPECT_FALSE(model->state().editorError);
  EXPECT_EQ(stored().schemaVersion, 2);
  const auto copies = filesIn(local().recoveryFolder());
  ASSERT_EQ(copies.size(), 1U);
  EXPECT_EQ(readBytes(copies[0]), json);

  model->recover();
  EXPECT_EQ(model->state().groups, legacy.groups);
  EXPECT_EQ(model->state().selectedGroupID, legacy.groups[0].id);
  EXPECT_FALSE(model->state().editorError);
  EXPECT_EQ(model->state().backupStatus, "Protected today · Brindlet-2026-11-21.json");
}

TEST_F(AppModelTest, LaunchDuringARunningSessionPutsItsBlockBackInPlace) {
  const DomainGroup news = makeNewsGroup();
  PersistedState state = PersistedState::initial();
  state.groups = {news};
  state.activeSession = sessionOf(news, kTestNow.advanced(-300), kTestNow.advanced(1200));
  store(state);
  ASSERT_TRUE(hostsFileIsPlain());

  const auto model = makeRecoveredModel();
  EXPECT_EQ(model->state().activeSession->id, state.activeSession->id);
  EXPECT_EQ(model->state().protectionStatus, ProtectionStatus::active);
  EXPECT_FALSE(model->state().protectionError);
  EXPECT_TRUE(hostsBlock(news));
  EXPECT_EQ(model->state().countdown(), "20:00");
}

TEST_F(AppModelTest, LaunchAfterTheSessionEndedTakesTheBlockAway) {
  const DomainGroup news = makeNewsGroup();
  HostsBlockingEngine(hostsPath, folder / "earlier", runner).apply(hostsOf(news));
  PersistedState state = PersistedState::initial();
  state.groups = {news};
  state.activeSession = sessionOf(news, kTestNow.advanced(-1800), kTestNow.advanced(-60));
  store(state);

  const auto model = makeRecoveredModel();
  EXPECT_FALSE(model->state().activeSession);
  EXPECT_EQ(model->state().protectionStatus, ProtectionStatus::off);
  EXPECT_FALSE(stored().activeSession);
  EXPECT_TRUE(hostsFileIsPlain());
  EXPECT_EQ(model->state().countdown(), "00:00");
}

TEST_F(AppModelTest, LaunchWithAnActiveTaskExpectingBlockingShowsWhyProtectionIsMissing) {
  const DomainGroup news = makeNewsGroup();
  FocusTask task = makeTask().titled("Focus").plannedOn(kToday).withStatus(TaskStatus::active);
  task.blockingGroupID = news.id;
  task.activeSegmentStartedAt = kTestNow.advanced(-60);
  PersistedState state = PersistedState::initial();
  state.groups = {news};
  state.tasks = {task};
  store(state);

  const auto model = makeRecoveredModel();
  EXPECT_EQ(model->state().protectionError, kProtectionMissing);
}

// ---- the start-up pass and the heartbeat ----

TEST_F(AppModelTest, EachRecoverSelectsTheFirstGroupAgain) {
  const DomainGroup news = makeNewsGroup();
  PersistedState state = PersistedState::initial();
  state.groups = {news, DomainGroup::socialDistractions()};
  store(state);

  const auto model = makeModel();
  EXPECT_EQ(model->state().selectedGroupID, DomainGroup::socialDistractions().id);
  model->recover();
  EXPECT_EQ(model->state().selectedGroupID, news.id);

  model->engine().replaceGroups({DomainGroup::socialDistractions(), news});
  model->recover();
  EXPECT_EQ(model->state().selectedGroupID, DomainGroup::socialDistractions().id);
}

TEST_F(AppModelTest, EmptyGroupListLeavesSelectedGroupIDAbsent) {
  store(PersistedState::initial());
  const auto model = makeRecoveredModel();
  ASSERT_TRUE(model->state().selectedGroupID);

  model->engine().replaceGroups({});
  // With the file unreadable the start-up pass can't bring groups back from it.
  writeBytes(folders.stateFile(), kBrokenJson);
  model->recover();
  EXPECT_TRUE(model->state().groups.empty());
  EXPECT_FALSE(model->state().selectedGroupID);
  EXPECT_EQ(model->state().selectedGroup(), DomainGroup::socialDistractions());
}

TEST_F(AppModelTest, CoordinatorErrorOutranksEngineErrorAndHeartbeatsClearThem) {
  FocusTask task = makeTask().titled("Deep work").plannedOn(kToday).estimated(30);
  task.blockingGroupID = DomainGroup::socialDistractions().id;
  storeTasks({task});
  const auto model = makeRecoveredModel();

  // A free-standing session is running, so the task's own blocking can't start.
  model->start();
  ASSERT_TRUE(model->state().activeSession);
  model->startTask(task);
  EXPECT_EQ(model->state().editorError, kAlreadyActive);

  // The session's end can't take the block away: the engine needs attention too.
  clock->advance(26 * 60);
  runner->thenReplace(FakePrivilegedRunner::fails(BlockingError::authorizationCancelled()));
  model->heartbeat();
  EXPECT_EQ(model->engine().lastError(), kCancelled);
  EXPECT_EQ(model->state().protectionError, kAlreadyActive);

  // The engine recovers at the next tick; the coordinator's words stand until a start succeeds.
  model->heartbeat();
  EXPECT_FALSE(model->engine().lastError());
  EXPECT_FALSE(model->state().activeSession);
  EXPECT_EQ(model->state().protectionError, kAlreadyActive);

  model->startTask(model->state().tasks().front());
  EXPECT_FALSE(model->state().editorError);
  EXPECT_EQ(model->state().protectionError, kAlreadyActive);
  model->heartbeat();
  EXPECT_FALSE(model->state().protectionError);
}

TEST_F(AppModelTest, HeartbeatAdvancesNowAndPicksUpAnotherWritersChange) {
  store(PersistedState::initial());
  const auto model = makeRecoveredModel();
  clock->advance(1);
  PersistedState changed = stored();
  changed.tasks.push_back(makeTask().titled("From the agent").plannedOn(kToday));
  changed.revision += 1;
  store(changed);

  const std::size_t before = published.size();
  model->heartbeat();
  EXPECT_EQ(model->state().now, kTestNow.advanced(1));
  EXPECT_EQ(model->state().taskSnapshot.revision(), changed.revision);
  EXPECT_EQ(model->state().tasks().size(), 1U);
  EXPECT_EQ(published.size(), before + 1);
  EXPECT_EQ(published.back().taskSnapshot.revision(), changed.revision);
}

TEST_F(AppModelTest, PublishedStateSharesTheDocumentRatherThanCopyingIt) {
  storeTasks({makeTask().titled("Shared").plannedOn(kToday)});
  const auto model = makeRecoveredModel();
  model->heartbeat();
  model->heartbeat();
  ASSERT_GE(published.size(), 2U);
  const AppModelState& last = published.back();
  const AppModelState& earlier = published[published.size() - 2];
  EXPECT_EQ(last.taskSnapshot.sharedState().get(), earlier.taskSnapshot.sharedState().get());
  EXPECT_EQ(last.taskSnapshot.sharedState().get(),
            model->taskStore().snapshot().sharedState().get());
}

TEST_F(AppModelTest, RetryProtectionPutsTheBlockBackAndClearsTheError) {
  const DomainGroup news = makeNewsGroup();
  PersistedState state = PersistedState::initial();
  state.groups = {news};
  state.activeSession = sessionOf(news, kTestNow, kTestNow.advanced(1200));
  store(state);
  runner->thenReplace(FakePrivilegedRunner::fails(BlockingError::authorizationCancelled()));

  const auto model = makeRecoveredModel();
  EXPECT_EQ(model->state().protectionError, kCancelled);
  EXPECT_EQ(model->state().protectionStatus, ProtectionStatus::attentionRequired);

  model->retryProtection();
  EXPECT_FALSE(model->state().protectionError);
  EXPECT_EQ(model->state().protectionStatus, ProtectionStatus::active);
  EXPECT_TRUE(hostsBlock(news));
}

// ---- the composition root ----

TEST_F(AppModelTest, LiveOpensTheUsersStateFileAndSurvivesOneItCannotRead) {
  // In a child, so that the environment pointing at the temporary folder stays there. Only the
  // composition runs: nothing reaches the hosts file or asks for approval before recover().
  const fs::path home = folder / "home";
  writeBytes(home / ".local" / "share" / "Brindlet" / "state.json", kBrokenJson);
  writeBytes(home / ".config" / "user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Papers\"\n");
  const pid_t child = runInChild([&] {
    ::setenv("HOME", home.c_str(), 1);
    ::unsetenv("XDG_DATA_HOME");
    ::unsetenv("XDG_CONFIG_HOME");
    const auto model = AppModel::live(scheduler, clock);
    const AppModelState& state = model->state();
    if (!startsWith(state.editorError, kStartupPrefix)) return 1;
    if (state.taskSnapshot.state() != PersistedState::initial()) return 2;
    if (model->taskStore().store().url() != home / ".local/share/Brindlet/state.json") return 3;
    if (readBytes(home / ".local/share/Brindlet/state.json") != kBrokenJson) return 4;
    if (state.now != kTestNow || state.selectedDay != LocalDay(kTestNow, state.calendar)) return 5;
    return 0;
  });
  EXPECT_EQ(waitForExit(child), 0);
  EXPECT_FALSE(fs::exists(home / "Papers"));
}

}  // namespace
}  // namespace brindlet::testing
