#include "sync/RestrictionProfileReference.h"

namespace brindlet {

void toJson(JsonWriter& out, const RestrictionProfileReference& profile) {
  out.beginObject();
  out.key("schemaVersion").integer(profile.schemaVersion);
  out.key("id").string(profile.id.uppercaseText());
  out.key("name").string(profile.name);
  out.key("selectedApplicationCount").integer(profile.selectedApplicationCount);
  out.key("selectedCategoryCount").integer(profile.selectedCategoryCount);
  out.key("selectedWebDomainCount").integer(profile.selectedWebDomainCount);
  out.endObject();
}

RestrictionProfileReference restrictionProfileReferenceFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  return {.schemaVersion = object.required("schemaVersion").integer(),
          .id = object.required("id").uuid(),
          .name = std::string(object.required("name").string()),
          .selectedApplicationCount = object.required("selectedApplicationCount").integer(),
          .selectedCategoryCount = object.required("selectedCategoryCount").integer(),
          .selectedWebDomainCount = object.required("selectedWebDomainCount").integer()};
}

}  // namespace brindlet
