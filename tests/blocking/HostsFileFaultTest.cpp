// Every single failure of the file system while the hosts file is changed: the failure is
// reported, and the hosts file is the old one or the new one, never a mix.
#include <gtest/gtest.h>

#include <cstring>

#include "FakePrivilegedRunner.h"
#include "FaultSweep.h"
#include "TempDir.h"
#include "blocking/BlockingError.h"
#include "blocking/HostsBlockingEngine.h"
#include "blocking/HostsDocument.h"

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
      // A failure while reading the new file back can only say that the change wasn't
      // confirmed; every other failure carries the system's words.
      const bool toldTheCause = text.find(std::strerror(fault.errorNumber)) != std::string::npos;
      const bool unconfirmed =
          text == BlockingError::verificationFailed().description() && hosts == after;
      EXPECT_TRUE(toldTheCause || unconfirmed) << context << ": " << text;
      for (const fs::path& backup : testing::filesIn(dir / "Backups")) {
        EXPECT_EQ(testing::readBytes(backup), before) << context;
      }
    }
  }
}

}  // namespace
}  // namespace brindlet
