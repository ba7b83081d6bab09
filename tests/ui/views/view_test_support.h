// SPDX-License-Identifier: MIT
#pragma once
// Finding and pressing a window's controls by their template ids, as a person would.
#include <QTest>

#include "../qt_helpers.h"
#include "ui/qt/template_builder.h"

namespace vntts::ui::test {

template <class T = QWidget> T* Control(const QWidget& window, int id) {
  return qobject_cast<T*>(FindControl(window, id));
}

inline void Press(const QWidget& window, int id) {
  QWidget* button = FindControl(window, id);
  ASSERT_NE(button, nullptr) << id;
  ASSERT_TRUE(button->isEnabled()) << id;
  QTest::mouseClick(button, Qt::LeftButton);
}

} // namespace vntts::ui::test
