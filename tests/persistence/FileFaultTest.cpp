// Every single failure of the file system during a save or a backup: the failure reaches the
// caller with the system's words, and what was saved before is still there, whole.
#include <gtest/gtest.h>

#include <cstring>

#include "Builders.h"
#include "FaultSweep.h"
#include "TempDir.h"
#include "persistence/DataBackupManager.h"
#include "persistence/LocalStore.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;
using testing::FaultyFileService;
using testing::FileFault;
using testing::TempDir;

PersistedState documentWithTitle(const std::string& title, std::int64_t revision) {
  PersistedState state = PersistedState::initial();
  state.tasks = {testing::makeTask().titled(title).withEveryField()};
  state.revision = revision;
  return state;
}

// Every file in the folder, hidden ones included, is a whole document.
void expectOnlyWholeDocuments(const fs::path& folder, const std::string& context) {
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(folder, ignored)) {
    EXPECT_NO_THROW((void)LocalStore(entry.path()).load()) << context << ": " << entry.path();
  }
}

void expectNoStrayFiles(const fs::path& folder, const std::string& context) {
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(folder, ignored)) {
    EXPECT_NE(entry.path().filename().string().front(), '.') << context << ": " << entry.path();
  }
}

std::string failureText(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const BrindletError& error) {
    return error.description();
  }
  return {};
}

TEST(FileFaultTest, SaveSurvivesAFailureAtEveryStep) {
  const PersistedState before = documentWithTitle("Before", 4);
  const PersistedState after = documentWithTitle("After", 5);
  const auto faults = testing::everyFaultOf([&](FaultyFileService& files) {
    const TempDir dir;
    LocalStore(dir / "data" / "state.json").save(before);
    LocalStore(dir / "data" / "state.json",
               std::shared_ptr<const FileService>(std::shared_ptr<void>(), &files))
        .save(after);
  });
  ASSERT_GT(faults.size(), 20U);
  for (const FileFault& fault : faults) {
    const TempDir dir;
    const fs::path url = dir / "data" / "state.json";
    LocalStore(url).save(before);
    auto files = std::make_shared<FaultyFileService>();
    files->failAt(fault.step, fault.occurrence, fault.errorNumber);
    const std::string text = failureText([&] { LocalStore(url, files).save(after); });
    ASSERT_TRUE(files->faultHappened()) << fault.describe();
    EXPECT_NE(text.find(std::strerror(fault.errorNumber)), std::string::npos)
        << fault.describe() << ": " << text;
    EXPECT_EQ(LocalStore(url).load(), before) << fault.describe();
    expectOnlyWholeDocuments(LocalStore(url).recoveryFolder(), fault.describe());
    expectNoStrayFiles(url.parent_path(), fault.describe());
  }
}

TEST(FileFaultTest, LockThatCannotBeOpenedIsReportedWithTheSystemsWords) {
  const TempDir dir;
  auto files = std::make_shared<FaultyFileService>();
  files->failAt(testing::FileStep::open, 1, EACCES);
  const LocalStore store(dir / "state.json", files);
  EXPECT_EQ(failureText([&] { store.withExclusiveLock([] {}); }),
            "Brindlet data could not be locked: Permission denied");
}

TEST(FileFaultTest, ReadFailureMakesTheFileUnreadableAndLeavesItAlone) {
  const TempDir dir;
  const fs::path url = dir / "state.json";
  LocalStore(url).save(documentWithTitle("Kept", 1));
  const std::string bytes = testing::readBytes(url);
  auto files = std::make_shared<FaultyFileService>();
  files->failAt(testing::FileStep::read, 1, EIO);
  EXPECT_EQ(failureText([&] { (void)LocalStore(url, files).load(); }),
            "Brindlet data could not be read: Could not read “" + url.string() +
                "”: Input/output error.");
  EXPECT_EQ(testing::readBytes(url), bytes);
}

TEST(FileFaultTest, BackupsSurviveAFailureAtEveryStep) {
  const PersistedState current = documentWithTitle("Current", 9);
  const PersistedState older = documentWithTitle("Older", 5);
  const Instant now = testing::kTestNow;
  const Calendar calendar = Calendar::gregorianUtc();
  struct Operation {
    const char* name;
    std::function<void(const DataBackupManager&, const fs::path& dir)> run;
  };
  const std::vector<Operation> operations = {
      {"daily backup", [&](const DataBackupManager& m,
                           const fs::path&) { (void)m.createDailyBackup(now, calendar); }},
      {"export", [](const DataBackupManager& m,
                    const fs::path& dir) { m.exportBackup(dir / "exports" / "mine.json"); }},
      {"restore", [](const DataBackupManager& m, const fs::path& dir) {
         m.restoreBackup(dir / "older.json");
       }}};
  for (const Operation& operation : operations) {
    const auto prepare = [&](const fs::path& dir) {
      LocalStore(dir / "data" / "state.json").save(current);
      LocalStore(dir / "older.json").save(older);
    };
    const auto faults = testing::everyFaultOf([&](FaultyFileService& files) {
      const TempDir dir;
      prepare(dir.path());
      const std::shared_ptr<const FileService> borrowed(std::shared_ptr<void>(), &files);
      operation.run(DataBackupManager(LocalStore(dir / "data" / "state.json", borrowed),
                                      dir / "Brindlet Backups"),
                    dir.path());
    });
    for (const FileFault& fault : faults) {
      const std::string context = std::string(operation.name) + ", " + fault.describe();
      const TempDir dir;
      prepare(dir.path());
      auto files = std::make_shared<FaultyFileService>();
      files->failAt(fault.step, fault.occurrence, fault.errorNumber);
      const fs::path url = dir / "data" / "state.json";
      const std::string text = failureText([&] {
        operation.run(DataBackupManager(LocalStore(url, files), dir / "Brindlet Backups"),
                      dir.path());
      });
      EXPECT_NE(text.find(std::strerror(fault.errorNumber)), std::string::npos)
          << context << ": " << text;
      EXPECT_EQ(LocalStore(url).load(), current) << context;
      expectOnlyWholeDocuments(dir / "Brindlet Backups", context);
      expectOnlyWholeDocuments(dir / "exports", context);
      expectOnlyWholeDocuments(LocalStore(url).recoveryFolder(), context);
    }
  }
}

}  // namespace
}  // namespace brindlet
