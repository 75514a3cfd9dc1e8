#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "blocking/BlockingEngine.h"
#include "blocking/ProtectionStatus.h"
#include "persistence/LocalStore.h"
#include "records/BlockSession.h"
#include "records/DomainGroup.h"
#include "support/Instant.h"
#include "support/Uuid.h"

namespace brindlet {

/// The user's domain groups and the one running blocking session. Decides when a session may
/// start and end, keeps the state file and the hosts file in step across crashes in either
/// order, and tells how protection stands. Lives on the model thread; its calls block while
/// the administrator is asked for approval.
///
/// The state file is written only by locked read-change-write, and only `groups` and
/// `activeSession` in it, so task transactions in between keep their revision. The hosts file
/// is changed only through the blocker.
class SessionEngine {
 public:
  /// Told of the session after one begins, is found again at launch, or ends (then absent).
  using SessionChanged = std::function<void(const std::optional<BlockSession>&)>;

  /// Reads nothing: `loadPersistedState` or `recover` brings the stored state in.
  SessionEngine(LocalStore store, std::shared_ptr<BlockingEngine> blocker);

  /// The user's groups; the seeded one until something is loaded.
  [[nodiscard]] const std::vector<DomainGroup>& groups() const { return groups_; }
  /// The running session as it was last stored.
  [[nodiscard]] const std::optional<BlockSession>& activeSession() const { return activeSession_; }
  [[nodiscard]] ProtectionStatus protectionStatus() const { return protectionStatus_; }
  /// Why protection needs attention; set only by background work.
  [[nodiscard]] const std::optional<std::string>& lastError() const { return lastError_; }
  [[nodiscard]] const LocalStore& store() const { return store_; }
  [[nodiscard]] BlockingEngine& blocker() const { return *blocker_; }

  /// Called after the change it reports has been written; may be left empty.
  SessionChanged onSessionChanged;

  /// Blocks the group's enabled domains for `duration` seconds from `now`. The session is
  /// stored before the hosts file changes, and taken out again when the change fails. Fails
  /// with SessionError, DomainRuleError, the store's errors, or the blocker's.
  void start(const DomainGroup& group, double duration, SessionMode mode, Instant now);
  /// Ends a flexible session, or any session whose time is up; does nothing without one.
  /// Fails with SessionError::strictSessionLocked for a strict session still running, or with
  /// the blocker's or the store's errors.
  void endFlexible(Instant now);
  /// Like endFlexible, but leaves a strict running session alone without failing; tells whether
  /// a session was ended.
  bool endIfFlexible(Instant now);
  /// Ends the session once its time is up. Never fails: a failure needs attention, and the
  /// next tick tries again.
  void tick(Instant now);
  /// Brings the stored groups and session back at launch, repairs a missing or changed block,
  /// and ends a session whose time ran out meanwhile. Never fails: a failure needs attention.
  void recover(Instant now);
  /// Puts the running session's block in place again after attention. Never fails.
  void retryProtection();
  /// Brings the stored groups and session in without touching the hosts file; a session counts
  /// as needing attention until it is verified. Fails with the store's errors.
  void loadPersistedState();
  /// Seconds left of the running session, never below 0; 0 without one.
  [[nodiscard]] double remainingTime(Instant now) const;
  /// Stores a new list of groups. The running session keeps its own copy of its group. Fails
  /// with SessionError::strictSessionLocked while the stored session is strict, or with the
  /// store's errors.
  void replaceGroups(std::vector<DomainGroup> groups);
  /// The first group with this id.
  [[nodiscard]] std::optional<DomainGroup> group(const Uuid& id) const;

 private:
  // Takes the block out, then the session out of the file. A failure leaves the session.
  void finishSession();
  void markAttention(const std::string& failure);
  // Writes the session over the stored one, if the file still holds this very session.
  void storeSessionAgain(const BlockSession& session) const;
  void notifySessionChanged() const;

  LocalStore store_;
  std::shared_ptr<BlockingEngine> blocker_;
  std::vector<DomainGroup> groups_{DomainGroup::socialDistractions()};
  std::optional<BlockSession> activeSession_;
  ProtectionStatus protectionStatus_ = ProtectionStatus::off;
  std::optional<std::string> lastError_;
};

}  // namespace brindlet
