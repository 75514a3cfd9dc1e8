#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brindlet::testing {

/// The brindlet-agent program running as a child process with pipes on its standard input and
/// output. Its home and data folders are the given folder, so it never sees the real ones, and
/// its time zone is UTC.
class AgentProcess {
 public:
  explicit AgentProcess(const std::filesystem::path& home, std::vector<std::string> arguments = {});
  ~AgentProcess();
  AgentProcess(const AgentProcess&) = delete;
  AgentProcess& operator=(const AgentProcess&) = delete;

  /// The state file the program works on.
  [[nodiscard]] static std::filesystem::path stateFile(const std::filesystem::path& home);

  /// Where the program's standard error goes.
  [[nodiscard]] static std::filesystem::path errorsFile(const std::filesystem::path& home);

  /// Writes the line and its line end.
  void send(std::string_view line);
  /// Writes the bytes as they are.
  void sendRaw(std::string_view bytes);
  /// Ends the program's input.
  void closeInput();
  /// The next line of output without its line end; absent at the end of the output, or when
  /// none comes within ten seconds (which fails the test).
  [[nodiscard]] std::optional<std::string> readLine();
  /// Everything the program writes until it closes its output.
  [[nodiscard]] std::string readRest();
  /// Waits for the program to end: its exit status, or -signal.
  int wait();

 private:
  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
  std::string buffered_;
  bool ended_ = false;
};

}  // namespace brindlet::testing
