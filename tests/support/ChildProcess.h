#pragma once

#include <sys/types.h>

#include <functional>

namespace brindlet::testing {

/// Runs `body` in a forked child process, which exits with the body's result (or 99 when it
/// throws). The returned pid must be passed to waitForExit.
[[nodiscard]] pid_t runInChild(const std::function<int()>& body);

/// Waits for the child and gives its exit status, or -signal when a signal ended it.
int waitForExit(pid_t pid);

}  // namespace brindlet::testing
