// SPDX-License-Identifier: MIT
#pragma once
// A button drawn with an image per state: up, down (pressed), focused and disabled. It takes
// the size of its up image once the images are loaded. Its caption is not drawn; it still gives
// the button its keyboard mnemonic, and the window's logic reads it (Pause or Resume).
#include <QAbstractButton>
#include <QPixmap>

#include "ui/resources.h"

namespace vntts::ui {

class BitmapButton : public QAbstractButton {
public:
  explicit BitmapButton(const QString& caption, QWidget* parent = nullptr);

  // Loads the set's images by their resource names and sizes the button to the up image.
  // False when the up image is missing (the button then draws its caption instead).
  bool LoadBitmaps(const BitmapSet& set);

  QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  const QPixmap& Current() const;

  QPixmap up_, down_, focused_, disabled_;
};

// An image stored under a resource name ("IDB_PLAYU,"), or a null pixmap.
QPixmap LoadBitmapResource(std::string_view name);

} // namespace vntts::ui
