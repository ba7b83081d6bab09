// SPDX-License-Identifier: MIT
#include "ui/qt/bitmap_button.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace vntts::ui {

QPixmap LoadBitmapResource(std::string_view name) {
  if (name.empty()) return {};
  return QPixmap(QStringLiteral(":/bitmaps/") +
                 QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
}

BitmapButton::BitmapButton(const QString& caption, QWidget* parent) : QAbstractButton(parent) {
  setText(caption);
  setFocusPolicy(Qt::StrongFocus);
}

bool BitmapButton::LoadBitmaps(const BitmapSet& set) {
  up_ = LoadBitmapResource(set.up);
  down_ = LoadBitmapResource(set.down);
  focused_ = LoadBitmapResource(set.focused);
  disabled_ = LoadBitmapResource(set.disabled);
  if (up_.isNull()) return false;
  resize(up_.size());
  return true;
}

QSize BitmapButton::sizeHint() const {
  return up_.isNull() ? QSize(40, 20) : up_.size();
}

const QPixmap& BitmapButton::Current() const {
  if (!isEnabled() && !disabled_.isNull()) return disabled_;
  if (isDown() && !down_.isNull()) return down_;
  if (hasFocus() && !focused_.isNull()) return focused_;
  return up_;
}

void BitmapButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QPixmap& image = Current();
  if (!image.isNull()) {
    painter.drawPixmap(0, 0, image);
    return;
  }
  // Without images the button still shows what it does.
  QStyleOptionButton option;
  option.initFrom(this);
  option.text = text();
  if (isDown()) option.state |= QStyle::State_Sunken;
  style()->drawControl(QStyle::CE_PushButton, &option, &painter, this);
}

} // namespace vntts::ui
