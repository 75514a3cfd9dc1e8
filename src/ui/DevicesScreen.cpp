#include "DevicesScreen.h"

namespace brindlet::ui {

DevicesScreen::DevicesScreen(Dashboard& dashboard, QObject* parent)
    : ScreenModel(dashboard, parent) {}

DevicesScreen* DevicesScreen::create(QQmlEngine*, QJSEngine*) {
  return new DevicesScreen(*Dashboard::instance());
}

}  // namespace brindlet::ui
