#pragma once

#include <cstdint>
#include <string>

#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "support/Uuid.h"
#include "sync/SyncSchema.h"

namespace brindlet {

/// A restriction profile as it may cross devices: a name and three counts. The selection of
/// applications, categories and domains itself stays on the device that made it and has no
/// field here, nor anywhere else in the sync records.
struct RestrictionProfileReference {
  std::int64_t schemaVersion = focusSyncSchemaVersion;
  Uuid id = Uuid::random();
  std::string name;
  std::int64_t selectedApplicationCount = 0;
  std::int64_t selectedCategoryCount = 0;
  std::int64_t selectedWebDomainCount = 0;

  friend bool operator==(const RestrictionProfileReference&,
                         const RestrictionProfileReference&) = default;
};

void toJson(JsonWriter& out, const RestrictionProfileReference& profile);
[[nodiscard]] RestrictionProfileReference restrictionProfileReferenceFromJson(const JsonNode& node);

}  // namespace brindlet
