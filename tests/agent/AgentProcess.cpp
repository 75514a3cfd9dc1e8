#include "AgentProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "ChildProcess.h"

namespace brindlet::testing {
namespace {

constexpr int kReadTimeoutMilliseconds = 10000;

void writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0) {
      if (errno == EINTR) continue;
      ADD_FAILURE() << "writing to brindlet-agent failed: " << errno;
      return;
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace

std::filesystem::path AgentProcess::stateFile(const std::filesystem::path& home) {
  return home / "data" / "Brindlet" / "state.json";
}

std::filesystem::path AgentProcess::errorsFile(const std::filesystem::path& home) {
  return home / "agent-errors.txt";
}

AgentProcess::AgentProcess(const std::filesystem::path& home, std::vector<std::string> arguments) {
  int toChild[2];
  int fromChild[2];
  if (::pipe2(toChild, O_CLOEXEC) != 0 || ::pipe2(fromChild, O_CLOEXEC) != 0) {
    ADD_FAILURE() << "no pipes";
    return;
  }
  // Built before the fork: the child may only call what is safe after it.
  std::vector<std::string> environment = {
      "HOME=" + home.string(),
      "XDG_DATA_HOME=" + (home / "data").string(),
      "XDG_CONFIG_HOME=" + (home / "config").string(),
      "TZ=UTC",
      "LANG=C.UTF-8",
  };
  if (const char* path = std::getenv("PATH")) environment.push_back(std::string("PATH=") + path);
  std::vector<char*> envp;
  for (std::string& entry : environment) envp.push_back(entry.data());
  envp.push_back(nullptr);
  std::string program = BRINDLET_AGENT_PATH;
  std::vector<char*> argv = {program.data()};
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);

  const std::string errorsPath = errorsFile(home).string();
  const int errors = ::open(errorsPath.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);

  pid_ = ::fork();
  if (pid_ == 0) {
    ::dup2(toChild[0], STDIN_FILENO);
    ::dup2(fromChild[1], STDOUT_FILENO);
    if (errors >= 0) ::dup2(errors, STDERR_FILENO);
    ::execve(argv[0], argv.data(), envp.data());
    ::_exit(127);
  }
  if (errors >= 0) ::close(errors);
  ::close(toChild[0]);
  ::close(fromChild[1]);
  input_ = toChild[1];
  output_ = fromChild[0];
  // A program that has died must fail the test, not end it with SIGPIPE.
  ::signal(SIGPIPE, SIG_IGN);
}

AgentProcess::~AgentProcess() {
  closeInput();
  if (output_ >= 0) ::close(output_);
  if (pid_ > 0) {
    ::kill(pid_, SIGKILL);
    (void)waitForExit(pid_);
  }
}

void AgentProcess::send(std::string_view line) {
  std::string bytes(line);
  bytes += '\n';
  sendRaw(bytes);
}

void AgentProcess::sendRaw(std::string_view bytes) { writeAll(input_, bytes); }

void AgentProcess::closeInput() {
  if (input_ >= 0) ::close(input_);
  input_ = -1;
}

std::optional<std::string> AgentProcess::readLine() {
  while (true) {
    if (const auto end = buffered_.find('\n'); end != std::string::npos) {
      std::string line = buffered_.substr(0, end);
      buffered_.erase(0, end + 1);
      return line;
    }
    if (ended_) return std::nullopt;
    pollfd ready{.fd = output_, .events = POLLIN, .revents = 0};
    const int polled = ::poll(&ready, 1, kReadTimeoutMilliseconds);
    if (polled < 0 && errno == EINTR) continue;
    if (polled <= 0) {
      ADD_FAILURE() << "brindlet-agent gave no answer in time";
      return std::nullopt;
    }
    char chunk[4096];
    const ssize_t count = ::read(output_, chunk, sizeof chunk);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) {
      ended_ = true;
      continue;
    }
    buffered_.append(chunk, static_cast<std::size_t>(count));
  }
}

std::string AgentProcess::readRest() {
  std::string rest;
  while (const auto line = readLine()) rest += *line + "\n";
  rest += buffered_;
  buffered_.clear();
  return rest;
}

int AgentProcess::wait() {
  const int status = waitForExit(pid_);
  pid_ = -1;
  return status;
}

}  // namespace brindlet::testing
