// Every file of a JSON parser conformance corpus, valid, invalid and ambiguous, offered to the
// state file loader: it must give a document or a clear "unreadable", never crash, and never
// change the file.
#include <gtest/gtest.h>

#include <filesystem>

#include "TempDir.h"
#include "persistence/LocalStore.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;
using testing::readBytes;
using testing::TempDir;
using testing::writeBytes;

std::vector<fs::path> corpusFiles() {
  return testing::filesIn(testing::testDataFolder() / "json-parsing" / "test_parsing");
}

// Loads the bytes as a state file; fails the test unless the outcome is a document or
// `unreadable`, and unless the bytes stay as they were.
void expectDocumentOrUnreadable(const TempDir& dir, const std::string& bytes,
                                const std::string& name) {
  const LocalStore store(dir / "state.json");
  writeBytes(store.url(), bytes);
  try {
    (void)store.load();
  } catch (const LocalStoreError& error) {
    EXPECT_EQ(error.which(), LocalStoreError::Case::unreadable) << name;
    EXPECT_FALSE(error.description().empty());
  } catch (...) {
    ADD_FAILURE() << name << ": an error other than LocalStoreError";
  }
  EXPECT_EQ(readBytes(store.url()), bytes) << name;
}

TEST(StateFileCorpusTest, CorpusIsPresent) { EXPECT_EQ(corpusFiles().size(), 318U); }

TEST(StateFileCorpusTest, EveryCorpusFileLoadsAsADocumentOrIsUnreadable) {
  const TempDir dir;
  for (const fs::path& file : corpusFiles()) {
    expectDocumentOrUnreadable(dir, readBytes(file), file.filename().string());
  }
}

TEST(StateFileCorpusTest, EveryCorpusFileInsideAStateDocumentLoadsOrIsUnreadable) {
  const TempDir dir;
  for (const fs::path& file : corpusFiles()) {
    const std::string value = readBytes(file);
    for (const char* key : {"groups", "tasks", "revision", "activeSession", "preferences"}) {
      expectDocumentOrUnreadable(
          dir, std::string(R"({"schemaVersion": 2, ")") + key + "\": " + value + "}",
          file.filename().string() + " as " + key);
    }
  }
}

TEST(StateFileCorpusTest, FuzzerSeedsAndFindsLoadOrAreUnreadable) {
  const TempDir dir;
  const auto files = testing::filesIn(testing::testDataFolder() / "fuzz" / "state_file");
  EXPECT_FALSE(files.empty());
  for (const fs::path& file : files) {
    expectDocumentOrUnreadable(dir, readBytes(file), file.filename().string());
  }
}

TEST(StateFileCorpusTest, ValidJsonThatIsNotAnObjectIsUnreadable) {
  const TempDir dir;
  const LocalStore store(dir / "state.json");
  writeBytes(store.url(), "[2]");
  EXPECT_THROW((void)store.load(), LocalStoreError);
}

}  // namespace
}  // namespace brindlet
