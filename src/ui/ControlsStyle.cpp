#include "ControlsStyle.h"

#include <QByteArray>
#include <QtGlobal>

namespace brindlet::ui {

void chooseControlsStyle() { qputenv("QT_QUICK_CONTROLS_STYLE", QByteArrayLiteral("Basic")); }

}  // namespace brindlet::ui
