#pragma once

#include <cstdint>
#include <string>

#include "support/BrindletError.h"

namespace brindlet {

/// A sync record that can't be read or written under this build's schema.
class SyncModelError : public BrindletError {
 public:
  enum class Case { unsupportedSchemaVersion, corruptPayload };

  /// A record of another layout version, carrying the version it declares.
  [[nodiscard]] static SyncModelError unsupportedSchemaVersion(std::int64_t version) {
    return SyncModelError(Case::unsupportedSchemaVersion, version);
  }
  [[nodiscard]] static SyncModelError corruptPayload() {
    return SyncModelError(Case::corruptPayload, 0);
  }

  [[nodiscard]] Case which() const { return case_; }
  /// The declared version of an unsupportedSchemaVersion error; 0 otherwise.
  [[nodiscard]] std::int64_t version() const { return version_; }
  /// Never shown on a screen of its own: the pairing state tells the user what matters.
  [[nodiscard]] std::string description() const override;

  friend bool operator==(const SyncModelError& a, const SyncModelError& b) {
    return a.case_ == b.case_ && a.version_ == b.version_;
  }

 private:
  SyncModelError(Case which, std::int64_t version) : case_(which), version_(version) {}

  Case case_;
  std::int64_t version_;
};

}  // namespace brindlet
