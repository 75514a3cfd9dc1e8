#include "ChildProcess.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace brindlet::testing {

pid_t runInChild(const std::function<int()>& body) {
  const pid_t pid = ::fork();
  if (pid != 0) return pid;
  int status = 99;
  try {
    status = body();
  } catch (...) {
    status = 99;
  }
  // Skip the test framework's exit handlers, which belong to the parent.
  ::_exit(status);
}

int waitForExit(pid_t pid) {
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR) return -1000;
  }
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  if (WIFSIGNALED(status)) return -WTERMSIG(status);
  return -1000;
}

}  // namespace brindlet::testing
