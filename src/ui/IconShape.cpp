#include "IconShape.h"

#include <QImageReader>
#include <QResource>
#include <cstring>

namespace brindlet::ui {

QImage drawIconShape(const QString& svgFile, QSize pixels) {
  // Through Qt's image plugin for SVG, which is loaded the first time an icon needs it: the app
  // itself then doesn't link the SVG module, which most runs never use.
  QImageReader reader(svgFile, "svg");
  reader.setScaledSize(pixels);
  QImage shape = reader.read();
  if (shape.isNull()) return {};
  return shape.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QString preparedShapeName(const QString& symbol, int side) {
  return QStringLiteral("masks/%1/%2").arg(side).arg(symbol);
}

QImage preparedIconShape(const QString& symbol, QSize pixels) {
  const int side = pixels.width();
  if (pixels.height() != side) return {};
  const QResource mask(QStringLiteral(":/icons/") + preparedShapeName(symbol, side));
  if (!mask.isValid() || mask.compressionAlgorithm() != QResource::NoCompression ||
      mask.size() != qint64(side) * side) {
    return {};
  }
  QImage alpha(pixels, QImage::Format_Alpha8);
  for (int y = 0; y < side; ++y) {
    std::memcpy(alpha.scanLine(y), mask.data() + qsizetype(y) * side, side);
  }
  return alpha.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

}  // namespace brindlet::ui
