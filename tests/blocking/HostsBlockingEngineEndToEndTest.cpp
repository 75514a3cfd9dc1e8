#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "TempDir.h"
#include "blocking/HostsBlockingEngine.h"
#include "blocking/HostsDocument.h"
#include "blocking/LinuxPrivilegedCommandRunner.h"
#include "blocking/ShellCommand.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;

std::size_t countWithExtension(const fs::path& folder, std::string_view extension) {
  std::size_t count = 0;
  for (const fs::path& path : testing::filesIn(folder)) count += path.extension() == extension;
  return count;
}

// The engine with the runner a root process gets, on a hosts file in a temporary folder. The
// name cache flush is replaced by a note in the folder, so the test leaves the system alone.
TEST(HostsBlockingEngineEndToEndTest, ApplyAndRemoveWithTheRootRunnerRestoreTheOriginalBytes) {
  testing::TempDir folder;
  const fs::path hosts = folder / "etc" / "hosts";
  const fs::path backups = folder / "Backups";
  const fs::path flushes = folder / "flushes";
  const std::string original = testing::readBytes(testing::testDataFolder() / "hosts" /
                                                  "windows_default_crlf.pwsh-prelude.hosts");
  testing::writeBytes(hosts, original);

  const bool root = ::geteuid() == 0;
  if (!root) {
    std::cout << "[   NOTE   ] not running as root: the ownership step is left out\n";
  }
  auto runner =
      std::make_shared<LinuxPrivilegedCommandRunner>(LinuxPrivilegedCommandRunner::Options{
          .pkexecPath = std::nullopt,
          .setsRootOwner = root,
          .nameCacheFlushCommand = "echo flushed >> " + shellQuoted(flushes.string())});
  HostsBlockingEngine engine(hosts, backups, runner);
  const std::vector<std::string> blocked = {"example.com", "www.example.com"};

  engine.apply(blocked);
  EXPECT_EQ(engine.status(blocked), BlockingStatus::active);
  EXPECT_EQ(testing::readBytes(hosts), HostsDocument(original).applying(blocked));
  struct stat info {};
  ASSERT_EQ(::stat(hosts.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0644U);
  if (root) {
    EXPECT_EQ(info.st_uid, 0U);
    EXPECT_EQ(info.st_gid, 0U);
  }

  engine.apply(blocked);  // no change, so no approval and no backup
  engine.remove();
  EXPECT_EQ(engine.status({}), BlockingStatus::inactive);
  EXPECT_EQ(testing::readBytes(hosts), original);
  engine.remove();

  EXPECT_EQ(countWithExtension(backups, ".backup"), 2U);
  EXPECT_EQ(countWithExtension(backups, ".replacement"), 0U);
  EXPECT_EQ(testing::readBytes(flushes), "flushed\nflushed\n");
}

}  // namespace
}  // namespace brindlet
