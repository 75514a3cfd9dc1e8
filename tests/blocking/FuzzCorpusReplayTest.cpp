// Replays the saved fuzzing corpora as ordinary tests, with the properties the fuzz targets
// check, so that every input that once found a new path keeps working.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "TempDir.h"
#include "blocking/DomainRules.h"
#include "blocking/HostsDocument.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> corpus(std::string_view name) {
  return testing::filesIn(testing::testDataFolder() / "fuzz" / name);
}

bool isHostCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

TEST(FuzzCorpusReplayTest, NormalizeRefusesOrReturnsAPlainHostForEveryCorpusInput) {
  const std::vector<fs::path> inputs = corpus("normalize");
  ASSERT_GE(inputs.size(), 10U);
  std::size_t accepted = 0;
  for (const fs::path& path : inputs) {
    SCOPED_TRACE(path.filename().string());
    const std::string text = testing::readBytes(path);
    try {
      const std::string host = DomainRules::normalize(text);
      ++accepted;
      EXPECT_FALSE(host.empty());
      EXPECT_LE(host.size(), 253U);
      EXPECT_FALSE(host.starts_with('.') || host.ends_with('.'));
      for (const char c : host) EXPECT_TRUE(isHostCharacter(c)) << host;
    } catch (const DomainRuleError&) {
      // A refusal is a fine answer to arbitrary bytes.
    }
  }
  EXPECT_GT(accepted, 0U);
}

TEST(FuzzCorpusReplayTest, HostsDocumentKeepsTheUsersBytesForEveryCorpusInput) {
  const std::vector<fs::path> inputs = corpus("hosts_document");
  ASSERT_GE(inputs.size(), 5U);
  const std::vector<std::string> hosts = {"example.com", "www.example.com"};
  for (const fs::path& path : inputs) {
    SCOPED_TRACE(path.filename().string());
    const HostsDocument document(testing::readBytes(path));
    std::string base;
    std::string applied;
    try {
      base = document.removingManagedBlock();
      applied = document.applying(hosts);
    } catch (const HostsDocumentError&) {
      continue;
    }
    const HostsDocument appliedDocument(applied);
    EXPECT_EQ(appliedDocument.managedHosts(), std::set<std::string>(hosts.begin(), hosts.end()));
    // A final lone carriage return becomes part of a CR LF pair, which removal never splits.
    if (base.ends_with('\r')) continue;
    EXPECT_EQ(appliedDocument.removingManagedBlock(), base);
    EXPECT_EQ(appliedDocument.applying(hosts), applied);
  }
}

}  // namespace
}  // namespace brindlet
