#include "ScreenModel.h"

namespace brindlet::ui {

ScreenModel::ScreenModel(Dashboard& dashboard, QObject* parent)
    : QObject(parent), dashboard_(dashboard) {
  connect(&dashboard_, &Dashboard::changed, this, &ScreenModel::onDashboardChanged);
}

void ScreenModel::onDashboardChanged() {
  refresh();
  emit changed();
}

}  // namespace brindlet::ui
