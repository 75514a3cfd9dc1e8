#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace brindlet::ui {

/// The icon in the SVG file `svgFile` drawn at `pixels`; its alpha channel is the icon's shape.
/// A null image when the file holds no SVG. The build draws the usual sizes ahead with this same
/// function, so an icon looks the same whichever way it was drawn.
[[nodiscard]] QImage drawIconShape(const QString& svgFile, QSize pixels);

/// The shape of the bundled icon `symbol` as the build drew it ahead at `pixels`, in the same
/// format as drawIconShape gives; a null image for a size the build did not draw.
[[nodiscard]] QImage preparedIconShape(const QString& symbol, QSize pixels);

/// The name, within the icon resources, of the shape of `symbol` drawn ahead at `side` pixels.
/// The shapes of one side sit together, so that a screen's icons are read from a few pages.
[[nodiscard]] QString preparedShapeName(const QString& symbol, int side);

}  // namespace brindlet::ui
