#include <gtest/gtest.h>
#include <sys/stat.h>

#include "TempDir.h"
#include "support/BrindletError.h"
#include "support/Files.h"

namespace brindlet {
namespace {

using testing::filesIn;
using testing::readBytes;
using testing::TempDir;
using testing::writeBytes;

TEST(FilesTest, AtomicWriteCreatesTheFileAndLeavesNoTemporaryBehind) {
  const TempDir dir;
  writeFileAtomically(dir / "a.json", "first");
  writeFileAtomically(dir / "a.json", "second, longer");
  EXPECT_EQ(readBytes(dir / "a.json"), "second, longer");
  EXPECT_EQ(filesIn(dir.path()), std::vector{dir / "a.json"});
}

TEST(FilesTest, AtomicWriteUsesTheGivenMode) {
  const TempDir dir;
  writeFileAtomically(dir / "private", "x", 0600);
  struct stat info {};
  ASSERT_EQ(::stat((dir / "private").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0600U);
}

TEST(FilesTest, AtomicWriteIntoAMissingFolderFailsWithTheSystemsText) {
  const TempDir dir;
  try {
    writeFileAtomically(dir / "missing" / "a.json", "x");
    FAIL() << "wrote";
  } catch (const SystemError& error) {
    EXPECT_EQ(error.errorNumber(), ENOENT);
    EXPECT_NE(error.description().find("No such file or directory"), std::string::npos);
    EXPECT_NE(error.description().find("a.json"), std::string::npos);
  }
}

TEST(FilesTest, FailedReplaceKeepsTheOldFile) {
  const TempDir dir;
  writeBytes(dir / "target" / "inside", "keep");
  // A folder can't be replaced by a file, so the rename fails after the data was written.
  EXPECT_THROW(writeFileAtomically(dir / "target", "new"), SystemError);
  EXPECT_EQ(readBytes(dir / "target" / "inside"), "keep");
  EXPECT_EQ(filesIn(dir.path()).size(), 0U);
}

TEST(FilesTest, ReadingAMissingFileIsAbsentOrAnError) {
  const TempDir dir;
  EXPECT_FALSE(readFileIfExists(dir / "none").has_value());
  EXPECT_THROW((void)readWholeFile(dir / "none"), SystemError);
  EXPECT_FALSE(fileExists(dir / "none"));
  EXPECT_FALSE(fileIdentity(dir / "none").has_value());
}

TEST(FilesTest, ReadingAFolderIsAnError) {
  const TempDir dir;
  EXPECT_THROW((void)readWholeFile(dir.path()), SystemError);
}

TEST(FilesTest, ReadLeavesZeroedRoomForTheParser) {
  const TempDir dir;
  writeBytes(dir / "a", "12345");
  const FileContents contents = readWholeFile(dir / "a");
  EXPECT_EQ(contents.bytes, "12345");
  EXPECT_GE(contents.bytes.capacity(), contents.bytes.size() + 64);
  EXPECT_EQ(contents.bytes.data()[contents.bytes.size() + 10], '\0');
}

TEST(FilesTest, IdentityChangesWhenTheFileIsReplaced) {
  const TempDir dir;
  writeFileAtomically(dir / "a", "one");
  const FileContents first = readWholeFile(dir / "a");
  EXPECT_EQ(fileIdentity(dir / "a"), first.identity);
  writeFileAtomically(dir / "a", "two");
  EXPECT_NE(fileIdentity(dir / "a"), first.identity);
}

TEST(FilesTest, CopyIsWholeAndCreateDirectoriesMakesEveryLevel) {
  const TempDir dir;
  createDirectories(dir / "x" / "y" / "z");
  createDirectories(dir / "x" / "y" / "z");
  writeBytes(dir / "source", std::string(100'000, 'q'));
  copyFileAtomically(dir / "source", dir / "x" / "y" / "z" / "copy");
  EXPECT_EQ(readBytes(dir / "x" / "y" / "z" / "copy"), std::string(100'000, 'q'));
}

TEST(FilesTest, CreatingAFolderWhereAFileStandsFails) {
  const TempDir dir;
  writeBytes(dir / "file", "x");
  EXPECT_THROW(createDirectories(dir / "file" / "sub"), SystemError);
}

}  // namespace
}  // namespace brindlet

namespace brindlet {
namespace {

TEST(FilesTest, PreservedVersionKeepsItsBytesWhenTheFileIsReplaced) {
  const testing::TempDir dir;
  writeFileAtomically(dir / "state", "old version");
  ASSERT_TRUE(preserveVersion(dir / "state", dir / "kept"));
  writeFileAtomically(dir / "state", "new version");
  EXPECT_EQ(testing::readBytes(dir / "kept"), "old version");
  EXPECT_EQ(testing::readBytes(dir / "state"), "new version");
}

TEST(FilesTest, PreservingAMissingFileKeepsNothing) {
  const testing::TempDir dir;
  EXPECT_FALSE(preserveVersion(dir / "none", dir / "kept"));
  EXPECT_FALSE(fileExists(dir / "kept"));
}

TEST(FilesTest, PreservingOntoAnExistingNameFails) {
  const testing::TempDir dir;
  writeFileAtomically(dir / "state", "a");
  writeFileAtomically(dir / "kept", "b");
  EXPECT_THROW(preserveVersion(dir / "state", dir / "kept"), SystemError);
  EXPECT_EQ(testing::readBytes(dir / "kept"), "b");
}

}  // namespace
}  // namespace brindlet
