// SPDX-License-Identifier: MIT
#pragma once
// For Qt programs and tests that use the windows as a person does: finding a shown window and a
// control, answering the next message box or file dialog, clicking through the folder tree.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>
#include <QTreeWidget>
#include <functional>

namespace vntts::ui::test {

inline QWidget* Window(const char* name) {
  for (QWidget* w : QApplication::topLevelWidgets())
    if (w->objectName() == QLatin1String(name) && w->isVisible()) return w;
  return nullptr;
}

// The control a template id became (a button unless told otherwise).
template <class T = QAbstractButton> T* Child(QWidget* window, int id) {
  return window->findChild<T*>(QStringLiteral("control_%1").arg(id));
}

// Calls `act` with the next modal widget of type T that opens, once.
template <class T> void OnNextModal(std::function<void(T*)> act) {
  auto* poll = new QTimer;
  QObject::connect(poll, &QTimer::timeout, poll, [poll, act] {
    auto* modal = qobject_cast<T*>(QApplication::activeModalWidget());
    if (!modal) return;
    poll->stop();
    poll->deleteLater();
    act(modal);
  });
  poll->start(20);
}

// What a message box said.
struct SeenBox {
  QString text, title;
  QMessageBox::Icon icon = QMessageBox::NoIcon;
};

// Answers the next message box with `answer`, noting what it showed in `seen` (when given)
// after `look` (when given) has seen it open.
inline void AnswerNextBox(SeenBox* seen, QMessageBox::StandardButton answer,
                          std::function<void(QMessageBox*)> look = {}) {
  OnNextModal<QMessageBox>([seen, answer, look](QMessageBox* box) {
    if (seen) *seen = {box->text(), box->windowTitle(), box->icon()};
    if (look) look(box);
    box->button(answer)->click();
  });
}

// Chooses `path` in the next file dialog that opens and accepts it.
inline void ChooseInNextFileDialog(const QString& path) {
  OnNextModal<QFileDialog>([path](QFileDialog* dialog) {
    // A proposed name that exists is selected in the file list, and a selection there wins
    // over the name box: clear it, then type the path.
    for (auto* list : dialog->findChildren<QAbstractItemView*>())
      list->clearSelection();
    if (auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
      name->setText(path);
    else
      dialog->selectFile(path);
    static_cast<QDialog*>(dialog)->accept();
  });
}

// Opens the folder tree down to the absolute `path`, as a person clicks through it, and selects
// it; nullptr when a part is missing.
inline QTreeWidgetItem* SelectFolder(QTreeWidget& tree, const QString& path) {
  QTreeWidgetItem* item = tree.topLevelItem(0);
  if (!item || item->text(0) != QLatin1String("/")) return nullptr;
  for (const QString& part : path.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
    tree.expandItem(item);
    QTreeWidgetItem* next = nullptr;
    for (int i = 0; i < item->childCount() && !next; ++i)
      if (item->child(i)->text(0) == part) next = item->child(i);
    if (!next) return nullptr;
    item = next;
  }
  tree.setCurrentItem(item);
  tree.scrollToItem(item);
  return item;
}

} // namespace vntts::ui::test
