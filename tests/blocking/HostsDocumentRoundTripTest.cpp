#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <vector>

#include "TempDir.h"
#include "blocking/HostsDocument.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;

const std::vector<std::string> kHosts = {"example.com", "www.example.com", "news.example.org",
                                         "www.news.example.org"};

// Apply then remove gives back the bytes, applying twice equals applying once, and the block
// lists exactly the hosts applied.
void expectRoundTrip(const std::string& source, const std::string& label) {
  SCOPED_TRACE(label);
  const std::string applied = HostsDocument(source).applying(kHosts);
  EXPECT_EQ(HostsDocument(applied).removingManagedBlock(), source);
  EXPECT_EQ(HostsDocument(applied).applying(kHosts), applied);
  EXPECT_EQ(HostsDocument(applied).managedHosts(),
            std::set<std::string>(kHosts.begin(), kHosts.end()));
  const std::string emptied = HostsDocument(applied).applying({});
  EXPECT_EQ(HostsDocument(emptied).removingManagedBlock(), source);
  EXPECT_TRUE(HostsDocument(emptied).managedHosts().empty());
}

// One line of a hosts file as people write them, markers inside comments included.
std::string randomLine(std::mt19937& random) {
  static const std::vector<std::string> pieces = {"127.0.0.1",
                                                  "::1",
                                                  "fe80::1%lo0",
                                                  "0.0.0.0",
                                                  "192.168.1.20",
                                                  "localhost",
                                                  "example.com",
                                                  "# comment",
                                                  "#",
                                                  "\t",
                                                  " ",
                                                  "  ",
                                                  "host.local",
                                                  "ip6-allnodes",
                                                  "ff02::1",
                                                  "# BEGIN",
                                                  "BRINDLET",
                                                  "# END",
                                                  "MANAGED BLOCK",
                                                  "é.example",
                                                  "\xe2\x80\x83",
                                                  "x",
                                                  "10.0.0.1\t\tweb"};
  std::uniform_int_distribution<std::size_t> count(0, 5);
  std::uniform_int_distribution<std::size_t> pick(0, pieces.size() - 1);
  std::string line;
  for (std::size_t n = count(random); n > 0; --n) {
    if (!line.empty()) line += (random() % 3 == 0) ? "\t" : " ";
    line += pieces[pick(random)];
  }
  return line;
}

std::string randomText(std::mt19937& random, const std::string& lineEnd, bool finalLineEnd) {
  std::uniform_int_distribution<int> lines(0, 12);
  std::string text;
  const int count = lines(random);
  for (int i = 0; i < count; ++i) {
    text += randomLine(random);
    if (i + 1 < count || finalLineEnd) text += lineEnd;
  }
  return text;
}

TEST(HostsDocumentRoundTripTest, GeneratedTextsComeBackByteForByte) {
  std::mt19937 random(20240611);
  const std::vector<std::string> lineEnds = {"\n", "\r\n"};
  for (int round = 0; round < 400; ++round) {
    for (const std::string& lineEnd : lineEnds) {
      for (const bool finalLineEnd : {false, true}) {
        const std::string text = randomText(random, lineEnd, finalLineEnd);
        expectRoundTrip(text, "round " + std::to_string(round) + ": " + text);
      }
    }
  }
}

TEST(HostsDocumentRoundTripTest, MixedLineEndsAndBlankLinesComeBack) {
  for (const std::string text : {"\n", "\n\n", "\r\n", "a\r\nb\nc", "a\n\n\n", "\t\n \n",
                                 "# a comment about # BEGIN something\n", "a\n\r\n"}) {
    expectRoundTrip(text, text);
  }
}

TEST(HostsDocumentRoundTripTest, RealHostsFilesComeBackByteForByte) {
  const fs::path folder = testing::testDataFolder() / "hosts";
  int files = 0;
  for (const fs::path& path : testing::filesIn(folder)) {
    if (path.extension() != ".hosts") continue;
    ++files;
    expectRoundTrip(testing::readBytes(path), path.filename().string());
  }
  EXPECT_GE(files, 6);
}

}  // namespace
}  // namespace brindlet
