#include "blocking/PlatformDefaults.h"

#include <unistd.h>

#include "blocking/LinuxPrivilegedCommandRunner.h"
#include "blocking/MacOSPrivilegedCommandRunner.h"

namespace brindlet {

std::filesystem::path defaultHostsPath() { return "/etc/hosts"; }

std::shared_ptr<PrivilegedCommandRunning> makePlatformPrivilegedRunner() {
#ifdef __APPLE__
  return std::make_shared<MacOSPrivilegedCommandRunner>();
#else
  LinuxPrivilegedCommandRunner::Options options;
  // A root process has nobody to ask; anyone else asks through polkit every time.
  if (::geteuid() != 0) options.pkexecPath = "/usr/bin/pkexec";
  return std::make_shared<LinuxPrivilegedCommandRunner>(std::move(options));
#endif
}

}  // namespace brindlet
