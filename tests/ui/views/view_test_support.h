// SPDX-License-Identifier: MIT
#pragma once
// Finding and pressing a window's controls by their template ids, as a person would.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <functional>
#include <string>

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

// What a message box said, and how it was answered.
struct SeenBox {
  QString text, title;
  QMessageBox::Icon icon = QMessageBox::NoIcon;
};

// Answers the next message box that opens with `answer`, noting what it showed.
inline void AnswerNextBox(SeenBox* seen, QMessageBox::StandardButton answer) {
  auto* poll = new QTimer;
  poll->setInterval(20);
  QObject::connect(poll, &QTimer::timeout, poll, [poll, seen, answer] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box) return;
    seen->text = box->text();
    seen->title = box->windowTitle();
    seen->icon = box->icon();
    box->button(answer)->click();
    poll->deleteLater();
  });
  poll->start();
}

} // namespace vntts::ui::test

namespace vntts::ui::test {

// Chooses `path` in the next file dialog that opens and accepts it.
inline void ChooseInNextFileDialog(const QString& path) {
  auto* poll = new QTimer;
  QObject::connect(poll, &QTimer::timeout, poll, [poll, path] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    if (!dialog) return;
    // A proposed name that exists is selected in the file list, and a selection there wins
    // over the name box: clear it, then type the path.
    for (auto* list : dialog->findChildren<QAbstractItemView*>())
      list->clearSelection();
    if (auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
      name->setText(path);
    else
      dialog->selectFile(path);
    static_cast<QDialog*>(dialog)->accept();
    poll->deleteLater();
  });
  poll->start(20);
}

} // namespace vntts::ui::test
