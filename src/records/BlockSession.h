#pragma once

#include "records/DomainGroup.h"
#include "records/EnumText.h"
#include "support/Instant.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"
#include "support/Uuid.h"

namespace brindlet {

/// A flexible session may be ended early; a strict one holds until its end.
enum class SessionMode { flexible, strict };

inline constexpr EnumText<SessionMode, 2> kSessionModeText{{{
    {SessionMode::flexible, "flexible"},
    {SessionMode::strict, "strict"},
}}};

enum class SessionState { active, completed, attentionRequired };

inline constexpr EnumText<SessionState, 3> kSessionStateText{{{
    {SessionState::active, "active"},
    {SessionState::completed, "completed"},
    {SessionState::attentionRequired, "attentionRequired"},
}}};

/// A timed restriction, with its own copy of the group it blocks.
struct BlockSession {
  Uuid id = Uuid::random();
  /// A full copy taken when the session started or was last re-applied.
  DomainGroup group{};
  SessionMode mode = SessionMode::flexible;
  Instant startedAt{};
  Instant endsAt{};
  SessionState state = SessionState::active;

  friend bool operator==(const BlockSession&, const BlockSession&) = default;
};

void toJson(JsonWriter& out, const BlockSession& session);
[[nodiscard]] BlockSession blockSessionFromJson(const JsonNode& node);

}  // namespace brindlet
