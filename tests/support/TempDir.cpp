#include "TempDir.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace brindlet::testing {

namespace fs = std::filesystem;

TempDir::TempDir() : TempDir(fs::temp_directory_path()) {}

TempDir::TempDir(const fs::path& parent) {
  std::string pattern = (parent / "brindlet-test-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
  path_ = pattern;
}

TempDir::~TempDir() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

fs::path inMemoryTemporaryFolder() {
  const fs::path shared = "/dev/shm";
  std::error_code error;
  if (fs::is_directory(shared, error) && ::access(shared.c_str(), W_OK) == 0) return shared;
  return fs::temp_directory_path();
}

std::string readBytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    ADD_FAILURE() << "cannot read " << path;
    return {};
  }
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

void writeBytes(const fs::path& path, std::string_view bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out) ADD_FAILURE() << "cannot write " << path;
}

std::vector<fs::path> filesIn(const fs::path& folder) {
  std::vector<fs::path> files;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

fs::path testDataFolder() {
  const char* source = std::getenv("BRINDLET_SOURCE_DIR");
  return fs::path(source != nullptr ? source : BRINDLET_SOURCE_DIR_FALLBACK) / "tests" / "data";
}

}  // namespace brindlet::testing
