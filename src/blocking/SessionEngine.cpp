#include "blocking/SessionEngine.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "blocking/BlockingError.h"
#include "blocking/DomainRules.h"
#include "blocking/SessionError.h"
#include "support/BrindletError.h"

namespace brindlet {
namespace {

constexpr double kMinimumDuration = 60.0;

// Only the rules' own switches count: a disabled group still blocks its enabled rules.
std::vector<std::string> enabledDomains(const DomainGroup& group) {
  std::vector<std::string> domains;
  for (const DomainRule& rule : group.rules) {
    if (rule.isEnabled) domains.push_back(rule.domain);
  }
  return domains;
}

std::vector<std::string> expectedHosts(const BlockSession& session) {
  return DomainRules::expandedHosts(enabledDomains(session.group));
}

std::vector<DomainGroup> groupsOrSeeded(std::vector<DomainGroup> groups) {
  if (groups.empty()) return {DomainGroup::socialDistractions()};
  return groups;
}

bool holdsSession(const PersistedState& state, const Uuid& id) {
  return state.activeSession && state.activeSession->id == id;
}

// Whether the session may be ended now: a flexible one at any time, a strict one once its time
// is up.
bool mayEnd(const BlockSession& session, Instant now) {
  return session.mode == SessionMode::flexible || now >= session.endsAt;
}

// Whether the administrator refused the change, which leaves the hosts file as it was.
bool isRefusal(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const BlockingError& error) {
    return error.which() == BlockingError::Case::authorizationCancelled;
  } catch (...) {
    return false;
  }
}

}  // namespace

SessionEngine::SessionEngine(LocalStore store, std::shared_ptr<BlockingEngine> blocker)
    : store_(std::move(store)), blocker_(std::move(blocker)) {}

void SessionEngine::notifySessionChanged() const {
  if (onSessionChanged) onSessionChanged(activeSession_);
}

void SessionEngine::storeSessionAgain(const BlockSession& session) const {
  store_.updateAtomically([&](PersistedState& state) {
    if (holdsSession(state, session.id)) state.activeSession = session;
  });
}

void SessionEngine::start(const DomainGroup& group, double duration, SessionMode mode,
                          Instant now) {
  // Written so that a NaN duration is refused too.
  if (!(duration >= kMinimumDuration)) throw SessionError(SessionError::Case::invalidDuration);
  const std::vector<std::string> domains = enabledDomains(group);
  if (domains.empty()) throw SessionError(SessionError::Case::noEnabledDomains);
  const std::vector<std::string> hosts = DomainRules::expandedHosts(domains);

  const BlockSession session{.id = Uuid::random(),
                             .group = group,
                             .mode = mode,
                             .startedAt = now,
                             .endsAt = now.advanced(duration),
                             .state = SessionState::active};
  // The session reaches the file before the hosts file changes, so a crash in between leaves
  // a session that recover finds and repairs, never a block nobody knows about.
  store_.updateAtomically([&](PersistedState& state) {
    if (state.activeSession) throw SessionError(SessionError::Case::alreadyActive);
    state.groups = groups_;
    state.activeSession = session;
  });
  activeSession_ = session;

  try {
    blocker_->apply(hosts);
  } catch (...) {
    const std::exception_ptr failure = std::current_exception();
    // A failure after the swap (the new file couldn't be read back, DNS refresh) leaves the
    // block in place, and once the session is gone nothing would ever lift it. Only a refusal
    // is known to have left the file alone; after anything else the block is taken out again.
    if (!isRefusal(failure)) {
      try {
        blocker_->remove();
      } catch (...) {
        // The failure the user sees is the one that stopped the start.
      }
    }
    try {
      store_.updateAtomically([&](PersistedState& state) {
        if (holdsSession(state, session.id)) state.activeSession.reset();
      });
    } catch (...) {
      // The session left on disk is ended by the next recover, which finds it.
    }
    activeSession_.reset();
    protectionStatus_ = ProtectionStatus::off;
    std::rethrow_exception(failure);
  }
  protectionStatus_ = ProtectionStatus::active;
  lastError_.reset();
  notifySessionChanged();
}

void SessionEngine::endFlexible(Instant now) {
  if (!activeSession_) return;
  if (!mayEnd(*activeSession_, now)) throw SessionError(SessionError::Case::strictSessionLocked);
  finishSession();
}

bool SessionEngine::endIfFlexible(Instant now) {
  if (!activeSession_ || !mayEnd(*activeSession_, now)) return false;
  finishSession();
  return true;
}

void SessionEngine::finishSession() {
  if (!activeSession_) return;
  const Uuid id = activeSession_->id;
  // Hosts first: a crash in between leaves the session on disk, which recover then ends.
  blocker_->remove();
  store_.updateAtomically([&](PersistedState& state) {
    if (holdsSession(state, id)) state.activeSession.reset();
  });
  activeSession_.reset();
  protectionStatus_ = ProtectionStatus::off;
  lastError_.reset();
  notifySessionChanged();
}

void SessionEngine::tick(Instant now) {
  if (!activeSession_ || now < activeSession_->endsAt) return;
  try {
    finishSession();
  } catch (...) {
    markAttention(currentErrorText());
  }
}

void SessionEngine::markAttention(const std::string& failure) {
  if (activeSession_) activeSession_->state = SessionState::attentionRequired;
  protectionStatus_ = ProtectionStatus::attentionRequired;
  lastError_ = failure;
  if (!activeSession_) return;
  try {
    storeSessionAgain(*activeSession_);
  } catch (...) {
    // The status on screen already tells the user; the file learns of it at the next write.
  }
}

void SessionEngine::recover(Instant now) {
  std::shared_ptr<const PersistedState> state;
  try {
    state = store_.loadShared().state;
  } catch (...) {
    // With the file unreadable nothing is known about a session, so none is claimed.
    activeSession_.reset();
    markAttention(currentErrorText());
    return;
  }
  groups_ = groupsOrSeeded(state->groups);
  activeSession_ = state->activeSession;
  // Entries left in the hosts file without a stored session aren't looked for: only what the
  // file claims is repaired or ended.
  if (!activeSession_) {
    protectionStatus_ = ProtectionStatus::off;
    return;
  }
  try {
    if (now >= activeSession_->endsAt) {
      finishSession();
      return;
    }
    const std::vector<std::string> hosts = expectedHosts(*activeSession_);
    // Asks for approval only when the file doesn't already hold the block, as after a crash
    // between storing the session and changing the hosts file, or an edit by someone else.
    if (blocker_->status(hosts) != BlockingStatus::active) blocker_->apply(hosts);
    protectionStatus_ = ProtectionStatus::active;
    storeSessionAgain(*activeSession_);
    notifySessionChanged();
  } catch (...) {
    markAttention(currentErrorText());
  }
}

void SessionEngine::retryProtection() {
  if (!activeSession_) return;
  try {
    blocker_->apply(expectedHosts(*activeSession_));
  } catch (...) {
    markAttention(currentErrorText());
    return;
  }
  protectionStatus_ = ProtectionStatus::active;
  lastError_.reset();
  try {
    storeSessionAgain(*activeSession_);
  } catch (...) {
    markAttention(currentErrorText());
  }
}

void SessionEngine::loadPersistedState() {
  const std::shared_ptr<const PersistedState> state = store_.loadShared().state;
  groups_ = groupsOrSeeded(state->groups);
  activeSession_ = state->activeSession;
  // A stored session hasn't been checked against the hosts file yet.
  protectionStatus_ = activeSession_ ? ProtectionStatus::attentionRequired : ProtectionStatus::off;
}

double SessionEngine::remainingTime(Instant now) const {
  if (!activeSession_) return 0;
  return std::max(0.0, activeSession_->endsAt.since(now));
}

void SessionEngine::replaceGroups(std::vector<DomainGroup> groups) {
  // The file decides, not memory: another process may have started a strict session.
  store_.updateAtomically([&](PersistedState& state) {
    if (state.activeSession && state.activeSession->mode == SessionMode::strict) {
      throw SessionError(SessionError::Case::strictSessionLocked);
    }
    state.groups = groups;
  });
  groups_ = std::move(groups);
}

std::optional<DomainGroup> SessionEngine::group(const Uuid& id) const {
  const auto found = std::find_if(groups_.begin(), groups_.end(),
                                  [&](const DomainGroup& candidate) { return candidate.id == id; });
  if (found == groups_.end()) return std::nullopt;
  return *found;
}

}  // namespace brindlet
