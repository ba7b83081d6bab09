// SPDX-License-Identifier: MIT
#pragma once
// Builds a window's controls from its template: one widget per control, in template order (the
// tab order), at the template's rectangle converted from dialog units with the template font's
// metrics. Each widget carries its control id, so that views and tests find it by id.
#include <QDialog>
#include <QFont>
#include <QRect>
#include <map>

#include "ui/dialog_template.h"

namespace vntts::ui {

// Dialog units to pixels for one font: a horizontal unit is a quarter of the average width of
// the letters, a vertical unit an eighth of the line height.
class DialogUnits {
public:
  explicit DialogUnits(const QFont& font);
  int X(int units) const { return Scale(units, base_x_, 4); }
  int Y(int units) const { return Scale(units, base_y_, 8); }
  QRect Rect(const DialogRect& r) const { return {X(r.x), Y(r.y), X(r.width), Y(r.height)}; }

private:
  static int Scale(int units, int base, int divisor) {
    return (units * base + divisor / 2) / divisor;
  }
  int base_x_ = 0;
  int base_y_ = 0;
};

struct BuiltDialog {
  QFont font;
  std::map<int, QWidget*> controls; // by id; labels and frames (kStaticId) are not listed
};

// Gives `dialog` its caption, font, fixed size and controls.
BuiltDialog BuildDialog(const DialogTemplate& dialog_template, QDialog& dialog);

// The control with this id under `parent`, or null.
QWidget* FindControl(const QWidget& parent, int id);

// The property that carries a control's id.
inline constexpr const char* kControlIdProperty = "controlId";

} // namespace vntts::ui
