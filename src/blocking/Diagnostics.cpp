#include "blocking/Diagnostics.h"

namespace brindlet {

Diagnostics::Diagnostics(std::shared_ptr<BlockingEngine> blocker,
                         std::filesystem::path backupDirectory)
    : blocker_(std::move(blocker)), backupDirectory_(std::move(backupDirectory)) {}

DiagnosticsSnapshot Diagnostics::snapshot(const std::vector<std::string>& expectedHosts) const {
  DiagnosticsSnapshot report;
  report.blockingStatus = blocker_->status(expectedHosts);
  report.expectedDomainCount = static_cast<std::int64_t>(expectedHosts.size());
  report.backupDirectory = backupDirectory_.string();
  switch (report.blockingStatus) {
    case BlockingStatus::active:
      report.health = DiagnosticHealth::healthy;
      break;
    case BlockingStatus::inactive:
      // The hosts engine itself says `mismatch` here; other blockers may not.
      if (expectedHosts.empty()) {
        report.health = DiagnosticHealth::inactive;
      } else {
        report.health = DiagnosticHealth::attentionRequired;
        report.suggestedAction = DiagnosticAction::reapply;
      }
      break;
    case BlockingStatus::mismatch:
      report.health = DiagnosticHealth::attentionRequired;
      report.suggestedAction = DiagnosticAction::reapply;
      break;
    case BlockingStatus::unreadable:
      report.health = DiagnosticHealth::attentionRequired;
      report.suggestedAction = DiagnosticAction::reviewConfiguration;
      break;
  }
  return report;
}

}  // namespace brindlet
