// SPDX-License-Identifier: MIT
#include "ui/qt/fonts.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QList>
#include <QStringList>
#include <array>

namespace vntts::ui {
namespace {

constexpr int kEditCellHeight = 19;

bool Installed(const QString& face) {
  return QFontDatabase::families().contains(face, Qt::CaseInsensitive);
}

bool CoversVietnamese(const QString& face) {
  return QFontDatabase::writingSystems(face).contains(QFontDatabase::Vietnamese);
}

} // namespace

QString ResolveFace(std::string_view face) {
  const QString wanted = QString::fromUtf8(face.data(), static_cast<qsizetype>(face.size()));
  if (Installed(wanted) && CoversVietnamese(wanted)) return wanted;
  const bool sans = wanted.contains(QLatin1String("Sans"), Qt::CaseInsensitive);
  const std::array<const char*, 3> serif_faces = {"DejaVu Serif", "Noto Serif", "Liberation Serif"};
  const std::array<const char*, 3> sans_faces = {"DejaVu Sans", "Noto Sans", "Liberation Sans"};
  for (const char* candidate : sans ? sans_faces : serif_faces)
    if (Installed(QString::fromLatin1(candidate)) &&
        CoversVietnamese(QString::fromLatin1(candidate)))
      return QString::fromLatin1(candidate);
  for (const QString& any : QFontDatabase::families(QFontDatabase::Vietnamese))
    return any;
  return wanted; // nothing better: let the font engine choose
}

QFont TemplateFont(std::string_view face, int point_size) {
  QFont font(ResolveFace(face));
  font.setPixelSize((point_size * 96 + 36) / 72);
  return font;
}

QFont EditFont() {
  QFont font(ResolveFace("VNI-Centur"));
  font.setWeight(QFont::Normal);
  // The largest size whose lines fit the 19-pixel cell.
  int pixels = kEditCellHeight;
  for (; pixels > 8; --pixels) {
    font.setPixelSize(pixels);
    if (QFontMetrics(font).height() <= kEditCellHeight) break;
  }
  return font;
}

} // namespace vntts::ui
