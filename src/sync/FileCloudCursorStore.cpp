#include "sync/FileCloudCursorStore.h"

#include <simdjson.h>

#include <map>

#include "support/Base64.h"
#include "support/BrindletError.h"
#include "support/Files.h"
#include "support/JsonWriter.h"

namespace brindlet {
namespace {

// The file's entries as base64 texts. A file that isn't an object of texts reads as empty: its
// only content is cursors, and a lost cursor costs no more than a fetch from the beginning.
std::map<std::string, std::string, std::less<>> readEntries(const std::filesystem::path& path) {
  std::map<std::string, std::string, std::less<>> entries;
  std::optional<FileContents> contents;
  try {
    contents = readFileIfExists(path);
  } catch (const BrindletError&) {
    return entries;
  }
  if (!contents) return entries;
  simdjson::dom::parser parser;
  simdjson::dom::object object;
  if (parser.parse(contents->bytes).get(object) != simdjson::SUCCESS) return entries;
  for (const auto field : object) {
    std::string_view value;
    if (field.value.get_string().get(value) == simdjson::SUCCESS) {
      entries.emplace(std::string(field.key), std::string(value));
    }
  }
  return entries;
}

}  // namespace

FileCloudCursorStore::FileCloudCursorStore(std::filesystem::path folder, std::string key)
    : folder_(std::move(folder)), path_(folder_ / kFileName), key_(std::move(key)) {}

std::optional<std::string> FileCloudCursorStore::load() {
  const auto entries = readEntries(path_);
  const auto found = entries.find(key_);
  if (found == entries.end()) return std::nullopt;
  return base64Decoded(found->second);
}

void FileCloudCursorStore::save(const std::optional<std::string>& cursor) {
  auto entries = readEntries(path_);
  if (cursor) {
    entries.insert_or_assign(key_, base64Encoded(*cursor));
  } else if (entries.erase(key_) == 0 && !fileExists(path_)) {
    return;
  }
  JsonWriter out;
  out.beginObject();
  for (const auto& [key, value] : entries) out.key(key).string(value);
  out.endObject();
  try {
    createDirectories(folder_);
    writeFileAtomically(path_, out.text());
  } catch (const BrindletError&) {
    // Nothing waits on the cursor: the next launch fetches from the cursor that the file still
    // holds, and records taken in twice change nothing.
  }
}

}  // namespace brindlet
