#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <memory>

#include "Builders.h"
#include "FaultyFileService.h"
#include "TempDir.h"
#include "persistence/LocalStore.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;
using testing::filesIn;
using testing::makeTask;
using testing::readBytes;
using testing::TempDir;
using testing::writeBytes;

std::string taskJson(std::string_view title = "Read", std::string_view priority = "normal") {
  JsonWriter out(JsonWriter::Style::compact);
  FocusTask task = makeTask();
  task.title = title;
  toJson(out, task);
  std::string json = out.take();
  json.replace(json.find("\"normal\""), 8, "\"" + std::string(priority) + "\"");
  return json;
}

std::string loadFailure(const LocalStore& store) {
  try {
    (void)store.load();
  } catch (const LocalStoreError& error) {
    return error.description();
  }
  return "loaded";
}

class LocalStoreTest : public ::testing::Test {
 protected:
  TempDir dir;
  fs::path folder = dir / "Brindlet";
  LocalStore store{folder / "state.json"};

  void writeState(std::string_view json) { writeBytes(store.url(), json); }
};

// A store over the same file whose reads are counted.
struct CountedStore {
  std::shared_ptr<testing::FaultyFileService> files =
      std::make_shared<testing::FaultyFileService>();
  LocalStore store;

  explicit CountedStore(const fs::path& url) : store(url, files) {}
  [[nodiscard]] std::size_t readsOf(const std::function<void()>& loads) const {
    files->resetCounts();
    loads();
    return files->calls(testing::FileStep::read);
  }
};

PersistedState stateWithATask(std::string title) {
  PersistedState state = PersistedState::initial();
  FocusTask task = makeTask();
  task.title = std::move(title);
  state.tasks.push_back(task);
  return state;
}

TEST_F(LocalStoreTest, LoadingAFileVersionSomeoneStillHoldsReadsNothing) {
  store.save(stateWithATask("Draft the agenda"));
  const CountedStore counted(store.url());
  const SharedLoadedState held = counted.store.loadShared();

  PersistedState again;
  EXPECT_EQ(counted.readsOf([&] { again = counted.store.load(); }), 0U);
  EXPECT_EQ(again, *held.state);
  EXPECT_EQ(counted.store.loadShared().state, held.state);
  EXPECT_EQ(counted.store.loadWithIdentity().identity, held.identity);
}

TEST_F(LocalStoreTest, AFileReplacedWhileItsOldVersionIsHeldIsReadAgain) {
  store.save(stateWithATask("Draft the agenda"));
  const SharedLoadedState held = store.loadShared();
  store.save(stateWithATask("Book the dentist"));

  const PersistedState now = store.load();
  ASSERT_EQ(now.tasks.size(), 1U);
  EXPECT_EQ(now.tasks.front().title, "Book the dentist");
  EXPECT_EQ(held.state->tasks.front().title, "Draft the agenda");
}

TEST_F(LocalStoreTest, AFileRewrittenInPlaceWhileItsOldVersionIsHeldIsReadAgain) {
  store.save(stateWithATask("Draft the agenda"));
  const SharedLoadedState held = store.loadShared();
  // The same number of bytes, written over the old ones in the same file.
  std::string bytes = readBytes(store.url());
  bytes.replace(bytes.find("Draft the agenda"), 16, "Plan the offsite");
  writeState(bytes);

  EXPECT_EQ(store.load().tasks.front().title, "Plan the offsite");
}

TEST_F(LocalStoreTest, ADocumentNoOneHoldsAnyMoreIsReadAgain) {
  store.save(stateWithATask("Draft the agenda"));
  const CountedStore counted(store.url());
  (void)counted.store.loadShared();

  EXPECT_GT(counted.readsOf([&] { (void)counted.store.load(); }), 0U);
}

TEST_F(LocalStoreTest, TwoStateFilesKeepTheirOwnDocuments) {
  const LocalStore other(dir / "Other" / "state.json");
  store.save(stateWithATask("Draft the agenda"));
  other.save(stateWithATask("Plan the offsite"));
  const SharedLoadedState held = store.loadShared();

  EXPECT_EQ(other.load().tasks.front().title, "Plan the offsite");
  EXPECT_EQ(held.state->tasks.front().title, "Draft the agenda");
}

TEST_F(LocalStoreTest, MigratingACurrentFileSharesItsDocumentWithTheFirstLoad) {
  store.save(stateWithATask("Plan the week"));
  CountedStore counted(store.url());
  SharedLoadedState migrated;
  EXPECT_GT(counted.readsOf([&] { migrated = counted.store.migrateToCurrentSchema(); }), 0U);
  ASSERT_NE(migrated.state, nullptr);
  EXPECT_EQ(migrated.fileSchemaVersion, PersistedState::currentSchemaVersion);

  PersistedState loaded;
  EXPECT_EQ(counted.readsOf([&] { loaded = counted.store.load(); }), 0U);
  EXPECT_EQ(loaded, *migrated.state);
  EXPECT_EQ(loaded.tasks.at(0).title, "Plan the week");
}

TEST_F(LocalStoreTest, MigratingANewerFileGivesNoDocumentAndTheFirstLoadStillRefusesIt) {
  writeState(R"({"schemaVersion": 3})");
  EXPECT_EQ(store.migrateToCurrentSchema().state, nullptr);
  EXPECT_EQ(loadFailure(store), "This data was created by unsupported schema version 3.");
}

TEST_F(LocalStoreTest, MigratingACurrentFileThatDoesNotDecodeLeavesTheErrorToTheFirstLoad) {
  writeState(R"({"schemaVersion": 2, "tasks": "not a list"})");
  EXPECT_EQ(store.migrateToCurrentSchema().state, nullptr);
  EXPECT_THAT(loadFailure(store), ::testing::StartsWith("Brindlet data could not be read: "));
}

TEST_F(LocalStoreTest, AHeldDocumentIsFoundWithoutReadingUntilTheFileIsReplaced) {
  EXPECT_FALSE(store.heldDocument().has_value());
  store.save(stateWithATask("First"));
  EXPECT_FALSE(store.heldDocument().has_value());

  const SharedLoadedState held = store.loadShared();
  CountedStore counted(store.url());
  std::optional<SharedLoadedState> found;
  EXPECT_EQ(counted.readsOf([&] { found = counted.store.heldDocument(); }), 0U);
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->state, held.state);
  EXPECT_EQ(found->identity, held.identity);

  store.save(stateWithATask("Second"));
  EXPECT_FALSE(store.heldDocument().has_value());
}

TEST_F(LocalStoreTest, AHeldDocumentKnowsTheSchemaItsFileWasWrittenIn) {
  writeState(R"({"schemaVersion": 1, "groups": []})");
  const SharedLoadedState held = store.loadShared();
  EXPECT_EQ(held.fileSchemaVersion, 1);
  EXPECT_EQ(held.state->schemaVersion, PersistedState::currentSchemaVersion);
  ASSERT_TRUE(store.heldDocument().has_value());
  EXPECT_EQ(store.heldDocument()->fileSchemaVersion, 1);
}

TEST_F(LocalStoreTest, LoadWithNoFileReturnsTheInitialDocumentAndCreatesNothing) {
  EXPECT_EQ(store.load(), PersistedState::initial());
  EXPECT_FALSE(fs::exists(folder));
}

TEST_F(LocalStoreTest, FileWithOnlySchemaVersionTwoLoadsWithDefaults) {
  writeState(R"({"schemaVersion": 2})");
  const PersistedState state = store.load();
  EXPECT_EQ(state.groups, std::vector{DomainGroup::socialDistractions()});
  EXPECT_EQ(state.revision, 0);
  EXPECT_TRUE(state.tasks.empty());
  EXPECT_EQ(state, PersistedState::initial());
}

TEST_F(LocalStoreTest, SchemaOneFileWithTasksLoadsWithNoTasks) {
  writeState(R"({"schemaVersion": 1, "revision": 4, "tasks": [)" + taskJson() +
             R"(], "groups": [], "preferences": {"dailyCapacityMinutes": 10}})");
  const PersistedState state = store.load();
  EXPECT_EQ(state.schemaVersion, 2);
  EXPECT_TRUE(state.tasks.empty());
  EXPECT_EQ(state.revision, 0);
  EXPECT_TRUE(state.groups.empty());
  EXPECT_EQ(state.preferences.dailyCapacityMinutes, 480);
}

TEST_F(LocalStoreTest, SchemaOneFileIgnoresPlanKeysEvenOfTheWrongType) {
  writeState(R"({"schemaVersion": 1, "tasks": "not a list", "revision": "x"})");
  EXPECT_TRUE(store.load().tasks.empty());
}

TEST_F(LocalStoreTest, SchemaZeroFileReadsTasksLikeSchemaTwoAndMigratesAtStartUp) {
  writeState(R"({"schemaVersion": 0, "revision": 3, "tasks": [)" + taskJson("Zero") + "]}");
  const PersistedState state = store.load();
  ASSERT_EQ(state.tasks.size(), 1U);
  EXPECT_EQ(state.tasks[0].title, "Zero");
  EXPECT_EQ(state.revision, 3);

  store.migrateToCurrentSchema();
  EXPECT_NE(readBytes(store.url()).find("\"schemaVersion\": 2"), std::string::npos);
  EXPECT_EQ(store.load(), state);
  const auto copies = filesIn(store.recoveryFolder());
  ASSERT_EQ(copies.size(), 1U);
  EXPECT_NE(readBytes(copies[0]).find("\"schemaVersion\": 0"), std::string::npos);
}

TEST_F(LocalStoreTest, SchemaOneFileMigratesKeepingGroupsAndSession) {
  PersistedState blockingOnly = testing::makeFullState();
  std::string json = encodeState(blockingOnly);
  json.replace(json.find("\"schemaVersion\": 2"), 18, "\"schemaVersion\": 1");
  writeState(json);
  store.migrateToCurrentSchema();
  const PersistedState migrated = store.load();
  EXPECT_EQ(migrated.activeSession, blockingOnly.activeSession);
  EXPECT_EQ(migrated.groups, blockingOnly.groups);
  EXPECT_TRUE(migrated.tasks.empty());
  EXPECT_EQ(filesIn(store.recoveryFolder()).size(), 1U);
}

TEST_F(LocalStoreTest, MigrationLeavesCurrentAndNewerFilesAlone) {
  writeState(R"({"schemaVersion": 3})");
  store.migrateToCurrentSchema();
  writeBytes(dir / "other" / "state.json", R"({"schemaVersion": 2})");
  LocalStore(dir / "other" / "state.json").migrateToCurrentSchema();
  EXPECT_EQ(readBytes(store.url()), R"({"schemaVersion": 3})");
  EXPECT_FALSE(fs::exists(store.recoveryFolder()));
  EXPECT_FALSE(fs::exists(dir / "other" / "State Backups"));
  LocalStore(dir / "nothing" / "state.json").migrateToCurrentSchema();
  EXPECT_FALSE(fs::exists(dir / "nothing"));
}

TEST_F(LocalStoreTest, MigrationOfAFileWithoutSchemaVersionFailsUnwrapped) {
  writeState(R"({"tasks": []})");
  EXPECT_THROW(store.migrateToCurrentSchema(), DecodingError);
}

TEST_F(LocalStoreTest, SchemaThreeFailsWithUnsupportedSchemaAfterItsProbeSucceeded) {
  // The rest of the document wouldn't decode; the version is refused before that matters.
  writeState(R"({"schemaVersion": 3, "tasks": "not a list"})");
  try {
    (void)store.load();
    FAIL() << "loaded";
  } catch (const LocalStoreError& error) {
    EXPECT_EQ(error.which(), LocalStoreError::Case::unsupportedSchema);
    EXPECT_EQ(error.description(), "This data was created by unsupported schema version 3.");
  }
}

TEST_F(LocalStoreTest, EmptyGroupsListStaysEmpty) {
  writeState(R"({"schemaVersion": 2, "groups": []})");
  EXPECT_TRUE(store.load().groups.empty());
}

TEST_F(LocalStoreTest, FileWithoutSchemaVersionIsUnreadable) {
  writeState(R"({"revision": 1})");
  EXPECT_EQ(loadFailure(store),
            "Brindlet data could not be read: The value “schemaVersion” is missing.");
}

TEST_F(LocalStoreTest, EmptyFileIsUnreadable) {
  writeState("");
  EXPECT_EQ(loadFailure(store).rfind("Brindlet data could not be read: ", 0), 0U);
}

TEST_F(LocalStoreTest, BlankTitleInTheFileReadsEnterATaskTitle) {
  writeState(R"({"schemaVersion": 2, "tasks": [)" + taskJson("  ") + "]}");
  EXPECT_EQ(loadFailure(store), "Brindlet data could not be read: Enter a task title.");
}

TEST_F(LocalStoreTest, FileWithAPriorityOutsideTheTableDoesNotLoad) {
  writeState(R"({"schemaVersion": 2, "tasks": [)" + taskJson("Read", "urgent") + "]}");
  EXPECT_EQ(loadFailure(store),
            "Brindlet data could not be read: The value “tasks[0].priority” is not valid: "
            "“urgent” is not one of critical, high, normal, low.");
}

TEST_F(LocalStoreTest, PresentKeyOfTheWrongTypeFailsTheDocument) {
  writeState(R"({"schemaVersion": 2, "revision": "7"})");
  EXPECT_EQ(loadFailure(store),
            "Brindlet data could not be read: The value “revision” should be a whole number, "
            "not text.");
}

TEST_F(LocalStoreTest, NullTopLevelKeysTakeTheirDefaults) {
  writeState(R"({"schemaVersion": 2, "groups": null, "tasks": null, "activeSession": null})");
  EXPECT_EQ(store.load(), PersistedState::initial());
}

TEST_F(LocalStoreTest, TwoSavesAddTwoRecoveryCopiesTheNewerHoldingTheFirstSave) {
  writeState(R"({"schemaVersion": 2, "revision": 1})");
  PersistedState first = PersistedState::initial();
  first.revision = 2;
  store.save(first);
  const auto afterFirst = filesIn(store.recoveryFolder());
  PersistedState second = first;
  second.revision = 3;
  store.save(second);
  const auto copies = filesIn(store.recoveryFolder());
  ASSERT_EQ(afterFirst.size(), 1U);
  ASSERT_EQ(copies.size(), 2U);
  const fs::path newer = copies[0] == afterFirst[0] ? copies[1] : copies[0];
  EXPECT_EQ(LocalStore(newer).load(), first);
  EXPECT_EQ(readBytes(afterFirst[0]), R"({"schemaVersion": 2, "revision": 1})");
  EXPECT_EQ(store.load(), second);
}

TEST_F(LocalStoreTest, RecoveryCopiesAreNamedWithAnUpperCaseUuid) {
  store.save(PersistedState::initial());
  store.save(PersistedState::initial());
  const auto copies = filesIn(store.recoveryFolder());
  ASSERT_EQ(copies.size(), 1U);
  const std::string name = copies[0].filename().string();
  ASSERT_EQ(name.size(), std::string("state-.json").size() + 36);
  EXPECT_EQ(name.substr(0, 6), "state-");
  const auto id = Uuid::parse(name.substr(6, 36));
  ASSERT_TRUE(id.has_value());
  EXPECT_EQ(id->uppercaseText(), name.substr(6, 36));
}

TEST_F(LocalStoreTest, VeryFirstSaveMakesNoCopyAndMakesTheFolders) {
  store.save(PersistedState::initial());
  EXPECT_TRUE(fs::exists(store.url()));
  EXPECT_FALSE(fs::exists(store.recoveryFolder()));
}

TEST_F(LocalStoreTest, SaveWithSchemaVersionOneFailsWithUnsupportedSchemaAndLeavesNoCopy) {
  store.save(PersistedState::initial());
  PersistedState old = PersistedState::initial();
  old.schemaVersion = 1;
  try {
    store.save(old);
    FAIL() << "saved";
  } catch (const LocalStoreError& error) {
    EXPECT_EQ(error.which(), LocalStoreError::Case::unsupportedSchema);
    EXPECT_EQ(error.version(), 1);
  }
  EXPECT_FALSE(fs::exists(store.recoveryFolder()));
}

TEST_F(LocalStoreTest, SaveOfAnInvalidTaskFailsUnwrappedAndWritesNothing) {
  PersistedState state = PersistedState::initial();
  state.tasks = {makeTask().estimated(5000)};
  EXPECT_THROW(store.save(state), ProductivityValidationError);
  EXPECT_FALSE(fs::exists(folder));
}

TEST_F(LocalStoreTest, SaveStopsWhenTheRecoveryCopyCannotBeMade) {
  store.save(PersistedState::initial());
  const std::string before = readBytes(store.url());
  writeBytes(store.recoveryFolder(), "a file where the folder should be");
  PersistedState changed = PersistedState::initial();
  changed.revision = 9;
  EXPECT_THROW(store.save(changed), SystemError);
  EXPECT_EQ(readBytes(store.url()), before);
}

TEST_F(LocalStoreTest, SaveOfANumberJsonCannotHoldKeepsTheOldFileAndItsCopy) {
  store.save(PersistedState::initial());
  const std::string before = readBytes(store.url());
  PersistedState state = PersistedState::initial();
  state.tasks = {makeTask()};
  state.tasks[0].accumulatedFocusSeconds = std::nan("");
  EXPECT_THROW(store.save(state), EncodingError);
  EXPECT_EQ(readBytes(store.url()), before);
  ASSERT_EQ(filesIn(store.recoveryFolder()).size(), 1U);
  EXPECT_EQ(readBytes(filesIn(store.recoveryFolder())[0]), before);
}

TEST_F(LocalStoreTest, StateFileAndCopiesAreReadableByTheOwnerOnly) {
  store.save(PersistedState::initial());
  store.save(PersistedState::initial());
  for (const fs::path& path : {store.url(), filesIn(store.recoveryFolder())[0]}) {
    struct stat info {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600U) << path;
  }
}

TEST_F(LocalStoreTest, LockFileStaysAfterReleaseAndItsContentStaysEmpty) {
  const int result = store.withExclusiveLock([] { return 41 + 1; });
  EXPECT_EQ(result, 42);
  store.updateAtomically([](PersistedState& state) { state.revision += 1; });
  ASSERT_TRUE(fs::exists(store.lockPath()));
  EXPECT_EQ(store.lockPath().filename(), "state.json.lock");
  EXPECT_EQ(fs::file_size(store.lockPath()), 0U);
  struct stat info {};
  ASSERT_EQ(::stat(store.lockPath().c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0600U);
}

TEST_F(LocalStoreTest, LockThatCannotBeOpenedFailsWithLockFailedAndSkipsTheBody) {
  fs::create_directories(store.lockPath());
  bool ran = false;
  try {
    store.withExclusiveLock([&] { ran = true; });
    FAIL() << "locked";
  } catch (const LocalStoreError& error) {
    EXPECT_EQ(error.which(), LocalStoreError::Case::lockFailed);
    EXPECT_EQ(error.description(), "Brindlet data could not be locked: Is a directory");
  }
  EXPECT_FALSE(ran);
}

TEST_F(LocalStoreTest, LockIsReleasedWhenTheBodyFails) {
  EXPECT_THROW(store.withExclusiveLock([]() -> int { throw std::runtime_error("body"); }),
               std::runtime_error);
  EXPECT_EQ(store.withExclusiveLock([] { return 1; }), 1);
}

TEST_F(LocalStoreTest, UpdateAtomicallyReturnsTheChangesResultAndSavesTheDocument) {
  const std::int64_t seen = store.updateAtomically([](PersistedState& state) {
    state.revision = 5;
    return state.revision * 2;
  });
  EXPECT_EQ(seen, 10);
  EXPECT_EQ(store.load().revision, 5);
}

TEST_F(LocalStoreTest, FailingChangeLeavesTheFileAsItWas) {
  store.save(PersistedState::initial());
  const std::string before = readBytes(store.url());
  EXPECT_THROW(store.updateAtomically([](PersistedState& state) {
    state.revision = 99;
    throw std::runtime_error("refused");
  }),
               std::runtime_error);
  EXPECT_EQ(readBytes(store.url()), before);
  EXPECT_FALSE(fs::exists(store.recoveryFolder()));
}

TEST_F(LocalStoreTest, UpdateOfAnUnreadableFileFailsAndLeavesItsBytes) {
  writeState("{ not json");
  EXPECT_THROW(store.updateAtomically([](PersistedState&) {}), LocalStoreError);
  EXPECT_EQ(readBytes(store.url()), "{ not json");
}

TEST_F(LocalStoreTest, UnreadableFileIsReportedWithTheSystemsText) {
  fs::create_directories(store.url());
  EXPECT_EQ(loadFailure(store).rfind("Brindlet data could not be read: Could not read", 0), 0U);
}

}  // namespace
}  // namespace brindlet
