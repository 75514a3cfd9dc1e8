#include "BlockingScreen.h"

namespace brindlet::ui {

BlockingScreen::BlockingScreen(Dashboard& dashboard, QObject* parent)
    : ScreenModel(dashboard, parent) {}

BlockingScreen* BlockingScreen::create(QQmlEngine*, QJSEngine*) {
  return new BlockingScreen(*Dashboard::instance());
}

}  // namespace brindlet::ui
