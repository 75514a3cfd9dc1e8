#pragma once

#include <filesystem>
#include <memory>

#include "blocking/PrivilegedCommandRunning.h"

namespace brindlet {

/// The system hosts file that website blocking manages.
[[nodiscard]] std::filesystem::path defaultHostsPath();

/// The privileged runner of this platform and this process: on macOS the osascript dialog; on
/// Linux polkit's pkexec, or /bin/sh directly when the process is root already.
[[nodiscard]] std::shared_ptr<PrivilegedCommandRunning> makePlatformPrivilegedRunner();

}  // namespace brindlet
