#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "blocking/BlockingEngine.h"
#include "records/EnumText.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"

namespace brindlet {

/// How website blocking stands, in one word.
enum class DiagnosticHealth { healthy, inactive, attentionRequired };

inline constexpr EnumText<DiagnosticHealth, 3> kDiagnosticHealthText{{{
    {DiagnosticHealth::healthy, "healthy"},
    {DiagnosticHealth::inactive, "inactive"},
    {DiagnosticHealth::attentionRequired, "attentionRequired"},
}}};

/// What the user can do about blocking that needs attention.
enum class DiagnosticAction { reapply, reviewConfiguration };

inline constexpr EnumText<DiagnosticAction, 2> kDiagnosticActionText{{{
    {DiagnosticAction::reapply, "reapply"},
    {DiagnosticAction::reviewConfiguration, "reviewConfiguration"},
}}};

/// A one-look health report of website blocking, to show or to export as JSON.
struct DiagnosticsSnapshot {
  DiagnosticHealth health = DiagnosticHealth::inactive;
  BlockingStatus blockingStatus = BlockingStatus::inactive;
  /// Entries of the expected host list, so a domain and its "www." form count as two.
  std::int64_t expectedDomainCount = 0;
  /// The blocker's backup folder, as a file-system path.
  std::string backupDirectory;
  std::optional<DiagnosticAction> suggestedAction;

  friend bool operator==(const DiagnosticsSnapshot&, const DiagnosticsSnapshot&) = default;
};

/// Keys equal to the field names; an absent action has no key.
void toJson(JsonWriter& out, const DiagnosticsSnapshot& snapshot);
[[nodiscard]] DiagnosticsSnapshot diagnosticsSnapshotFromJson(const JsonNode& node);

}  // namespace brindlet
