#include "support/ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "support/BrindletError.h"
#include "support/Files.h"

extern char** environ;

namespace brindlet {
namespace {

// Owns the set of actions that posix_spawn applies in the child.
class SpawnActions {
 public:
  SpawnActions() {
    if (const int error = ::posix_spawn_file_actions_init(&actions_); error != 0) {
      throw SystemError(error, "prepare a child process");
    }
  }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;
  ~SpawnActions() { ::posix_spawn_file_actions_destroy(&actions_); }
  posix_spawn_file_actions_t* get() { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

std::string readUntilEnd(int fd) {
  std::string text;
  char buffer[4096];
  for (;;) {
    const ssize_t count = ::read(fd, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return text;
    text.append(buffer, static_cast<std::size_t>(count));
  }
}

int waitForExit(pid_t pid) {
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR) return 128;
  }
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
  return 128;
}

}  // namespace

ChildProcessResult runChildProcess(const std::filesystem::path& program,
                                   const std::vector<std::string>& arguments) {
  const std::string action = "start " + quotedPath(program);
  int pipeEnds[2];
  if (::pipe2(pipeEnds, O_CLOEXEC) != 0) throw SystemError(errno, action);
  FileDescriptor readEnd(pipeEnds[0]);
  FileDescriptor writeEnd(pipeEnds[1]);

  SpawnActions actions;
  // The copy on descriptor 2 is made without close-on-exec, so only it reaches the program.
  if (const int error = ::posix_spawn_file_actions_adddup2(actions.get(), writeEnd.get(), 2);
      error != 0) {
    throw SystemError(error, action);
  }

  std::vector<std::string> argumentTexts;
  argumentTexts.reserve(arguments.size() + 1);
  argumentTexts.push_back(program.string());
  argumentTexts.insert(argumentTexts.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  argv.reserve(argumentTexts.size() + 1);
  for (std::string& text : argumentTexts) argv.push_back(text.data());
  argv.push_back(nullptr);

  pid_t pid = 0;
  if (const int error =
          ::posix_spawn(&pid, program.c_str(), actions.get(), nullptr, argv.data(), environ);
      error != 0) {
    throw SystemError(error, action);
  }
  // Only the child may hold the write end now, so that reading ends when the child is done.
  writeEnd.close();
  ChildProcessResult result;
  result.standardError = readUntilEnd(readEnd.get());
  result.exitStatus = waitForExit(pid);
  return result;
}

}  // namespace brindlet
