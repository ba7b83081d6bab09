// SPDX-License-Identifier: MIT
#pragma once
// For Qt programs that use the windows through the library: finding a shown window by its
// object name and a control by its template id.
#include <QAbstractButton>
#include <QApplication>
#include <QWidget>

namespace vntts::ui::host {

inline QWidget* Window(const char* name) {
  for (QWidget* w : QApplication::topLevelWidgets())
    if (w->objectName() == QLatin1String(name) && w->isVisible()) return w;
  return nullptr;
}

inline QAbstractButton* Button(QWidget* window, int id) {
  return window->findChild<QAbstractButton*>(QStringLiteral("control_%1").arg(id));
}

} // namespace vntts::ui::host
