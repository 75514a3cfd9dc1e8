#pragma once

#include <string>

#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "support/Uuid.h"

namespace brindlet {

/// One site to block, as a normalised host name.
struct DomainRule {
  Uuid id = Uuid::random();
  std::string domain{};
  /// A disabled rule stays in its group and isn't blocked.
  bool isEnabled = true;

  friend bool operator==(const DomainRule&, const DomainRule&) = default;
};

void toJson(JsonWriter& out, const DomainRule& rule);
[[nodiscard]] DomainRule domainRuleFromJson(const JsonNode& node);

}  // namespace brindlet
