#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "blocking/BlockingError.h"
#include "blocking/PrivilegedCommandRunning.h"
#include "support/Files.h"

namespace brindlet::testing {

/// A runner without privileges for files in a temporary folder: by default each `replace`
/// copies the file, as the real ones do; a test can queue other outcomes for the next calls.
class FakePrivilegedRunner : public PrivilegedCommandRunning {
 public:
  using Outcome = std::function<void(const std::filesystem::path& source,
                                     const std::filesystem::path& destination)>;

  struct Call {
    std::filesystem::path source;
    std::filesystem::path destination;
    /// Whether the source file existed when the runner was called.
    bool sourceExisted = false;
  };

  static Outcome copies() {
    return [](const std::filesystem::path& source, const std::filesystem::path& destination) {
      copyFileAtomically(source, destination);
    };
  }
  static Outcome leavesFileAlone() {
    return [](const std::filesystem::path&, const std::filesystem::path&) {};
  }
  static Outcome fails(BlockingError error) {
    return [error](const std::filesystem::path&, const std::filesystem::path&) { throw error; };
  }

  /// The outcome of the next `replace` that has none queued before it.
  void thenReplace(Outcome outcome) { outcomes_.push_back(std::move(outcome)); }
  void failRefreshWith(BlockingError error) { refreshFailure_ = std::move(error); }

  void replace(const std::filesystem::path& source,
               const std::filesystem::path& destination) override {
    calls.push_back({source, destination, fileExists(source)});
    Outcome outcome = byDefault;
    if (!outcomes_.empty()) {
      outcome = std::move(outcomes_.front());
      outcomes_.pop_front();
    }
    outcome(source, destination);
  }

  void refreshDNS() override {
    ++refreshCount;
    if (refreshFailure_) throw *refreshFailure_;
  }

  std::vector<Call> calls;
  int refreshCount = 0;
  /// The outcome of a `replace` with none queued.
  Outcome byDefault = copies();

 private:
  std::deque<Outcome> outcomes_;
  std::optional<BlockingError> refreshFailure_;
};

}  // namespace brindlet::testing
