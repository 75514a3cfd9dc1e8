#pragma once

#include "records/EnumText.h"

namespace brindlet {

/// How website protection stands right now, as the screens show it.
enum class ProtectionStatus {
  /// No session is running, so nothing is meant to be blocked.
  off,
  /// A session is running and its block was put in place or confirmed.
  active,
  /// A session's block couldn't be assured, or the state couldn't be read; see `lastError`.
  attentionRequired,
};

inline constexpr EnumText<ProtectionStatus, 3> kProtectionStatusText{{{
    {ProtectionStatus::off, "off"},
    {ProtectionStatus::active, "active"},
    {ProtectionStatus::attentionRequired, "attentionRequired"},
}}};

}  // namespace brindlet
