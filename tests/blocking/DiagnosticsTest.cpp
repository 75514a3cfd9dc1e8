#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "blocking/Diagnostics.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"

namespace brindlet {
namespace {

// A blocker that answers a fixed status and remembers what it was asked.
class FixedStatusBlocker : public BlockingEngine {
 public:
  explicit FixedStatusBlocker(BlockingStatus answer) : answer_(answer) {}
  void apply(const std::vector<std::string>&) override { ADD_FAILURE() << "apply called"; }
  void remove() override { ADD_FAILURE() << "remove called"; }
  BlockingStatus status(const std::vector<std::string>& expectedHosts) override {
    asked.push_back(expectedHosts);
    return answer_;
  }
  std::vector<std::vector<std::string>> asked;

 private:
  BlockingStatus answer_;
};

const std::vector<std::string> kSome = {"example.com", "www.example.com"};

DiagnosticsSnapshot snapshotFor(BlockingStatus status, const std::vector<std::string>& expected) {
  auto blocker = std::make_shared<FixedStatusBlocker>(status);
  const DiagnosticsSnapshot snapshot = Diagnostics(blocker, "/data/Backups").snapshot(expected);
  EXPECT_EQ(blocker->asked, std::vector<std::vector<std::string>>{expected});
  EXPECT_EQ(snapshot.blockingStatus, status);
  EXPECT_EQ(snapshot.backupDirectory, "/data/Backups");
  return snapshot;
}

TEST(DiagnosticsTest, ActiveIsHealthyWithNoAction) {
  for (const auto& expected : {std::vector<std::string>{}, kSome}) {
    const DiagnosticsSnapshot snapshot = snapshotFor(BlockingStatus::active, expected);
    EXPECT_EQ(snapshot.health, DiagnosticHealth::healthy);
    EXPECT_EQ(snapshot.suggestedAction, std::nullopt);
  }
}

TEST(DiagnosticsTest, InactiveWithNothingExpectedIsInactiveWithNoAction) {
  const DiagnosticsSnapshot snapshot = snapshotFor(BlockingStatus::inactive, {});
  EXPECT_EQ(snapshot.health, DiagnosticHealth::inactive);
  EXPECT_EQ(snapshot.suggestedAction, std::nullopt);
}

TEST(DiagnosticsTest, InactiveWithHostsExpectedNeedsAttentionAndReapply) {
  const DiagnosticsSnapshot snapshot = snapshotFor(BlockingStatus::inactive, kSome);
  EXPECT_EQ(snapshot.health, DiagnosticHealth::attentionRequired);
  EXPECT_EQ(snapshot.suggestedAction, DiagnosticAction::reapply);
}

TEST(DiagnosticsTest, MismatchNeedsAttentionAndReapply) {
  for (const auto& expected : {std::vector<std::string>{}, kSome}) {
    const DiagnosticsSnapshot snapshot = snapshotFor(BlockingStatus::mismatch, expected);
    EXPECT_EQ(snapshot.health, DiagnosticHealth::attentionRequired);
    EXPECT_EQ(snapshot.suggestedAction, DiagnosticAction::reapply);
  }
}

TEST(DiagnosticsTest, UnreadableNeedsAttentionAndReviewConfiguration) {
  for (const auto& expected : {std::vector<std::string>{}, kSome}) {
    const DiagnosticsSnapshot snapshot = snapshotFor(BlockingStatus::unreadable, expected);
    EXPECT_EQ(snapshot.health, DiagnosticHealth::attentionRequired);
    EXPECT_EQ(snapshot.suggestedAction, DiagnosticAction::reviewConfiguration);
  }
}

TEST(DiagnosticsTest, ExpectedDomainCountCountsTheWwwFormSeparately) {
  EXPECT_EQ(snapshotFor(BlockingStatus::active, kSome).expectedDomainCount, 2);
}

TEST(DiagnosticsTest, SnapshotWithoutActionHasNoActionKeyAndReadsBackAbsent) {
  const DiagnosticsSnapshot snapshot = snapshotFor(BlockingStatus::inactive, {});
  JsonWriter writer;
  toJson(writer, snapshot);
  const std::string text = writer.take();
  EXPECT_EQ(text.find("suggestedAction"), std::string::npos) << text;
  const JsonDocument document(text);
  const DiagnosticsSnapshot decoded = diagnosticsSnapshotFromJson(document.root());
  EXPECT_EQ(decoded.suggestedAction, std::nullopt);
  EXPECT_EQ(decoded, snapshot);
}

TEST(DiagnosticsTest, SnapshotJsonUsesTheFieldNamesAndRawTexts) {
  const DiagnosticsSnapshot snapshot = snapshotFor(BlockingStatus::unreadable, kSome);
  JsonWriter writer(JsonWriter::Style::compact);
  toJson(writer, snapshot);
  const std::string text = writer.take();
  EXPECT_EQ(text,
            "{\"backupDirectory\":\"/data/Backups\",\"blockingStatus\":\"unreadable\","
            "\"expectedDomainCount\":2,\"health\":\"attentionRequired\","
            "\"suggestedAction\":\"reviewConfiguration\"}");
  const JsonDocument document(text);
  EXPECT_EQ(diagnosticsSnapshotFromJson(document.root()), snapshot);
}

}  // namespace
}  // namespace brindlet
