// Draws the bundled icons ahead at the sizes the screens use, as the app would draw them, and
// writes each one's coverage, one byte per pixel, row after row:
//
//   brindlet_icon_masks OUTPUT_FOLDER SIDE... -- SVG_FILE...
//
// The shape of "{symbol}.svg" at SIDE pixels goes to "masks/{SIDE}/{symbol}" in the output folder.
// The app then reads these instead of parsing the SVG when it first shows an icon.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QStringList>
#include <cstdio>

#include "IconShape.h"

namespace {

bool writeMask(const QImage& shape, const QString& path) {
  const QImage alpha = shape.convertToFormat(QImage::Format_Alpha8);
  QFile out(path);
  if (!out.open(QIODevice::WriteOnly)) return false;
  for (int y = 0; y < alpha.height(); ++y) {
    const auto* row = reinterpret_cast<const char*>(alpha.constScanLine(y));
    if (out.write(row, alpha.width()) != alpha.width()) return false;
  }
  return true;
}

}  // namespace

int main(int argc, char* argv[]) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication app(argc, argv);
  const QStringList arguments = QGuiApplication::arguments().mid(1);
  const auto separator = arguments.indexOf(QStringLiteral("--"));
  if (arguments.size() < 2 || separator < 2) {
    std::fputs("usage: brindlet_icon_masks OUTPUT_FOLDER SIDE... -- SVG_FILE...\n", stderr);
    return 2;
  }
  const QString folder = arguments.first();
  const QStringList sides = arguments.mid(1, separator - 1);
  for (const QString& svgFile : arguments.mid(separator + 1)) {
    const QString symbol = QFileInfo(svgFile).completeBaseName();
    for (const QString& side : sides) {
      const int pixels = side.toInt();
      const QImage shape = brindlet::ui::drawIconShape(svgFile, QSize(pixels, pixels));
      const QString path = folder + '/' + brindlet::ui::preparedShapeName(symbol, pixels);
      if (shape.isNull() || !QDir().mkpath(QFileInfo(path).path()) || !writeMask(shape, path)) {
        std::fprintf(stderr, "brindlet_icon_masks: could not draw %s at %d pixels\n",
                     qPrintable(svgFile), pixels);
        return 1;
      }
    }
  }
  return 0;
}
