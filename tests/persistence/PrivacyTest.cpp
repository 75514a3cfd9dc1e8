// The plan, its copies and its backups are the user's alone.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Builders.h"
#include "FakePrivilegedRunner.h"
#include "TempDir.h"
#include "blocking/HostsBlockingEngine.h"
#include "persistence/DataBackupManager.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;

unsigned modeOf(const fs::path& path) {
  struct stat info {};
  EXPECT_EQ(::stat(path.c_str(), &info), 0) << path;
  return info.st_mode & 0777;
}

TEST(PrivacyTest, DataFolderStateFileAndRecoveryCopiesAreTheUsersAlone) {
  const testing::TempDir dir;
  const LocalStore store(dir / "share" / "Brindlet" / "state.json");
  store.updateAtomically([](PersistedState&) {});
  store.save(PersistedState::initial());
  EXPECT_EQ(modeOf(dir / "share" / "Brindlet"), 0700U);
  EXPECT_EQ(modeOf(store.recoveryFolder()), 0700U);
  EXPECT_EQ(modeOf(store.url()), 0600U);
  EXPECT_EQ(modeOf(store.lockPath()), 0600U);
  for (const fs::path& copy : testing::filesIn(store.recoveryFolder())) {
    EXPECT_EQ(modeOf(copy), 0600U);
  }
}

TEST(PrivacyTest, DailyBackupsAndExportsAreTheUsersAlone) {
  const testing::TempDir dir;
  const LocalStore store(dir / "Brindlet" / "state.json");
  store.save(PersistedState::initial());
  const DataBackupManager backups(store, dir / "Documents" / "Brindlet Backups");
  const fs::path daily = backups.createDailyBackup(testing::kTestNow, Calendar::gregorianUtc());
  backups.exportBackup(dir / "Exports" / "plan.json");
  EXPECT_EQ(modeOf(dir / "Documents" / "Brindlet Backups"), 0700U);
  EXPECT_EQ(modeOf(daily), 0600U);
  EXPECT_EQ(modeOf(dir / "Exports" / "plan.json"), 0600U);
}

TEST(PrivacyTest, HostsBackupsAreTheUsersAlone) {
  const testing::TempDir dir;
  testing::writeBytes(dir / "hosts", "127.0.0.1 localhost\n");
  HostsBlockingEngine engine(dir / "hosts", dir / "Brindlet" / "Backups",
                             std::make_shared<testing::FakePrivilegedRunner>());
  engine.apply({"example.com"});
  EXPECT_EQ(modeOf(dir / "Brindlet" / "Backups"), 0700U);
  const auto copies = testing::filesIn(dir / "Brindlet" / "Backups");
  ASSERT_EQ(copies.size(), 1U);
  EXPECT_EQ(modeOf(copies[0]), 0600U);
}

}  // namespace
}  // namespace brindlet
