#include "app/PlatformFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

namespace brindlet {
namespace {

namespace fs = std::filesystem;

std::optional<fs::path> absolutePath(const std::optional<std::string>& value) {
  if (!value || value->empty() || (*value)[0] != '/') return std::nullopt;
  return fs::path(*value);
}

fs::path homeFolder(const PlatformFolders::Environment& environment) {
  if (const auto home = absolutePath(environment("HOME"))) return *home;
  if (const passwd* user = ::getpwuid(::getuid()); user != nullptr && user->pw_dir != nullptr) {
    return user->pw_dir;
  }
  return "/";
}

// The value of XDG_DOCUMENTS_DIR in user-dirs.dirs: a quoted path, absolute or "$HOME/...".
std::optional<fs::path> documentsFromUserDirs(const fs::path& configFolder, const fs::path& home) {
  std::ifstream file(configFolder / "user-dirs.dirs");
  constexpr std::string_view kKey = "XDG_DOCUMENTS_DIR=";
  for (std::string line; std::getline(file, line);) {
    if (line.rfind(kKey, 0) != 0) continue;
    std::string value = line.substr(kKey.size());
    if (value.size() < 2 || value.front() != '"' || value.back() != '"') return std::nullopt;
    value = value.substr(1, value.size() - 2);
    constexpr std::string_view kHome = "$HOME";
    if (value.rfind(kHome, 0) == 0) {
      const std::string rest = value.substr(kHome.size());
      if (!rest.empty() && rest.front() != '/') return std::nullopt;
      return rest.empty() ? home : home / rest.substr(1);
    }
    return absolutePath(value);
  }
  return std::nullopt;
}

}  // namespace

PlatformFolders PlatformFolders::current() {
  return fromEnvironment([](std::string_view name) -> std::optional<std::string> {
    const char* value = std::getenv(std::string(name).c_str());
    if (value == nullptr) return std::nullopt;
    return std::string(value);
  });
}

PlatformFolders PlatformFolders::fromEnvironment(const Environment& environment) {
  const fs::path home = homeFolder(environment);
#ifdef __APPLE__
  return {home / "Library" / "Application Support", home / "Documents"};
#else
  const fs::path dataHome =
      absolutePath(environment("XDG_DATA_HOME")).value_or(home / ".local" / "share");
  const fs::path configHome =
      absolutePath(environment("XDG_CONFIG_HOME")).value_or(home / ".config");
  return {dataHome, documentsFromUserDirs(configHome, home).value_or(home / "Documents")};
#endif
}

}  // namespace brindlet
