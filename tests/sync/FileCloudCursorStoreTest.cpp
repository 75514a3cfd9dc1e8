#include <gtest/gtest.h>

#include "TempDir.h"
#include "sync/FileCloudCursorStore.h"

namespace brindlet {
namespace {

using testing::filesIn;
using testing::readBytes;
using testing::TempDir;
using testing::writeBytes;

TEST(FileCloudCursorStoreTest, SavingAbsentThenLoadingGivesAbsent) {
  TempDir folder;
  FileCloudCursorStore store(folder.path());
  store.save(std::string("cursor-1"));
  ASSERT_EQ(store.load(), "cursor-1");
  store.save(std::nullopt);
  EXPECT_EQ(store.load(), std::nullopt);
  EXPECT_EQ(FileCloudCursorStore(folder.path()).load(), std::nullopt);
}

TEST(FileCloudCursorStoreTest, SavingAbsentIntoAnEmptyFolderGivesAbsentAndWritesNothing) {
  TempDir folder;
  FileCloudCursorStore store(folder.path());
  store.save(std::nullopt);
  EXPECT_EQ(store.load(), std::nullopt);
  EXPECT_TRUE(filesIn(folder.path()).empty());
}

TEST(FileCloudCursorStoreTest, CursorIsKeptUnderItsKeyAsBase64AndSurvivesANewStore) {
  TempDir folder;
  const std::string cursor("\x00\x01token\xff", 8);
  FileCloudCursorStore(folder.path()).save(cursor);
  EXPECT_EQ(readBytes(folder / "defaults.json"),
            "{\n  \"cloudkit-change-token.v1\": \"AAF0b2tlbv8=\"\n}");
  EXPECT_EQ(FileCloudCursorStore(folder.path()).load(), cursor);
  EXPECT_EQ(filesIn(folder.path()), std::vector<std::filesystem::path>{folder / "defaults.json"});
}

TEST(FileCloudCursorStoreTest, MakesTheFolderWhenItIsMissing) {
  TempDir folder;
  FileCloudCursorStore store(folder / "Brindlet");
  store.save(std::string("c"));
  EXPECT_EQ(store.path(), folder / "Brindlet" / "defaults.json");
  EXPECT_EQ(FileCloudCursorStore(folder / "Brindlet").load(), "c");
}

TEST(FileCloudCursorStoreTest, OtherKeysInTheFileAreKept) {
  TempDir folder;
  writeBytes(folder / "defaults.json", R"({"other.v1":"b3RoZXI="})");
  FileCloudCursorStore store(folder.path());
  store.save(std::string("mine"));
  store.save(std::nullopt);
  EXPECT_EQ(FileCloudCursorStore(folder.path(), "other.v1").load(), "other");
  store.save(std::string("again"));
  EXPECT_EQ(FileCloudCursorStore(folder.path(), "other.v1").load(), "other");
  EXPECT_EQ(store.load(), "again");
}

TEST(FileCloudCursorStoreTest, UnreadableFileLoadsAbsentAndIsReplacedAtTheNextSave) {
  TempDir folder;
  writeBytes(folder / "defaults.json", "{not json");
  FileCloudCursorStore store(folder.path());
  EXPECT_EQ(store.load(), std::nullopt);
  store.save(std::string("fresh"));
  EXPECT_EQ(store.load(), "fresh");
}

TEST(FileCloudCursorStoreTest, ValueThatIsNotBase64LoadsAbsent) {
  TempDir folder;
  writeBytes(folder / "defaults.json", R"({"cloudkit-change-token.v1":"%%%"})");
  EXPECT_EQ(FileCloudCursorStore(folder.path()).load(), std::nullopt);
}

TEST(FileCloudCursorStoreTest, SaveThatCantBeWrittenFailsQuietlyAndLeavesNoTemporaryFile) {
  TempDir folder;
  // A folder where the file should be makes the replacement fail.
  std::filesystem::create_directory(folder / "defaults.json");
  FileCloudCursorStore store(folder.path());
  EXPECT_NO_THROW(store.save(std::string("lost")));
  EXPECT_EQ(store.load(), std::nullopt);
  EXPECT_TRUE(std::filesystem::is_directory(folder / "defaults.json"));
  EXPECT_TRUE(filesIn(folder.path()).empty());
}

}  // namespace
}  // namespace brindlet
