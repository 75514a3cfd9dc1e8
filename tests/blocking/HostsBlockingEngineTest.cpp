#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "FakePrivilegedRunner.h"
#include "TempDir.h"
#include "blocking/BlockingError.h"
#include "blocking/HostsBlockingEngine.h"
#include "blocking/HostsDocument.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;
using testing::FakePrivilegedRunner;

const std::string kOriginal = "127.0.0.1 localhost\n::1 localhost ip6-localhost\n";
const std::vector<std::string> kHosts = {"example.com", "www.example.com"};

// A hosts file, a backup folder and an engine with a fake runner, all in a temporary folder.
struct Fixture {
  testing::TempDir folder;
  fs::path hosts = folder / "hosts";
  fs::path backups = folder / "Backups";
  std::shared_ptr<FakePrivilegedRunner> runner = std::make_shared<FakePrivilegedRunner>();
  HostsBlockingEngine engine{hosts, backups, runner};

  explicit Fixture(const std::string& text = kOriginal) { testing::writeBytes(hosts, text); }

  [[nodiscard]] std::vector<fs::path> backupFiles() const { return filesWithExtension(".backup"); }
  [[nodiscard]] std::vector<fs::path> replacementFiles() const {
    return filesWithExtension(".replacement");
  }

 private:
  [[nodiscard]] std::vector<fs::path> filesWithExtension(std::string_view extension) const {
    std::vector<fs::path> found;
    for (const fs::path& path : testing::filesIn(backups)) {
      if (path.extension() == extension) found.push_back(path);
    }
    return found;
  }
};

BlockingError blockingErrorOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const BlockingError& error) {
    return error;
  }
  ADD_FAILURE() << "expected a BlockingError";
  return BlockingError::verificationFailed();
}

TEST(HostsBlockingEngineTest, ApplyWritesBlockThroughRunnerAndKeepsOneBackup) {
  Fixture f;
  f.engine.apply(kHosts);

  EXPECT_EQ(testing::readBytes(f.hosts), HostsDocument(kOriginal).applying(kHosts));
  ASSERT_EQ(f.runner->calls.size(), 1U);
  EXPECT_TRUE(f.runner->calls[0].sourceExisted);
  EXPECT_EQ(f.runner->calls[0].source.extension(), ".replacement");
  EXPECT_EQ(f.runner->calls[0].destination, f.hosts);
  EXPECT_EQ(f.runner->refreshCount, 1);
  ASSERT_EQ(f.backupFiles().size(), 1U);
  EXPECT_EQ(testing::readBytes(f.backupFiles()[0]), kOriginal);
  EXPECT_TRUE(f.replacementFiles().empty());
  EXPECT_EQ(f.engine.status(kHosts), BlockingStatus::active);
}

TEST(HostsBlockingEngineTest, BackupAndReplacementShareOneUppercaseUuid) {
  Fixture f;
  f.engine.apply(kHosts);
  const std::string backup = f.backupFiles().at(0).stem().string();
  EXPECT_EQ(f.runner->calls.at(0).source.stem().string(), backup);
  ASSERT_TRUE(backup.starts_with("hosts-"));
  const auto id = Uuid::parse(backup.substr(6));
  ASSERT_TRUE(id.has_value());
  EXPECT_EQ(backup.substr(6), id->uppercaseText());
}

TEST(HostsBlockingEngineTest, RemoveTakesBlockOutAndRestoresOriginalBytes) {
  Fixture f;
  f.engine.apply(kHosts);
  f.engine.remove();
  EXPECT_EQ(testing::readBytes(f.hosts), kOriginal);
  EXPECT_EQ(f.backupFiles().size(), 2U);
  EXPECT_TRUE(f.replacementFiles().empty());
  EXPECT_EQ(f.engine.status({}), BlockingStatus::inactive);
}

TEST(HostsBlockingEngineTest, ApplyingHostsAlreadyInFileAsksNoApprovalAndWritesNoFile) {
  Fixture f(HostsDocument(kOriginal).applying(kHosts));
  f.engine.apply(kHosts);
  EXPECT_TRUE(f.runner->calls.empty());
  EXPECT_EQ(f.runner->refreshCount, 0);
  EXPECT_FALSE(fs::exists(f.backups));
}

TEST(HostsBlockingEngineTest, VerificationRunsEvenWhenNothingWasWritten) {
  // Applying no hosts to an empty block changes nothing, and an empty block never counts as
  // active, so only the verification can fail here.
  Fixture f(HostsDocument(kOriginal).applying({}));
  EXPECT_EQ(blockingErrorOf([&] { f.engine.apply({}); }), BlockingError::verificationFailed());
  EXPECT_TRUE(f.runner->calls.empty());
  EXPECT_FALSE(fs::exists(f.backups));
}

TEST(HostsBlockingEngineTest, RemoveWithoutBlockAsksNoApprovalAndWritesNoFile) {
  Fixture f;
  f.engine.remove();
  EXPECT_TRUE(f.runner->calls.empty());
  EXPECT_EQ(f.runner->refreshCount, 0);
  EXPECT_FALSE(fs::exists(f.backups));
  EXPECT_EQ(testing::readBytes(f.hosts), kOriginal);
}

TEST(HostsBlockingEngineTest, CancelledApprovalIsAuthorizationCancelledAfterOneReplace) {
  Fixture f;
  f.runner->thenReplace(FakePrivilegedRunner::fails(BlockingError::authorizationCancelled()));
  EXPECT_EQ(blockingErrorOf([&] { f.engine.apply(kHosts); }),
            BlockingError::authorizationCancelled());
  EXPECT_EQ(f.runner->calls.size(), 1U);
  EXPECT_EQ(f.runner->refreshCount, 0);
  EXPECT_EQ(testing::readBytes(f.hosts), kOriginal);
  EXPECT_EQ(f.backupFiles().size(), 1U);
  EXPECT_TRUE(f.replacementFiles().empty());
}

TEST(HostsBlockingEngineTest, FailedSwapIsRolledBackFromTheBackupAndReportedAsWriteFailed) {
  Fixture f;
  f.runner->thenReplace([](const fs::path&, const fs::path& destination) {
    // A swap that breaks the file half way before failing.
    testing::writeBytes(destination, "garbage");
    throw BlockingError::writeFailed("cp: No space left on device");
  });
  EXPECT_EQ(blockingErrorOf([&] { f.engine.apply(kHosts); }),
            BlockingError::writeFailed("cp: No space left on device"));
  ASSERT_EQ(f.runner->calls.size(), 2U);
  ASSERT_EQ(f.backupFiles().size(), 1U);
  EXPECT_EQ(f.runner->calls[1].source, f.backupFiles()[0]);
  EXPECT_EQ(f.runner->calls[1].destination, f.hosts);
  EXPECT_EQ(testing::readBytes(f.hosts), kOriginal);
  EXPECT_EQ(f.runner->refreshCount, 0);
  EXPECT_TRUE(f.replacementFiles().empty());
}

TEST(HostsBlockingEngineTest, FailedRollbackCarriesTheRollbackFailureText) {
  Fixture f;
  f.runner->thenReplace(FakePrivilegedRunner::fails(BlockingError::writeFailed("first")));
  f.runner->thenReplace(FakePrivilegedRunner::fails(BlockingError::writeFailed("second")));
  const BlockingError error = blockingErrorOf([&] { f.engine.apply(kHosts); });
  EXPECT_EQ(error, BlockingError::rollbackFailed("second"));
  EXPECT_EQ(error.description(), "The update failed and rollback needs attention: second");
  EXPECT_EQ(f.runner->calls.size(), 2U);
  EXPECT_EQ(f.backupFiles().size(), 1U);
  EXPECT_TRUE(f.replacementFiles().empty());
}

TEST(HostsBlockingEngineTest, ReplaceThatChangesNothingFailsVerificationOnApply) {
  Fixture f;
  f.runner->thenReplace(FakePrivilegedRunner::leavesFileAlone());
  EXPECT_EQ(blockingErrorOf([&] { f.engine.apply(kHosts); }), BlockingError::verificationFailed());
  EXPECT_EQ(f.runner->calls.size(), 1U);
}

TEST(HostsBlockingEngineTest, ReplaceThatChangesNothingIsNoFailureOnRemove) {
  Fixture f(HostsDocument(kOriginal).applying(kHosts));
  f.runner->thenReplace(FakePrivilegedRunner::leavesFileAlone());
  EXPECT_NO_THROW(f.engine.remove());
  EXPECT_EQ(f.runner->calls.size(), 1U);
}

TEST(HostsBlockingEngineTest, FailedDnsRefreshKeepsTheNewFileWithoutRollback) {
  Fixture f;
  f.runner->failRefreshWith(BlockingError::writeFailed("resolver did not answer"));
  const BlockingError error = blockingErrorOf([&] { f.engine.apply(kHosts); });
  EXPECT_EQ(error, BlockingError::dnsRefreshFailed("resolver did not answer"));
  EXPECT_EQ(error.description(),
            "Blocking was written, but DNS refresh failed: resolver did not answer");
  EXPECT_EQ(f.runner->calls.size(), 1U);
  EXPECT_EQ(testing::readBytes(f.hosts), HostsDocument(kOriginal).applying(kHosts));
}

TEST(HostsBlockingEngineTest, StatusWithEmptyExpectedListAndNoBlockIsInactive) {
  Fixture f;
  EXPECT_EQ(f.engine.status({}), BlockingStatus::inactive);
}

TEST(HostsBlockingEngineTest, StatusWithExpectedHostsAndNoBlockIsMismatch) {
  Fixture f;
  EXPECT_EQ(f.engine.status(kHosts), BlockingStatus::mismatch);
}

TEST(HostsBlockingEngineTest, StatusComparesTheBlockWithTheExpectedSet) {
  Fixture f(HostsDocument(kOriginal).applying(kHosts));
  EXPECT_EQ(f.engine.status({"www.example.com", "example.com", "example.com"}),
            BlockingStatus::active);
  EXPECT_EQ(f.engine.status({"example.com"}), BlockingStatus::mismatch);
  EXPECT_EQ(f.engine.status({}), BlockingStatus::mismatch);
}

TEST(HostsBlockingEngineTest, EmptyBlockCountsAsNoBlock) {
  Fixture f(HostsDocument(kOriginal).applying({}));
  EXPECT_EQ(f.engine.status({}), BlockingStatus::inactive);
  EXPECT_EQ(f.engine.status(kHosts), BlockingStatus::mismatch);
}

TEST(HostsBlockingEngineTest, MalformedMarkersAreUnreadableAndNothingIsWritten) {
  Fixture f(kOriginal + std::string(HostsDocument::beginMarker) + "\n");
  EXPECT_EQ(f.engine.status({}), BlockingStatus::unreadable);
  EXPECT_THROW(f.engine.apply(kHosts), HostsDocumentError);
  EXPECT_THROW(f.engine.remove(), HostsDocumentError);
  EXPECT_TRUE(f.runner->calls.empty());
  EXPECT_FALSE(fs::exists(f.backups));
}

TEST(HostsBlockingEngineTest, MissingHostsFileIsReadFailedOnApplyAndUnreadableOnStatus) {
  Fixture f;
  fs::remove(f.hosts);
  const BlockingError error = blockingErrorOf([&] { f.engine.apply(kHosts); });
  EXPECT_EQ(error, BlockingError::readFailed("No such file or directory"));
  EXPECT_EQ(error.description(), "Could not read the hosts file: No such file or directory");
  EXPECT_EQ(f.engine.status(kHosts), BlockingStatus::unreadable);
  EXPECT_TRUE(f.runner->calls.empty());
}

TEST(HostsBlockingEngineTest, HostsFileThatIsNotUtf8IsReadFailed) {
  Fixture f("127.0.0.1 caf\xe9.example\n");
  EXPECT_EQ(blockingErrorOf([&] { f.engine.apply(kHosts); }).which(),
            BlockingError::Case::readFailed);
  EXPECT_EQ(f.engine.status({}), BlockingStatus::unreadable);
}

TEST(HostsBlockingEngineTest, BackupFolderThatCannotBeMadeIsWriteFailedBeforeAnyApproval) {
  Fixture f;
  testing::writeBytes(f.backups, "a file where the folder should be");
  const BlockingError error = blockingErrorOf([&] { f.engine.apply(kHosts); });
  EXPECT_EQ(error.which(), BlockingError::Case::writeFailed);
  EXPECT_TRUE(error.description().starts_with("Could not update the hosts file: "));
  EXPECT_TRUE(f.runner->calls.empty());
  EXPECT_EQ(testing::readBytes(f.hosts), kOriginal);
}

TEST(HostsBlockingEngineTest, EveryRealChangeLeavesItsOwnBackup) {
  Fixture f;
  f.engine.apply({"a.com"});
  f.engine.apply({"a.com"});
  f.engine.apply({"b.com"});
  f.engine.remove();
  f.engine.remove();
  EXPECT_EQ(f.backupFiles().size(), 3U);
  EXPECT_EQ(f.runner->calls.size(), 3U);
  EXPECT_TRUE(f.replacementFiles().empty());
}

TEST(HostsBlockingEngineTest, DescriptionsAreTheFixedWords) {
  EXPECT_EQ(BlockingError::writeFailed("x").description(), "Could not update the hosts file: x");
  EXPECT_EQ(BlockingError::authorizationCancelled().description(),
            "Administrator approval was cancelled. No changes were made.");
  EXPECT_EQ(BlockingError::verificationFailed().description(),
            "The hosts file update could not be verified.");
  EXPECT_NE(BlockingError::writeFailed("x"), BlockingError::writeFailed("y"));
}

TEST(HostsBlockingEngineTest, StatusTextsAreTheRawValues) {
  EXPECT_EQ(kBlockingStatusText.text(BlockingStatus::inactive), "inactive");
  EXPECT_EQ(kBlockingStatusText.text(BlockingStatus::active), "active");
  EXPECT_EQ(kBlockingStatusText.text(BlockingStatus::mismatch), "mismatch");
  EXPECT_EQ(kBlockingStatusText.text(BlockingStatus::unreadable), "unreadable");
}

}  // namespace
}  // namespace brindlet
