// The hosts document on arbitrary file contents: malformed markers are refused with
// HostsDocumentError; otherwise the block lists what was applied, and applying again or
// removing gives back what it should, byte for byte.
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "blocking/HostsDocument.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string source(reinterpret_cast<const char*>(data), size);
  const std::vector<std::string> hosts = {"example.com", "www.example.com"};
  std::string base;
  std::string applied;
  try {
    base = brindlet::HostsDocument(source).removingManagedBlock();
    applied = brindlet::HostsDocument(source).applying(hosts);
  } catch (const brindlet::HostsDocumentError&) {
    return 0;
  }
  const brindlet::HostsDocument document(applied);
  if (document.managedHosts() != std::set<std::string>(hosts.begin(), hosts.end())) {
    __builtin_trap();
  }
  // A final lone carriage return joins the line feed put after it into one CR LF line end,
  // which removal never splits; every other text comes back exactly.
  if (!base.ends_with('\r')) {
    if (document.removingManagedBlock() != base) __builtin_trap();
    if (document.applying(hosts) != applied) __builtin_trap();
  }
  return 0;
}
