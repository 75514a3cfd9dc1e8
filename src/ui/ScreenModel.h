#pragma once

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <cstdint>

#include "Dashboard.h"
#include "ModelHost.h"
#include "app/AppModelState.h"

namespace brindlet::ui {

/// The common ground of the screens' QML models: each reads the state the dashboard shows, so
/// that every screen agrees on one moment, and turns its controls into jobs for the model.
/// `changed()` follows every state the dashboard presents.
class ScreenModel : public QObject {
  Q_OBJECT
  // Known to QML only as the base of the screens, so that their signal is typed there.
  QML_ANONYMOUS

 public:
  explicit ScreenModel(Dashboard& dashboard, QObject* parent = nullptr);

 signals:
  void changed();

 protected:
  [[nodiscard]] const AppModelState& state() const { return dashboard_.shownState(); }
  [[nodiscard]] Dashboard& dashboard() const { return dashboard_; }
  /// Queues a job for the model and returns at once.
  std::uint64_t post(ModelHost::Job job) { return dashboard_.host().post(std::move(job)); }
  /// Brings what the screen derives from the state up to date, before `changed()` is emitted.
  virtual void refresh() {}

 private:
  void onDashboardChanged();

  Dashboard& dashboard_;
};

}  // namespace brindlet::ui
