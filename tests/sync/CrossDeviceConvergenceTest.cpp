// A Mac and an iPhone coordinator over one in-memory cloud database, with a delivery between
// database and coordinator that repeats, reorders and delays what it fetched. Whatever the
// schedule, once everything has been delivered both hold the same intents, strict sessions are
// never shortened or ended early along the way, and the Mac reads the iPhone as protected
// exactly when the iPhone has answered the intent's current revision.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include "FixedClock.h"
#include "InMemoryCloudRecordDatabase.h"
#include "SyncTestRecords.h"
#include "sync/CloudKitPairingTransport.h"
#include "sync/CrossDeviceSessionCoordinator.h"
#include "sync/SessionIntentRevision.h"

namespace brindlet {
namespace {

using testing::FixedClock;
using testing::InMemoryCloudRecordDatabase;
using testing::kTestNow;

class NullCursorStore final : public CloudCursorStoring {
 public:
  std::optional<std::string> load() override { return std::nullopt; }
  void save(const std::optional<std::string>& /*cursor*/) override {}
};

// Fetches everything new from the real transport, cuts it into one-record pieces and hands
// them out late, out of order and more than once; the coordinator's own cursor is ignored.
class UnreliableDelivery final : public PairingTransport {
 public:
  UnreliableDelivery(std::shared_ptr<CloudKitPairingTransport> inner, std::mt19937& random)
      : inner_(std::move(inner)), random_(random) {}

  void publish(const PairedDevice& device) override { inner_->publish(device); }
  void publish(const SyncedSessionIntent& intent) override { inner_->publish(intent); }
  void publish(const EnforcementAcknowledgement& acknowledgement) override {
    inner_->publish(acknowledgement);
  }

  PairingChangeBatch fetchChanges(const std::optional<std::string>& /*cursor*/) override {
    takeNewChanges();
    if (deliversEverything) {
      std::shuffle(pending_.begin(), pending_.end(), random_);
      PairingChangeBatch all;
      for (const PairingChangeBatch& piece : pending_) append(all, piece);
      pending_.clear();
      return all;
    }
    const int choice = std::uniform_int_distribution<int>(0, 9)(random_);
    if (choice < 2) return {};
    if (choice < 4 && !delivered_.empty()) {
      return delivered_[pick(delivered_.size())];
    }
    if (pending_.empty()) return {};
    const std::size_t index = pick(pending_.size());
    PairingChangeBatch piece = pending_[index];
    pending_.erase(pending_.begin() + static_cast<std::ptrdiff_t>(index));
    delivered_.push_back(piece);
    return piece;
  }

  [[nodiscard]] bool hasPending() const { return !pending_.empty(); }
  bool deliversEverything = false;

 private:
  void takeNewChanges() {
    const PairingChangeBatch fresh = inner_->fetchChanges(cursor_);
    cursor_ = fresh.cursor;
    for (const PairedDevice& device : fresh.devices) pending_.push_back(piece(device));
    for (const SyncedSessionIntent& intent : fresh.intents) pending_.push_back(piece(intent));
    for (const EnforcementAcknowledgement& acknowledgement : fresh.acknowledgements) {
      pending_.push_back(piece(acknowledgement));
    }
  }

  static PairingChangeBatch piece(const PairedDevice& device) {
    PairingChangeBatch batch;
    batch.devices.push_back(device);
    return batch;
  }
  static PairingChangeBatch piece(const SyncedSessionIntent& intent) {
    PairingChangeBatch batch;
    batch.intents.push_back(intent);
    return batch;
  }
  static PairingChangeBatch piece(const EnforcementAcknowledgement& acknowledgement) {
    PairingChangeBatch batch;
    batch.acknowledgements.push_back(acknowledgement);
    return batch;
  }

  static void append(PairingChangeBatch& to, const PairingChangeBatch& piece) {
    to.devices.insert(to.devices.end(), piece.devices.begin(), piece.devices.end());
    to.intents.insert(to.intents.end(), piece.intents.begin(), piece.intents.end());
    to.acknowledgements.insert(to.acknowledgements.end(), piece.acknowledgements.begin(),
                               piece.acknowledgements.end());
  }

  std::size_t pick(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_);
  }

  std::shared_ptr<CloudKitPairingTransport> inner_;
  std::mt19937& random_;
  std::optional<std::string> cursor_;
  std::vector<PairingChangeBatch> pending_;
  std::vector<PairingChangeBatch> delivered_;
};

struct PlannedSession {
  Uuid id;
  SyncedSessionMode mode;
  Instant startedAt;
  Instant endsAt;
  /// When the Mac ends it: the end for a strict session, maybe earlier for a flexible one.
  Instant endedAt;
};

class Simulation {
 public:
  explicit Simulation(unsigned seed) : random_(seed) {
    macDelivery_ = makeDelivery();
    phoneDelivery_ = makeDelivery();
    mac_ = std::make_unique<CrossDeviceSessionCoordinator>(macDelivery_, "mac-1");
    phone_ = std::make_unique<CrossDeviceSessionCoordinator>(phoneDelivery_, "phone-1");
    macDelivery_->publish(PairedDevice{
        .id = "mac-1", .name = "Mac", .platform = FocusDevicePlatform::macOS, .lastSeenAt = now()});
    announcePhone();
  }

  void run(int steps) {
    for (int step = 0; step < steps && !::testing::Test::HasFailure(); ++step) {
      clock_->time = now().advanced(std::uniform_real_distribution<double>(1, 900)(random_));
      moveMacSession();
      if (chance(0.5)) (void)mac_->refresh(now());
      if (chance(0.5)) phoneTakesChanges();
      if (chance(0.1)) announcePhone();
      checkStrictSessionsHold();
      checkProtectionIsAnswered();
    }
  }

  void deliverEverything() {
    macDelivery_->deliversEverything = true;
    phoneDelivery_->deliversEverything = true;
    // Each round may publish answers that the other side then needs: go on until quiet.
    for (int round = 0; round < 5; ++round) {
      phoneTakesChanges();
      (void)mac_->refresh(now());
    }
    EXPECT_FALSE(macDelivery_->hasPending());
    EXPECT_FALSE(phoneDelivery_->hasPending());
  }

  void checkConverged() {
    const CrossDeviceCoordinatorSnapshot onMac = mac_->snapshot();
    const CrossDeviceCoordinatorSnapshot onPhone = phone_->snapshot();
    EXPECT_EQ(onMac.intents, onPhone.intents);
    EXPECT_EQ(onMac.acknowledgements, onPhone.acknowledgements);
    EXPECT_EQ(onMac.intents.size(), sessions_.size());
    for (const SyncedSessionIntent& intent : onMac.intents) {
      const DeviceProtectionStatus status =
          mac_->protectionStatus("phone-1", intent.sessionID, now());
      if (intent.state == SyncedSessionState::active && now() < intent.endsAt) {
        EXPECT_EQ(status, DeviceProtectionStatus::protectedUntil(intent.endsAt));
      } else {
        EXPECT_EQ(status, DeviceProtectionStatus::of(DeviceProtectionStatus::Case::expired));
      }
    }
  }

  /// How often the Mac read the iPhone as protected along the way, and how many strict
  /// sessions ran: a schedule that never gets there shows nothing.
  int protectedReadings = 0;
  int strictSessions = 0;

 private:
  [[nodiscard]] Instant now() const { return clock_->time; }

  bool chance(double probability) { return std::bernoulli_distribution(probability)(random_); }

  std::shared_ptr<UnreliableDelivery> makeDelivery() {
    return std::make_shared<UnreliableDelivery>(
        std::make_shared<CloudKitPairingTransport>(database_, std::make_shared<NullCursorStore>(),
                                                   clock_),
        random_);
  }

  SyncedSessionIntent intentOf(const PlannedSession& session, SyncedSessionState state) {
    return {.sessionID = session.id,
            .profileID = testing::kSyncProfile,
            .mode = session.mode,
            .startedAt = session.startedAt,
            .endsAt = session.endsAt,
            .revision = SessionIntentRevision::value(session.startedAt, state),
            .state = state,
            .sourceDeviceID = "mac-1"};
  }

  // The Mac's session engine: a session starts when none runs, and ends once its end is due,
  // which for a strict session is never before endsAt.
  void moveMacSession() {
    if (running_ && now() >= running_->endedAt) {
      mac_->publish(intentOf(*running_, SyncedSessionState::ended), now());
      running_.reset();
    } else if (!running_ && chance(0.6)) {
      const double minutes = std::uniform_real_distribution<double>(5, 90)(random_);
      PlannedSession session{
          .id = Uuid::random(),
          .mode = chance(0.5) ? SyncedSessionMode::strict : SyncedSessionMode::flexible,
          .startedAt = now(),
          .endsAt = now().advanced(minutes * 60),
          .endedAt = {}};
      session.endedAt =
          session.mode == SyncedSessionMode::flexible && chance(0.5)
              ? now().advanced(std::uniform_real_distribution<double>(0, minutes * 60)(random_))
              : session.endsAt;
      sessions_.emplace(session.id, session);
      if (session.mode == SyncedSessionMode::strict) ++strictSessions;
      running_ = session;
      mac_->publish(intentOf(session, SyncedSessionState::active), now());
    }
  }

  // The iPhone enforces what stands and answers every revision it hasn't answered yet.
  void phoneTakesChanges() {
    (void)phone_->refresh(now());
    for (const SyncedSessionIntent& intent : phone_->snapshot().intents) {
      auto& answered = answeredRevision_[intent.sessionID];
      if (answered && *answered >= intent.revision) continue;
      (void)phone_->acknowledge(intent, EnforcementResult::applied, now());
      answered = intent.revision;
    }
  }

  void announcePhone() {
    phoneDelivery_->publish(PairedDevice{.id = "phone-1",
                                         .name = "iPhone",
                                         .platform = FocusDevicePlatform::iOS,
                                         .lastSeenAt = now()});
  }

  void checkStrictSessionsHold() {
    for (const auto& [id, session] : sessions_) {
      if (session.mode != SyncedSessionMode::strict) continue;
      for (const CrossDeviceSessionCoordinator* device : {mac_.get(), phone_.get()}) {
        const auto intent = device->intent(id);
        if (!intent) continue;
        EXPECT_EQ(intent->mode, SyncedSessionMode::strict);
        EXPECT_GE(intent->endsAt, session.endsAt);
        if (now() < session.endsAt) {
          EXPECT_EQ(intent->state, SyncedSessionState::active);
        }
      }
    }
  }

  void checkProtectionIsAnswered() {
    for (const auto& [id, session] : sessions_) {
      const auto intent = mac_->intent(id);
      if (!intent) continue;
      const DeviceProtectionStatus status = mac_->protectionStatus("phone-1", id, now());
      if (status.which != DeviceProtectionStatus::Case::protectedUntil) continue;
      ++protectedReadings;
      EXPECT_EQ(status.until, intent->endsAt);
      const auto answered = answeredRevision_.find(id);
      ASSERT_NE(answered, answeredRevision_.end());
      EXPECT_EQ(answered->second, intent->revision);
    }
  }

  std::mt19937 random_;
  std::shared_ptr<FixedClock> clock_ = std::make_shared<FixedClock>(kTestNow);
  std::shared_ptr<InMemoryCloudRecordDatabase> database_ = [] {
    auto database = std::make_shared<InMemoryCloudRecordDatabase>();
    database->givesEveryVersion = true;
    return database;
  }();
  std::shared_ptr<UnreliableDelivery> macDelivery_;
  std::shared_ptr<UnreliableDelivery> phoneDelivery_;
  std::unique_ptr<CrossDeviceSessionCoordinator> mac_;
  std::unique_ptr<CrossDeviceSessionCoordinator> phone_;
  std::map<Uuid, PlannedSession> sessions_;
  std::optional<PlannedSession> running_;
  std::map<Uuid, std::optional<std::int64_t>> answeredRevision_;
};

TEST(CrossDeviceConvergenceTest, MacAndIPhoneAgreeAfterUnreliableDeliveryUnderEveryRandomSchedule) {
  constexpr unsigned kSchedules = 1000;
  int protectedReadings = 0;
  int strictSessions = 0;
  for (unsigned seed = 1; seed <= kSchedules; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Simulation simulation(seed);
    simulation.run(40);
    simulation.deliverEverything();
    simulation.checkConverged();
    protectedReadings += simulation.protectedReadings;
    strictSessions += simulation.strictSessions;
    if (::testing::Test::HasFailure()) break;
  }
  EXPECT_GT(protectedReadings, 1000);
  EXPECT_GT(strictSessions, 1000);
}

}  // namespace
}  // namespace brindlet
