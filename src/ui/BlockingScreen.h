#pragma once

#include <QtQml/qqmlregistration.h>

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

#include "RowListModel.h"
#include "ScreenModel.h"
#include "records/DomainRule.h"

class QQmlEngine;
class QJSEngine;

namespace brindlet::ui {

/// One domain of the group on show, as the editor lists it.
struct DomainRuleRow {
  QString ruleId{};
  QString domain{};
  bool isEnabled = true;

  friend bool operator==(const DomainRuleRow&, const DomainRuleRow&) = default;
};

/// The domains of the group on show, in the user's order. A new list only touches the rows that
/// differ, so that a heartbeat doesn't rebuild the switches under the pointer.
class DomainRuleListModel : public brindlet::ui::RowListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Domain lists come from the blocking screen.")

 public:
  enum Role {
    RuleIdRole = Qt::UserRole + 1,
    DomainRole,
    IsEnabledRole,
  };

  explicit DomainRuleListModel(QObject* parent = nullptr);

  [[nodiscard]] int count() const override { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const std::vector<DomainRuleRow>& rows() const { return rows_; }
  void setRows(std::vector<DomainRuleRow> rows);

 private:
  [[nodiscard]] QVariant field(std::size_t row, int column) const override;

  std::vector<DomainRuleRow> rows_;
};

/// What the Blocking screen shows: the setup or running card of a blocking session and the selected
/// group's domains.
class BlockingScreen : public brindlet::ui::ScreenModel {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

  // ---- title ----
  Q_PROPERTY(QString title READ title NOTIFY changed)

  // ---- running card ----
  Q_PROPERTY(bool hasSession READ hasSession NOTIFY changed)
  Q_PROPERTY(QString countdown READ countdown NOTIFY changed)
  Q_PROPERTY(QString sessionHeading READ sessionHeading NOTIFY changed)
  Q_PROPERTY(QString sessionGroupName READ sessionGroupName NOTIFY changed)
  Q_PROPERTY(bool canEndSession READ canEndSession NOTIFY changed)

  // ---- setup card ----
  Q_PROPERTY(QStringList durationTitles READ durationTitles CONSTANT)
  Q_PROPERTY(int durationIndex READ durationIndex NOTIFY changed)
  Q_PROPERTY(bool isCustomDuration READ isCustomDuration NOTIFY changed)
  Q_PROPERTY(int customMinutes READ customMinutes NOTIFY changed)
  Q_PROPERTY(QString customMinutesText READ customMinutesText NOTIFY changed)
  Q_PROPERTY(QStringList modeTitles READ modeTitles CONSTANT)
  Q_PROPERTY(int modeIndex READ modeIndex NOTIFY changed)

  // ---- domain editor ----
  Q_PROPERTY(bool locked READ locked NOTIFY changed)
  Q_PROPERTY(QString groupName READ groupName NOTIFY changed)
  Q_PROPERTY(brindlet::ui::DomainRuleListModel* rules READ rules CONSTANT)
  Q_PROPERTY(QString domainInput READ domainInput WRITE setDomainInput NOTIFY domainInputChanged)

 public:
  /// The bounds of a custom session length, in minutes: one minute up to a whole day.
  static constexpr int kMinimumCustomMinutes = 1;
  static constexpr int kMaximumCustomMinutes = 1440;

  explicit BlockingScreen(Dashboard& dashboard, QObject* parent = nullptr);

  /// Made by the QML engine the first time a screen asks for it, over the one dashboard.
  static BlockingScreen* create(QQmlEngine* engine, QJSEngine* scriptEngine);

  [[nodiscard]] QString title() const;

  [[nodiscard]] bool hasSession() const { return state().activeSession.has_value(); }
  [[nodiscard]] QString countdown() const;
  [[nodiscard]] QString sessionHeading() const;
  [[nodiscard]] QString sessionGroupName() const;
  [[nodiscard]] bool canEndSession() const;

  [[nodiscard]] QStringList durationTitles() const;
  [[nodiscard]] int durationIndex() const;
  [[nodiscard]] bool isCustomDuration() const;
  [[nodiscard]] int customMinutes() const;
  [[nodiscard]] QString customMinutesText() const;
  [[nodiscard]] QStringList modeTitles() const;
  [[nodiscard]] int modeIndex() const;

  /// Only a strict session keeps the list from being edited; a flexible one leaves it open.
  [[nodiscard]] bool locked() const;
  [[nodiscard]] QString groupName() const;
  [[nodiscard]] DomainRuleListModel* rules() { return &rules_; }
  [[nodiscard]] QString domainInput() const { return domainInput_; }
  void setDomainInput(const QString& text);

  // ---- setup controls ----
  Q_INVOKABLE void chooseDuration(int index);
  /// One minute up or down, held within the bounds above.
  Q_INVOKABLE void stepCustomMinutes(int direction);
  Q_INVOKABLE void chooseMode(int index);
  Q_INVOKABLE void startBlocking();
  Q_INVOKABLE void endSession();

  // ---- domain controls ----
  Q_INVOKABLE void setRuleEnabled(const QString& ruleId, bool enabled);
  Q_INVOKABLE void removeRule(const QString& ruleId);
  Q_INVOKABLE void addDomain();

 signals:
  void domainInputChanged();

 protected:
  void refresh() override;

 private:
  [[nodiscard]] std::optional<DomainRule> findRule(const QString& ruleId) const;

  DomainRuleListModel rules_;
  QString domainInput_;
  // The job that carried the last keystroke; the model's text is taken once it has run.
  std::uint64_t domainInputSequence_ = 0;
};

}  // namespace brindlet::ui
