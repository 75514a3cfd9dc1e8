#include "records/DomainRule.h"

namespace brindlet {

void toJson(JsonWriter& out, const DomainRule& rule) {
  out.beginObject();
  out.key("domain").string(rule.domain);
  out.key("id").string(rule.id.uppercaseText());
  out.key("isEnabled").boolean(rule.isEnabled);
  out.endObject();
}

DomainRule domainRuleFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  return {.id = object.required("id").uuid(),
          .domain = std::string(object.required("domain").string()),
          .isEnabled = object.required("isEnabled").boolean()};
}

}  // namespace brindlet
