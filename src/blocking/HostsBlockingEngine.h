#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "blocking/BlockingEngine.h"
#include "blocking/PrivilegedCommandRunning.h"
#include "support/FileService.h"

namespace brindlet {

/// Keeps the system hosts file holding exactly the blocked hosts. It reads the file as the
/// user, keeps a backup of every version it replaces, hands the swap to a privileged runner,
/// rolls back a failed swap and checks the result. It never writes the hosts file itself.
///
/// Operations run one at a time; a second caller waits while the first one is in the runner.
class HostsBlockingEngine : public BlockingEngine {
 public:
  /// `backupDirectory` receives "hosts-{uuid}.backup" before each real change, kept for good,
  /// and the short-lived "hosts-{uuid}.replacement".
  HostsBlockingEngine(std::filesystem::path hostsURL, std::filesystem::path backupDirectory,
                      std::shared_ptr<PrivilegedCommandRunning> runner,
                      std::shared_ptr<const FileService> files = FileService::system());

  [[nodiscard]] const std::filesystem::path& hostsURL() const { return hostsURL_; }
  [[nodiscard]] const std::filesystem::path& backupDirectory() const { return backupDirectory_; }

  void apply(const std::vector<std::string>& hosts) override;
  void remove() override;
  [[nodiscard]] BlockingStatus status(const std::vector<std::string>& expectedHosts) override;

 private:
  using Transform = std::function<std::string(const std::string&)>;

  void runTransaction(const Transform& transform);
  [[nodiscard]] BlockingStatus statusLocked(const std::vector<std::string>& expectedHosts) const;
  [[nodiscard]] static BlockingStatus statusOf(const std::string& text,
                                               const std::vector<std::string>& expectedHosts);

  std::filesystem::path hostsURL_;
  std::filesystem::path backupDirectory_;
  std::shared_ptr<PrivilegedCommandRunning> runner_;
  std::shared_ptr<const FileService> files_;
  std::mutex mutex_;
};

}  // namespace brindlet
