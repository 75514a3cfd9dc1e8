#include <gtest/gtest.h>

#include <map>

#include "TempDir.h"
#include "app/PlatformFolders.h"

namespace brindlet {
namespace {

using testing::TempDir;
using testing::writeBytes;

PlatformFolders::Environment environmentOf(std::map<std::string, std::string> variables) {
  return [variables = std::move(variables)](std::string_view name) -> std::optional<std::string> {
    const auto found = variables.find(std::string(name));
    if (found == variables.end()) return std::nullopt;
    return found->second;
  };
}

TEST(PlatformFoldersTest, DataHomeAndDocumentsDefaultBelowHome) {
  const TempDir home;
  const auto folders = PlatformFolders::fromEnvironment(environmentOf({{"HOME", home.path()}}));
  EXPECT_EQ(folders.applicationSupport, home / ".local" / "share");
  EXPECT_EQ(folders.documents, home / "Documents");
  EXPECT_EQ(folders.stateFile(), home.path() / ".local/share/Brindlet/state.json");
  EXPECT_EQ(folders.hostsBackupFolder(), home.path() / ".local/share/Brindlet/Backups");
  EXPECT_EQ(folders.dailyBackupFolder(), home.path() / "Documents/Brindlet Backups");
}

TEST(PlatformFoldersTest, XdgDataHomeIsUsedWhenAbsolute) {
  const TempDir home;
  EXPECT_EQ(PlatformFolders::fromEnvironment(
                environmentOf({{"HOME", home.path()}, {"XDG_DATA_HOME", "/srv/data"}}))
                .applicationSupport,
            "/srv/data");
  EXPECT_EQ(PlatformFolders::fromEnvironment(
                environmentOf({{"HOME", home.path()}, {"XDG_DATA_HOME", "relative/data"}}))
                .applicationSupport,
            home / ".local" / "share");
}

TEST(PlatformFoldersTest, DocumentsComeFromUserDirsRelativeToHome) {
  const TempDir home;
  writeBytes(home / ".config" / "user-dirs.dirs",
             "# written by xdg-user-dirs-update\nXDG_DESKTOP_DIR=\"$HOME/Desktop\"\n"
             "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
  EXPECT_EQ(PlatformFolders::fromEnvironment(environmentOf({{"HOME", home.path()}})).documents,
            home / "Dokumente");
}

TEST(PlatformFoldersTest, DocumentsMayBeAnAbsolutePathInAnotherConfigFolder) {
  const TempDir home;
  writeBytes(home / "cfg" / "user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"/data/papers\"\n");
  const auto folders = PlatformFolders::fromEnvironment(
      environmentOf({{"HOME", home.path()}, {"XDG_CONFIG_HOME", (home / "cfg").string()}}));
  EXPECT_EQ(folders.documents, "/data/papers");
}

TEST(PlatformFoldersTest, MalformedUserDirsEntryFallsBackToDocumentsInHome) {
  const TempDir home;
  writeBytes(home / ".config" / "user-dirs.dirs", "XDG_DOCUMENTS_DIR=$HOME/unquoted\n");
  EXPECT_EQ(PlatformFolders::fromEnvironment(environmentOf({{"HOME", home.path()}})).documents,
            home / "Documents");
}

}  // namespace
}  // namespace brindlet
