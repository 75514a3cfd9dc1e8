#pragma once

#include <cstdint>

#include "records/EnumText.h"

// The vocabulary that a Mac and an iPhone share in their sync records.
namespace brindlet {

/// The version of the sync records' layout that this build writes and reads.
inline constexpr std::int64_t focusSyncSchemaVersion = 1;

enum class FocusDevicePlatform { macOS, iOS };

inline constexpr EnumText<FocusDevicePlatform, 2> kFocusDevicePlatformText{{{
    {FocusDevicePlatform::macOS, "macOS"},
    {FocusDevicePlatform::iOS, "iOS"},
}}};

/// How the connection to the other devices stands, as the Devices screen reads it.
enum class PairingState { paired, waitingForICloud, offline, schemaUnsupported, permissionDenied };

inline constexpr EnumText<PairingState, 5> kPairingStateText{{{
    {PairingState::paired, "paired"},
    {PairingState::waitingForICloud, "waitingForICloud"},
    {PairingState::offline, "offline"},
    {PairingState::schemaUnsupported, "schemaUnsupported"},
    {PairingState::permissionDenied, "permissionDenied"},
}}};

/// A flexible session may be opened deliberately from its shield; a strict one holds to its end.
enum class SyncedSessionMode { flexible, strict };

inline constexpr EnumText<SyncedSessionMode, 2> kSyncedSessionModeText{{{
    {SyncedSessionMode::flexible, "flexible"},
    {SyncedSessionMode::strict, "strict"},
}}};

enum class SyncedSessionState { active, ended };

inline constexpr EnumText<SyncedSessionState, 2> kSyncedSessionStateText{{{
    {SyncedSessionState::active, "active"},
    {SyncedSessionState::ended, "ended"},
}}};

/// What an enforcing device made of an intent.
enum class EnforcementResult {
  applied,
  authorizationRequired,
  profileMissing,
  entitlementMissing,
  failed
};

inline constexpr EnumText<EnforcementResult, 5> kEnforcementResultText{{{
    {EnforcementResult::applied, "applied"},
    {EnforcementResult::authorizationRequired, "authorizationRequired"},
    {EnforcementResult::profileMissing, "profileMissing"},
    {EnforcementResult::entitlementMissing, "entitlementMissing"},
    {EnforcementResult::failed, "failed"},
}}};

}  // namespace brindlet
