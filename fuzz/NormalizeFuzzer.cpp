// Domain normalisation on arbitrary bytes: it either refuses with DomainRuleError or returns a
// host that a hosts file can hold. Any other exception ends the run as a crash.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "blocking/DomainRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::string host;
  try {
    host = brindlet::DomainRules::normalize(text);
  } catch (const brindlet::DomainRuleError&) {
    return 0;
  }
  if (host.empty() || host.size() > 253 || host.starts_with('.') || host.ends_with('.')) {
    __builtin_trap();
  }
  for (const char c : host) {
    const bool allowed = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '.';
    if (!allowed) __builtin_trap();
  }
  return 0;
}
