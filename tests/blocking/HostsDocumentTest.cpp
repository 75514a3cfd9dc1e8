#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "blocking/HostsDocument.h"

namespace brindlet {
namespace {

const std::string kBegin(HostsDocument::beginMarker);
const std::string kEnd(HostsDocument::endMarker);

std::string blockOf(const std::vector<std::string>& lines) {
  std::string block = kBegin + "\n";
  for (const std::string& line : lines) block += line + "\n";
  return block + kEnd;
}

void expectMalformed(const HostsDocument& document) {
  EXPECT_THROW((void)document.applying({"example.com"}), HostsDocumentError);
  EXPECT_THROW((void)document.removingManagedBlock(), HostsDocumentError);
  EXPECT_THROW((void)document.managedHosts(), HostsDocumentError);
}

TEST(HostsDocumentTest, BlockHoldsSortedLoopbackLinesBetweenMarkers) {
  EXPECT_EQ(HostsDocument("").applying({"www.example.com", "example.com"}),
            "# BEGIN BRINDLET MANAGED BLOCK\n"
            "127.0.0.1 example.com\n"
            "127.0.0.1 www.example.com\n"
            "# END BRINDLET MANAGED BLOCK\n");
}

TEST(HostsDocumentTest, ApplyingOneHostToEmptyFileGivesBlockAndOneLineFeed) {
  EXPECT_EQ(HostsDocument("").applying({"example.com"}), blockOf({"127.0.0.1 example.com"}) + "\n");
}

TEST(HostsDocumentTest, LineWithoutLineFeedComesBackAfterApplyAndRemove) {
  const std::string applied = HostsDocument("A").applying({"example.com"});
  EXPECT_EQ(applied, "A\n" + blockOf({"127.0.0.1 example.com"}) + "\n");
  EXPECT_EQ(HostsDocument(applied).removingManagedBlock(), "A");
}

TEST(HostsDocumentTest, LineWithLineFeedComesBackWithBlankLineWhileApplied) {
  const std::string applied = HostsDocument("A\n").applying({"example.com"});
  EXPECT_EQ(applied, "A\n\n" + blockOf({"127.0.0.1 example.com"}) + "\n");
  EXPECT_EQ(HostsDocument(applied).removingManagedBlock(), "A\n");
}

TEST(HostsDocumentTest, BlockBetweenTwoLinesLeavesThemJoinedByOneLineFeed) {
  const std::string source = "A\n" + blockOf({"127.0.0.1 example.com"}) + "\nB\n";
  EXPECT_EQ(HostsDocument(source).removingManagedBlock(), "A\nB\n");
}

TEST(HostsDocumentTest, FileWithOnlyBlockAndLineFeedIsRemovedToEmptyText) {
  EXPECT_EQ(HostsDocument(blockOf({"127.0.0.1 example.com"}) + "\n").removingManagedBlock(), "");
}

TEST(HostsDocumentTest, ApplyingEmptyListReplacesBlockByEmptyBlock) {
  const std::string source = "A\n\n" + blockOf({"127.0.0.1 example.com"}) + "\n";
  const HostsDocument document(source);
  EXPECT_EQ(document.applying({}), "A\n\n" + blockOf({}) + "\n");
  EXPECT_NE(document.applying({}), document.removingManagedBlock());
  EXPECT_EQ(document.removingManagedBlock(), "A\n");
}

TEST(HostsDocumentTest, ApplyingDuplicatesWritesEachHostOnce) {
  EXPECT_EQ(HostsDocument("").applying({"b.com", "a.com", "b.com", "a.com"}),
            blockOf({"127.0.0.1 a.com", "127.0.0.1 b.com"}) + "\n");
}

TEST(HostsDocumentTest, ApplyingReplacesAnEarlierBlock) {
  const std::string once = HostsDocument("A\n").applying({"old.com"});
  const std::string again = HostsDocument(once).applying({"new.com"});
  EXPECT_EQ(again, "A\n\n" + blockOf({"127.0.0.1 new.com"}) + "\n");
  EXPECT_EQ(HostsDocument(again).managedHosts(), (std::set<std::string>{"new.com"}));
}

TEST(HostsDocumentTest, ManagedHostsWithoutMarkersIsEmptyAndNoFailure) {
  EXPECT_TRUE(HostsDocument("127.0.0.1 localhost\n").managedHosts().empty());
  EXPECT_TRUE(HostsDocument("").managedHosts().empty());
}

TEST(HostsDocumentTest, RemovingWithoutMarkersReturnsTheSourceUnchanged) {
  const std::string source = "127.0.0.1 localhost\n::1 localhost";
  EXPECT_EQ(HostsDocument(source).removingManagedBlock(), source);
}

TEST(HostsDocumentTest, HandEditedLineForAnotherAddressIsNotListed) {
  const std::string source = blockOf({"127.0.0.1 example.com", "0.0.0.0 edited.com",
                                      "127.0.0.1 two.com names.com", "# 127.0.0.1 comment.com"}) +
                             "\n";
  EXPECT_EQ(HostsDocument(source).managedHosts(), (std::set<std::string>{"example.com"}));
}

TEST(HostsDocumentTest, LineWithTabBetweenAddressAndHostIsListed) {
  const std::string source = blockOf({"127.0.0.1\texample.com", "  127.0.0.1   spaced.com  "});
  EXPECT_EQ(HostsDocument(source).managedHosts(),
            (std::set<std::string>{"example.com", "spaced.com"}));
}

TEST(HostsDocumentTest, MarkerInsideLongerCommentLineStillCounts) {
  const std::string lone = "# see " + kBegin + " below\n127.0.0.1 localhost\n";
  expectMalformed(HostsDocument(lone));

  const std::string paired =
      "# note: " + kBegin + " (hand-made)\n127.0.0.1 example.com\n# " + kEnd + " done\n";
  EXPECT_EQ(HostsDocument(paired).managedHosts(), (std::set<std::string>{"example.com"}));
  EXPECT_EQ(HostsDocument(paired).removingManagedBlock(), "# note:  done\n");
}

TEST(HostsDocumentTest, LoneBeginMarkerIsMalformed) {
  expectMalformed(HostsDocument("A\n" + kBegin + "\n127.0.0.1 example.com\n"));
}

TEST(HostsDocumentTest, LoneEndMarkerIsMalformed) {
  expectMalformed(HostsDocument("A\n127.0.0.1 example.com\n" + kEnd + "\n"));
}

TEST(HostsDocumentTest, TwoBlocksAreMalformed) {
  expectMalformed(HostsDocument(blockOf({}) + "\n" + blockOf({"127.0.0.1 a.com"}) + "\n"));
}

TEST(HostsDocumentTest, EndBeforeBeginIsMalformed) {
  expectMalformed(HostsDocument(kEnd + "\n" + kBegin + "\n"));
}

TEST(HostsDocumentTest, MarkersAreCaseSensitive) {
  const std::string source = "# begin brindlet managed block\n127.0.0.1 a.com\n";
  EXPECT_TRUE(HostsDocument(source).managedHosts().empty());
  EXPECT_EQ(HostsDocument(source).removingManagedBlock(), source);
}

TEST(HostsDocumentTest, CrlfLineEndsAroundAHandPlacedBlockStayWhole) {
  const std::string source = "A\r\n" + kBegin + "\r\n127.0.0.1 a.com\r\n" + kEnd + "\r\nB\r\n";
  EXPECT_EQ(HostsDocument(source).managedHosts(), (std::set<std::string>{"a.com"}));
  // Neither CR LF pair is split: the block's own line end stays as an empty line.
  EXPECT_EQ(HostsDocument(source).removingManagedBlock(), "A\r\n\r\nB\r\n");
}

TEST(HostsDocumentTest, CrlfFileComesBackByteForByte) {
  const std::string source = "127.0.0.1 localhost\r\n::1 localhost\r\n";
  const std::string applied = HostsDocument(source).applying({"example.com"});
  EXPECT_EQ(HostsDocument(applied).removingManagedBlock(), source);
  EXPECT_EQ(HostsDocument(applied).applying({"example.com"}), applied);
}

TEST(HostsDocumentTest, TextThatWouldJoinIntoAMarkerAroundTheBlockIsMalformed) {
  // Removing the block would leave "# B" and "EGIN BRINDLET MANAGED BLOCK" side by side.
  const std::string source = "# B" + blockOf({"127.0.0.1 a.com"}) + "EGIN BRINDLET MANAGED BLOCK\n";
  const HostsDocument document(source);
  EXPECT_THROW((void)document.removingManagedBlock(), HostsDocumentError);
  EXPECT_THROW((void)document.applying({"example.com"}), HostsDocumentError);
  EXPECT_EQ(document.managedHosts(), (std::set<std::string>{"a.com"}));
}

TEST(HostsDocumentTest, DescriptionIsTheFixedWords) {
  EXPECT_EQ(HostsDocumentError().description(),
            "Brindlet found malformed managed markers and left the hosts file unchanged.");
}

}  // namespace
}  // namespace brindlet
