#include "BlockingScreen.h"

#include <algorithm>
#include <iterator>

#include "UiTexts.h"
#include "app/AppModel.h"

namespace brindlet::ui {
namespace {

// The picker's order of modes: the forgiving one first.
constexpr SessionMode kModes[] = {SessionMode::flexible, SessionMode::strict};

}  // namespace

// ---- DomainRuleListModel ----

DomainRuleListModel::DomainRuleListModel(QObject* parent)
    : RowListModel({"ruleId", "domain", "isEnabled"}, parent) {}

QVariant DomainRuleListModel::field(std::size_t index, int column) const {
  const DomainRuleRow& row = rows_[index];
  switch (column) {
    case 0:
      return row.ruleId;
    case 1:
      return row.domain;
    case 2:
      return row.isEnabled;
    default:
      return {};
  }
}

void DomainRuleListModel::setRows(std::vector<DomainRuleRow> rows) {
  replaceRows(rows_, std::move(rows), &DomainRuleRow::ruleId);
}

// ---- BlockingScreen ----

BlockingScreen::BlockingScreen(Dashboard& dashboard, QObject* parent)
    : ScreenModel(dashboard, parent) {
  domainInput_ = qs(state().domainInput);
  refresh();
}

BlockingScreen* BlockingScreen::create(QQmlEngine*, QJSEngine*) {
  return new BlockingScreen(*Dashboard::instance());
}

void BlockingScreen::refresh() {
  std::vector<DomainRuleRow> rows;
  for (const DomainRule& rule : state().selectedGroup().rules) {
    rows.push_back({.ruleId = qs(rule.id.uppercaseText()),
                    .domain = qs(rule.domain),
                    .isEnabled = rule.isEnabled});
  }
  rules_.setRows(std::move(rows));

  // Typing runs ahead of the model; its text is taken once it has caught up with the field, which
  // is how a domain that was added empties the field again.
  if (dashboard().host().publishedSequence() >= domainInputSequence_) {
    const QString published = qs(state().domainInput);
    if (published != domainInput_) {
      domainInput_ = published;
      emit domainInputChanged();
    }
  }
}

QString BlockingScreen::title() const {
  return state().protectionStatus == ProtectionStatus::active ? QStringLiteral("Focus Active")
                                                              : QStringLiteral("Website Blocking");
}

QString BlockingScreen::countdown() const { return qs(state().countdown()); }

QString BlockingScreen::sessionHeading() const {
  const auto& session = state().activeSession;
  if (!session) return {};
  return session->mode == SessionMode::strict ? QStringLiteral("Strict session")
                                              : QStringLiteral("Flexible session");
}

QString BlockingScreen::sessionGroupName() const {
  // The session's own copy: a rename after the start doesn't reach the session in force.
  const auto& session = state().activeSession;
  return session ? qs(session->group.name) : QString();
}

bool BlockingScreen::canEndSession() const {
  const auto& session = state().activeSession;
  return session && session->mode == SessionMode::flexible;
}

QStringList BlockingScreen::durationTitles() const {
  QStringList titles;
  for (const DurationChoice choice : kAllDurationChoices)
    titles.push_back(qs(brindlet::title(choice)));
  return titles;
}

int BlockingScreen::durationIndex() const {
  const auto* found = std::find(std::begin(kAllDurationChoices), std::end(kAllDurationChoices),
                                state().durationChoice);
  return found == std::end(kAllDurationChoices)
             ? -1
             : static_cast<int>(std::distance(std::begin(kAllDurationChoices), found));
}

bool BlockingScreen::isCustomDuration() const {
  return state().durationChoice == DurationChoice::custom;
}

int BlockingScreen::customMinutes() const { return static_cast<int>(state().customMinutes); }

QString BlockingScreen::customMinutesText() const {
  return QStringLiteral("%1 minutes").arg(state().customMinutes);
}

QStringList BlockingScreen::modeTitles() const {
  return {QStringLiteral("Flexible"), QStringLiteral("Strict")};
}

int BlockingScreen::modeIndex() const {
  return state().selectedMode == SessionMode::strict ? 1 : 0;
}

bool BlockingScreen::locked() const {
  const auto& session = state().activeSession;
  return session && session->mode == SessionMode::strict;
}

QString BlockingScreen::groupName() const { return qs(state().selectedGroup().name); }

void BlockingScreen::setDomainInput(const QString& text) {
  if (text == domainInput_) return;
  domainInput_ = text;
  domainInputSequence_ =
      post([value = text.toStdString()](AppModel& model) { model.setDomainInput(value); });
  emit domainInputChanged();
}

void BlockingScreen::chooseDuration(int index) {
  if (index < 0 || index >= static_cast<int>(std::size(kAllDurationChoices))) return;
  const DurationChoice choice = kAllDurationChoices[index];
  post([choice](AppModel& model) { model.setDurationChoice(choice); });
}

void BlockingScreen::stepCustomMinutes(int direction) {
  // Stepped from the model's own value, so that quick presses add up before the screen catches up.
  post([direction](AppModel& model) {
    const std::int64_t stepped =
        std::clamp<std::int64_t>(model.state().customMinutes + (direction < 0 ? -1 : 1),
                                 kMinimumCustomMinutes, kMaximumCustomMinutes);
    if (stepped != model.state().customMinutes) model.setCustomMinutes(stepped);
  });
}

void BlockingScreen::chooseMode(int index) {
  if (index < 0 || index >= static_cast<int>(std::size(kModes))) return;
  const SessionMode mode = kModes[index];
  post([mode](AppModel& model) { model.setSelectedMode(mode); });
}

void BlockingScreen::startBlocking() {
  post([](AppModel& model) { model.start(); });
}

void BlockingScreen::endSession() {
  post([](AppModel& model) { model.endFlexible(); });
}

std::optional<DomainRule> BlockingScreen::findRule(const QString& ruleId) const {
  for (const DomainRule& rule : state().selectedGroup().rules) {
    if (qs(rule.id.uppercaseText()) == ruleId) return rule;
  }
  return std::nullopt;
}

void BlockingScreen::setRuleEnabled(const QString& ruleId, bool enabled) {
  const std::optional<DomainRule> rule = findRule(ruleId);
  if (!rule) return;
  post([rule = *rule, enabled](AppModel& model) { model.setEnabled(rule, enabled); });
}

void BlockingScreen::removeRule(const QString& ruleId) {
  const std::optional<DomainRule> rule = findRule(ruleId);
  if (!rule) return;
  post([rule = *rule](AppModel& model) { model.remove(rule); });
}

void BlockingScreen::addDomain() {
  post([](AppModel& model) { model.addDomain(); });
}

}  // namespace brindlet::ui
