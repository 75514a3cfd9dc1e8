#pragma once

#include <QtQml/qqmlregistration.h>

#include <QColor>
#include <QObject>
#include <QString>

namespace brindlet::ui {

/// The shared looks of every screen: colours, type sizes, spacing, radii and the card decoration.
/// Nearly every binding of every screen reads it, so it is made of constants the QML compiler
/// reads directly; as a QML file it would be compiled and made before the window's first frame.
class Theme : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON
  Q_PROPERTY(QColor background MEMBER background CONSTANT)
  Q_PROPERTY(QColor sidebar MEMBER sidebar CONSTANT)
  Q_PROPERTY(QColor surface MEMBER surface CONSTANT)
  Q_PROPERTY(QColor primary MEMBER primary CONSTANT)
  Q_PROPERTY(QColor secondary MEMBER secondary CONSTANT)
  Q_PROPERTY(QColor faint MEMBER faint CONSTANT)
  Q_PROPERTY(QColor accent MEMBER accent CONSTANT)
  Q_PROPERTY(QColor accentText MEMBER accentText CONSTANT)
  Q_PROPERTY(QColor red MEMBER red CONSTANT)
  Q_PROPERTY(QColor orange MEMBER orange CONSTANT)
  Q_PROPERTY(QColor blue MEMBER blue CONSTANT)
  Q_PROPERTY(QColor green MEMBER green CONSTANT)
  Q_PROPERTY(QColor grey MEMBER grey CONSTANT)
  Q_PROPERTY(QColor control MEMBER control CONSTANT)
  Q_PROPERTY(QColor controlHover MEMBER controlHover CONSTANT)
  Q_PROPERTY(QColor backgroundShade MEMBER backgroundShade CONSTANT)
  Q_PROPERTY(QColor cardFill MEMBER cardFill CONSTANT)
  Q_PROPERTY(QColor cardOutline MEMBER cardOutline CONSTANT)
  Q_PROPERTY(QColor rowFill MEMBER rowFill CONSTANT)
  Q_PROPERTY(int cardRadius MEMBER cardRadius CONSTANT)
  Q_PROPERTY(int rowRadius MEMBER rowRadius CONSTANT)
  Q_PROPERTY(int controlRadius MEMBER controlRadius CONSTANT)
  Q_PROPERTY(int padding MEMBER padding CONSTANT)
  Q_PROPERTY(int spacing MEMBER spacing CONSTANT)
  Q_PROPERTY(int smallSpacing MEMBER smallSpacing CONSTANT)
  Q_PROPERTY(int contentMaxWidth MEMBER contentMaxWidth CONSTANT)
  Q_PROPERTY(int captionSize MEMBER captionSize CONSTANT)
  Q_PROPERTY(int smallSize MEMBER smallSize CONSTANT)
  Q_PROPERTY(int bodySize MEMBER bodySize CONSTANT)
  Q_PROPERTY(int headlineSize MEMBER headlineSize CONSTANT)
  Q_PROPERTY(int displaySize MEMBER displaySize CONSTANT)
  Q_PROPERTY(int titleSize MEMBER titleSize CONSTANT)

 public:
  /// The colour of secondary text, and of icons given no colour of their own.
  static constexpr QColor kSecondary{0x6a, 0x72, 0x85};

  using QObject::QObject;

  /// `base` at `opacity`, whatever opacity `base` had.
  Q_INVOKABLE static QColor tint(const QColor& base, double opacity);
  /// The colour that stands for a task's priority.
  Q_INVOKABLE QColor priorityColor(const QString& priority) const;

  const QColor background{0xf5, 0xf6, 0xfa};
  const QColor sidebar{0xec, 0xee, 0xf4};
  const QColor surface{0xff, 0xff, 0xff};
  const QColor primary{0x1c, 0x21, 0x30};
  const QColor secondary = kSecondary;
  const QColor faint{0xa9, 0xaf, 0xbd};
  const QColor accent{0x45, 0x63, 0xe6};
  const QColor accentText{0xff, 0xff, 0xff};
  const QColor red{0xe0, 0x45, 0x4b};
  const QColor orange{0xec, 0x8a, 0x16};
  const QColor blue{0x3a, 0x79, 0xe8};
  const QColor green{0x2f, 0xa0, 0x5a};
  const QColor grey{0x8c, 0x93, 0xa3};
  const QColor control{0xe8, 0xeb, 0xf2};
  const QColor controlHover{0xdd, 0xe1, 0xea};
  // Where a screen's background fades to at its foot.
  const QColor backgroundShade = mixed(background, accent, 0.05);
  // The card decoration: a translucent surface in a rounded rectangle with a faint outline.
  const QColor cardFill = QColor::fromRgbF(1, 1, 1, 0.82F);
  const QColor cardOutline = QColor::fromRgbF(0.11F, 0.13F, 0.19F, 0.09F);
  const QColor rowFill = QColor::fromRgbF(0.11F, 0.13F, 0.19F, 0.035F);
  const int cardRadius = 14;
  const int rowRadius = 10;
  const int controlRadius = 8;
  const int padding = 18;
  const int spacing = 12;
  const int smallSpacing = 6;
  const int contentMaxWidth = 840;
  // The type scale. Text is in normal weight, DemiBold where it stands out in a run of body text,
  // and bold in headings: each size and weight is a font the window loads before it first shows,
  // so the scale stays short.
  const int captionSize = 11;
  const int smallSize = 12;
  const int bodySize = 14;
  const int headlineSize = 17;
  const int displaySize = 20;
  const int titleSize = 28;

 private:
  /// `base` with `share` of `other` mixed in.
  static QColor mixed(const QColor& base, const QColor& other, double share);
};

}  // namespace brindlet::ui
