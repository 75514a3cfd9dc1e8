#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "Builders.h"
#include "FaultyFileService.h"
#include "TempDir.h"
#include "persistence/DataBackupManager.h"
#include "persistence/LocalStore.h"
#include "support/BrindletError.h"
#include "support/Calendar.h"
#include "support/JsonReader.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;
using testing::filesIn;
using testing::kTestNow;
using testing::makeTask;
using testing::readBytes;
using testing::TempDir;
using testing::writeBytes;

class DataBackupManagerTest : public ::testing::Test {
 protected:
  [[nodiscard]] static PersistedState stateAt(std::int64_t revision, std::string title) {
    PersistedState state = PersistedState::initial();
    state.revision = revision;
    state.tasks = {makeTask().titled(std::move(title))};
    return state;
  }

  TempDir dir_;
  LocalStore local_{dir_ / "Application Support" / "Brindlet" / "state.json"};
  fs::path daily_ = dir_ / "Documents" / "Brindlet Backups";
  DataBackupManager manager_{local_, daily_};
  Calendar utc_ = Calendar::gregorianUtc();
};

TEST_F(DataBackupManagerTest, TwoBackupsOnSameDayLeaveOneFileWithFirstContent) {
  local_.save(stateAt(1, "Morning"));
  const std::string morning = readBytes(local_.url());
  const fs::path first = manager_.createDailyBackup(kTestNow, utc_);
  local_.save(stateAt(2, "Evening"));
  const fs::path second = manager_.createDailyBackup(kTestNow.advanced(8 * 3600), utc_);

  EXPECT_EQ(first, daily_ / "Brindlet-2026-11-21.json");
  EXPECT_EQ(second, first);
  EXPECT_EQ(filesIn(daily_), std::vector<fs::path>{first});
  EXPECT_EQ(readBytes(first), morning);
}

TEST_F(DataBackupManagerTest, BackupJustPastLocalMidnightMakesNewFileForTheCalendarsDay) {
  local_.save(stateAt(1, "Plan"));
  // Both instants fall on 21 November in UTC; in Tokyo the second is just past midnight.
  const Calendar tokyo("Asia/Tokyo", Calendar::kMonday);
  const Instant beforeMidnight = Instant::fromIso8601("2026-11-21T14:59:30Z").value();
  const Instant afterMidnight = Instant::fromIso8601("2026-11-21T15:00:30Z").value();

  const fs::path late = manager_.createDailyBackup(beforeMidnight, tokyo);
  const fs::path early = manager_.createDailyBackup(afterMidnight, tokyo);

  EXPECT_EQ(late.filename(), "Brindlet-2026-11-21.json");
  EXPECT_EQ(early.filename(), "Brindlet-2026-11-22.json");
  EXPECT_EQ(filesIn(daily_).size(), 2U);
}

TEST_F(DataBackupManagerTest, BackupWithoutStateFileFailsAndMakesNoFolder) {
  EXPECT_THROW((void)manager_.createDailyBackup(kTestNow, utc_), SystemError);
  EXPECT_FALSE(fs::exists(daily_));
  EXPECT_FALSE(fs::exists(local_.url()));
}

TEST_F(DataBackupManagerTest, BackupOfSchemaOneFileFailsWithLegacySchema) {
  writeBytes(local_.url(), R"({"schemaVersion": 1, "groups": []})");
  try {
    (void)manager_.createDailyBackup(kTestNow, utc_);
    FAIL() << "a schema 1 file was backed up";
  } catch (const DataBackupError& error) {
    EXPECT_EQ(error.which(), DataBackupError::Case::legacySchema);
    EXPECT_EQ(error.version(), 1);
    EXPECT_EQ(error.description(),
              "This backup uses legacy schema 1 and cannot safely restore task history.");
  }
  EXPECT_TRUE(filesIn(daily_).empty());
}

TEST_F(DataBackupManagerTest, BackupOfSchemaThreeFileFailsWithTheLegacyWords) {
  writeBytes(local_.url(), R"({"schemaVersion": 3})");
  try {
    (void)manager_.createDailyBackup(kTestNow, utc_);
    FAIL() << "a schema 3 file was backed up";
  } catch (const DataBackupError& error) {
    EXPECT_EQ(error.description(),
              "This backup uses legacy schema 3 and cannot safely restore task history.");
  }
  EXPECT_TRUE(filesIn(daily_).empty());
}

TEST_F(DataBackupManagerTest, BackupOfDamagedStateFileMakesNoBackup) {
  writeBytes(local_.url(), R"({"schemaVersion": 2, "tasks": [)");
  EXPECT_THROW((void)manager_.createDailyBackup(kTestNow, utc_), DecodingError);
  EXPECT_TRUE(filesIn(daily_).empty());

  writeBytes(local_.url(), R"({"schemaVersion": 2, "tasks": 4})");
  try {
    (void)manager_.createDailyBackup(kTestNow, utc_);
    FAIL() << "a file with a malformed task list was backed up";
  } catch (const LocalStoreError& error) {
    EXPECT_EQ(error.which(), LocalStoreError::Case::unreadable);
  }
  EXPECT_TRUE(filesIn(daily_).empty());
}

TEST_F(DataBackupManagerTest, TheBackupsCheckReadsNothingWhileTheCurrentDocumentIsHeld) {
  local_.save(stateAt(4, "Held"));
  const SharedLoadedState held = local_.loadShared();
  const auto files = std::make_shared<testing::FaultyFileService>();
  const DataBackupManager counted(LocalStore(local_.url(), files), daily_);
  const fs::path backup = counted.createDailyBackup(kTestNow, utc_);

  // The day's backup exists, so a second one that day is the check alone.
  files->resetCounts();
  EXPECT_EQ(counted.createDailyBackup(kTestNow.advanced(3600), utc_), backup);
  EXPECT_EQ(files->calls(testing::FileStep::read), 0U);
  EXPECT_EQ(readBytes(backup), readBytes(local_.url()));
}

TEST_F(DataBackupManagerTest, AHeldDocumentOfASchemaOneFileIsStillRefused) {
  local_.save(stateAt(3, "Current"));
  const std::string current = readBytes(local_.url());
  const fs::path backup = dir_ / "old.json";
  writeBytes(backup, R"({"schemaVersion": 1, "groups": []})");
  const SharedLoadedState held = LocalStore(backup).loadShared();

  try {
    manager_.restoreBackup(backup);
    FAIL() << "a schema 1 backup was restored";
  } catch (const DataBackupError& error) {
    EXPECT_EQ(error.version(), 1);
  }
  EXPECT_EQ(readBytes(local_.url()), current);
}

TEST_F(DataBackupManagerTest, RestoreFromRevisionFiveOverNineLeavesFiveAndKeepsNineAsCopy) {
  local_.save(stateAt(9, "Current"));
  const std::string current = readBytes(local_.url());
  const fs::path backup = dir_ / "portable.json";
  LocalStore(backup).save(stateAt(5, "Older"));
  const std::size_t copiesBefore = filesIn(local_.recoveryFolder()).size();

  manager_.restoreBackup(backup);

  const PersistedState restored = local_.load();
  EXPECT_EQ(restored.revision, 5);
  EXPECT_EQ(restored.tasks.front().title, "Older");
  const std::vector<fs::path> copies = filesIn(local_.recoveryFolder());
  ASSERT_EQ(copies.size(), copiesBefore + 1);
  bool foundCurrent = false;
  for (const fs::path& copy : copies) foundCurrent = foundCurrent || readBytes(copy) == current;
  EXPECT_TRUE(foundCurrent);
}

TEST_F(DataBackupManagerTest, RestoreFromSchemaOneFileLeavesStateFileUntouched) {
  local_.save(stateAt(3, "Current"));
  const std::string current = readBytes(local_.url());
  const fs::path backup = dir_ / "old.json";
  writeBytes(backup, R"({"schemaVersion": 1, "groups": []})");

  try {
    manager_.restoreBackup(backup);
    FAIL() << "a schema 1 backup was restored";
  } catch (const DataBackupError& error) {
    EXPECT_EQ(error.description(),
              "This backup uses legacy schema 1 and cannot safely restore task history.");
  }
  EXPECT_EQ(readBytes(local_.url()), current);
  EXPECT_TRUE(filesIn(local_.recoveryFolder()).empty());
}

TEST_F(DataBackupManagerTest, RestoreFromDamagedOrInvalidFileLeavesStateFileUntouched) {
  local_.save(stateAt(3, "Current"));
  const std::string current = readBytes(local_.url());
  const fs::path damaged = dir_ / "damaged.json";
  writeBytes(damaged, "{\"schemaVersion\": 2, ");
  const fs::path blankTitle = dir_ / "blank.json";
  std::string blank = readBytes(local_.url());
  blank.replace(blank.find("\"Current\""), 9, "\"  \"");
  writeBytes(blankTitle, blank);

  EXPECT_THROW(manager_.restoreBackup(damaged), DecodingError);
  try {
    manager_.restoreBackup(blankTitle);
    FAIL() << "a backup with a blank title was restored";
  } catch (const LocalStoreError& error) {
    EXPECT_EQ(error.description(), "Brindlet data could not be read: Enter a task title.");
  }
  EXPECT_THROW(manager_.restoreBackup(dir_ / "missing.json"), SystemError);
  EXPECT_EQ(readBytes(local_.url()), current);
  EXPECT_TRUE(filesIn(local_.recoveryFolder()).empty());
}

TEST_F(DataBackupManagerTest, RestoreOverDamagedStateFileKeepsItAsRecoveryCopy) {
  writeBytes(local_.url(), "damaged beyond reading");
  const fs::path backup = dir_ / "portable.json";
  LocalStore(backup).save(stateAt(5, "Good"));

  manager_.restoreBackup(backup);

  EXPECT_EQ(local_.load().revision, 5);
  const std::vector<fs::path> copies = filesIn(local_.recoveryFolder());
  ASSERT_EQ(copies.size(), 1U);
  EXPECT_EQ(readBytes(copies.front()), "damaged beyond reading");
}

TEST_F(DataBackupManagerTest, ExportOverExistingFileReplacesIt) {
  local_.save(stateAt(4, "Plan"));
  const fs::path destination = dir_ / "export.json";
  writeBytes(destination, "an older export");

  manager_.exportBackup(destination);

  EXPECT_EQ(readBytes(destination), readBytes(local_.url()));
}

TEST_F(DataBackupManagerTest, ExportToMissingFolderMakesTheFolder) {
  local_.save(stateAt(4, "Plan"));
  const fs::path destination = dir_ / "USB" / "Brindlet" / "export.json";

  manager_.exportBackup(destination);

  EXPECT_EQ(readBytes(destination), readBytes(local_.url()));
  EXPECT_EQ(LocalStore(destination).load(), local_.load());
}

TEST_F(DataBackupManagerTest, ExportOfDamagedStateFileWritesNothing) {
  writeBytes(local_.url(), "{");
  const fs::path destination = dir_ / "export.json";
  EXPECT_THROW(manager_.exportBackup(destination), DecodingError);
  EXPECT_FALSE(fs::exists(destination));
}

}  // namespace
}  // namespace brindlet
