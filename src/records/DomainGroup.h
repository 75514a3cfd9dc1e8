#pragma once

#include <string>
#include <vector>

#include "records/DomainRule.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "support/Uuid.h"

namespace brindlet {

/// A named list of sites that are blocked together.
struct DomainGroup {
  Uuid id = Uuid::random();
  std::string name{};
  std::vector<DomainRule> rules{};  // in the user's order
  bool isEnabled = true;

  /// The group a new installation starts with. Its ids are the same on every machine, so a
  /// group restored from elsewhere compares equal.
  [[nodiscard]] static const DomainGroup& socialDistractions();

  friend bool operator==(const DomainGroup&, const DomainGroup&) = default;
};

void toJson(JsonWriter& out, const DomainGroup& group);
[[nodiscard]] DomainGroup domainGroupFromJson(const JsonNode& node);

}  // namespace brindlet
