// Every single failure of the file system while the hosts file is changed: the failure is
// reported, and the hosts file is the old one or the new one, never a mix.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "Builders.h"
#include "FakePrivilegedRunner.h"
#include "FaultSweep.h"
#include "TempDir.h"
#include "blocking/BlockingError.h"
#include "blocking/HostsBlockingEngine.h"
#include "blocking/HostsDocument.h"
#include "blocking/SessionEngine.h"
#include "persistence/LocalStore.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;
using testing::FaultyFileService;

const std::string kUserHosts = "127.0.0.1 localhost\n::1 localhost\n# my notes\n";

std::string blockedHosts() { return HostsDocument(kUserHosts).applying({"example.com"}); }

void runChange(bool applying, const fs::path& dir, std::shared_ptr<const FileService> files) {
  HostsBlockingEngine engine(dir / "hosts", dir / "Backups",
                             std::make_shared<testing::FakePrivilegedRunner>(), std::move(files));
  if (applying) {
    engine.apply({"example.com"});
  } else {
    engine.remove();
  }
}

TEST(HostsFileFaultTest, HostsFileIsOldOrNewAfterAFailureAtEveryStep) {
  for (const bool applying : {true, false}) {
    const std::string before = applying ? kUserHosts : blockedHosts();
    const std::string after = applying ? blockedHosts() : kUserHosts;
    const auto faults = testing::everyFaultOf([&](FaultyFileService& files) {
      const testing::TempDir dir;
      testing::writeBytes(dir / "hosts", before);
      runChange(applying, dir.path(),
                std::shared_ptr<const FileService>(std::shared_ptr<void>(), &files));
    });
    ASSERT_FALSE(faults.empty());
    for (const testing::FileFault& fault : faults) {
      const std::string context = (applying ? "apply, " : "remove, ") + fault.describe();
      const testing::TempDir dir;
      testing::writeBytes(dir / "hosts", before);
      auto files = std::make_shared<FaultyFileService>();
      files->failAt(fault.step, fault.occurrence, fault.errorNumber);
      std::string text;
      try {
        runChange(applying, dir.path(), files);
      } catch (const BlockingError& error) {
        text = error.description();
      }
      const std::string hosts = testing::readBytes(dir / "hosts");
      EXPECT_TRUE(hosts == before || hosts == after) << context;
      // Reading the new file back included: the cause is named, not just "not verified".
      EXPECT_NE(text.find(std::strerror(fault.errorNumber)), std::string::npos)
          << context << ": " << text;
      for (const fs::path& backup : testing::filesIn(dir / "Backups")) {
        EXPECT_EQ(testing::readBytes(backup), before) << context;
      }
    }
  }
}

// The real file system, except that the first read of the hosts file once it holds a block
// fails: the swap went through, but the new file can't be read back.
class FailsReadingBackOnce : public FileService {
 public:
  explicit FailsReadingBackOnce(fs::path hosts) : hosts_(std::move(hosts)) {}

  int open(const char* path, int flags, mode_t mode) const override {
    if (!failed_ && fs::path(path) == hosts_ &&
        testing::readBytes(hosts_).find("example.com") != std::string::npos) {
      failed_ = true;
      errno = EIO;
      return -1;
    }
    return FileService::open(path, flags, mode);
  }

 private:
  fs::path hosts_;
  mutable bool failed_ = false;
};

TEST(HostsFileFaultTest, NewFileThatCantBeReadBackIsReportedInTheSystemsWords) {
  const testing::TempDir dir;
  testing::writeBytes(dir / "hosts", kUserHosts);
  HostsBlockingEngine engine(dir / "hosts", dir / "Backups",
                             std::make_shared<testing::FakePrivilegedRunner>(),
                             std::make_shared<FailsReadingBackOnce>(dir / "hosts"));
  try {
    engine.apply({"example.com"});
    ADD_FAILURE() << "apply went through";
  } catch (const BlockingError& error) {
    EXPECT_EQ(error.which(), BlockingError::Case::readFailed);
    EXPECT_EQ(error.description(), "Could not read the hosts file: Input/output error");
  }
  // What was written stays, as after any failed verification.
  EXPECT_EQ(testing::readBytes(dir / "hosts"), blockedHosts());
}

TEST(HostsFileFaultTest, StartWhoseBlockCantBeReadBackLeavesNoBlockBehind) {
  const testing::TempDir dir;
  testing::writeBytes(dir / "hosts", kUserHosts);
  const LocalStore store(dir / "state.json");
  auto hosts = std::make_shared<HostsBlockingEngine>(
      dir / "hosts", dir / "Backups", std::make_shared<testing::FakePrivilegedRunner>(),
      std::make_shared<FailsReadingBackOnce>(dir / "hosts"));
  SessionEngine session(store, hosts);
  const DomainGroup group{.id = Uuid::random(),
                          .name = "Sites",
                          .rules = {{.id = Uuid::random(), .domain = "example.com"}},
                          .isEnabled = true};
  EXPECT_THROW(session.start(group, 600, SessionMode::flexible, testing::kTestNow), BlockingError);
  // The session is gone, so a block left in the file would never be lifted.
  EXPECT_FALSE(session.activeSession());
  EXPECT_FALSE(store.load().activeSession);
  EXPECT_EQ(testing::readBytes(dir / "hosts"), kUserHosts);
}

}  // namespace
}  // namespace brindlet
