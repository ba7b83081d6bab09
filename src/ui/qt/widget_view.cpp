// SPDX-License-Identifier: MIT
#include "ui/qt/widget_view.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSlider>
#include <QTextBlock>
#include <QTreeWidget>
#include <algorithm>

namespace vntts::ui {
namespace {
// Set on an edit box while the program replaces its text, which no typing limit cuts.
constexpr const char* kSettingText = "settingText";
} // namespace

QString ToQString(std::u16string_view text) {
  return QString(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
}

std::u16string ToU16(const QString& text) {
  return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

WidgetView::WidgetView(QDialog& dialog, const BuiltDialog& built, std::function<void(int)> on_timer)
    : dialog_(dialog), controls_(built.controls), on_timer_(std::move(on_timer)) {}

QWidget* WidgetView::Widget(int id) const {
  const auto found = controls_.find(id);
  return found == controls_.end() ? nullptr : found->second;
}

void WidgetView::Enable(int id, bool enabled) {
  if (QWidget* w = Widget(id)) w->setEnabled(enabled);
}

bool WidgetView::IsEnabled(int id) const {
  const QWidget* w = Widget(id);
  return w && w->isEnabled();
}

std::u16string WidgetView::Text(int id) const {
  if (auto* edit = As<QPlainTextEdit>(id)) return ToU16(edit->toPlainText());
  if (auto* line = As<QLineEdit>(id)) return ToU16(line->text());
  if (auto* button = As<QAbstractButton>(id)) return ToU16(button->text());
  if (auto* label = As<QLabel>(id)) return ToU16(label->text());
  if (auto* box = As<QGroupBox>(id)) return ToU16(box->title());
  return {};
}

void WidgetView::SetText(int id, std::u16string_view text) {
  const QString q = ToQString(text);
  if (auto* edit = As<QPlainTextEdit>(id)) {
    edit->setProperty(kSettingText, true);
    edit->setPlainText(q);
    edit->setProperty(kSettingText, false);
  } else if (auto* line = As<QLineEdit>(id))
    line->setText(q);
  else if (auto* button = As<QAbstractButton>(id)) {
    button->setText(q);
    if (button->property(kNameFromCaption).toBool())
      button->setAccessibleName(QString(q).remove(QLatin1Char('&')));
  } else if (auto* label = As<QLabel>(id))
    label->setText(q);
  else if (auto* box = As<QGroupBox>(id))
    box->setTitle(q);
}

bool WidgetView::IsChecked(int id) const {
  const auto* button = As<QAbstractButton>(id);
  return button && button->isChecked();
}

void WidgetView::SetChecked(int id, bool checked) {
  if (auto* button = As<QAbstractButton>(id)) button->setChecked(checked);
}

TextSelection WidgetView::Selection(int id) const {
  if (auto* edit = As<QPlainTextEdit>(id)) {
    const QTextCursor cursor = edit->textCursor();
    return {cursor.selectionStart(), cursor.selectionEnd()};
  }
  return {};
}

void WidgetView::Select(int id, TextSelection selection) {
  auto* edit = As<QPlainTextEdit>(id);
  if (!edit) return;
  const int last = std::max(0, edit->document()->characterCount() - 1);
  QTextCursor cursor = edit->textCursor();
  cursor.setPosition(std::clamp(selection.start, 0, last));
  cursor.setPosition(std::clamp(selection.end, 0, last), QTextCursor::KeepAnchor);
  edit->setTextCursor(cursor);
  edit->ensureCursorVisible();
}

void WidgetView::SetRange(int id, int minimum, int maximum) {
  if (auto* slider = As<QSlider>(id)) {
    slider->setRange(minimum, maximum);
    // Trackbars step one unit per arrow key and a fifth of the range per page.
    slider->setSingleStep(1);
    slider->setPageStep(std::max(1, (maximum - minimum) / 5));
    slider->setTickInterval(std::max(1, maximum - minimum));
  }
}

int WidgetView::Minimum(int id) const {
  const auto* slider = As<QSlider>(id);
  return slider ? slider->minimum() : 0;
}

int WidgetView::Maximum(int id) const {
  const auto* slider = As<QSlider>(id);
  return slider ? slider->maximum() : 0;
}

int WidgetView::Position(int id) const {
  const auto* slider = As<QSlider>(id);
  return slider ? slider->value() : 0;
}

void WidgetView::SetPosition(int id, int position) {
  if (auto* slider = As<QSlider>(id)) slider->setValue(position); // clamps to the range
}

void WidgetView::AddItem(int id, std::u16string_view text, std::uint32_t data) {
  if (auto* combo = As<QComboBox>(id)) combo->addItem(ToQString(text), QVariant::fromValue(data));
}

int WidgetView::CurrentIndex(int id) const {
  const auto* combo = As<QComboBox>(id);
  return combo ? combo->currentIndex() : -1;
}

void WidgetView::SetCurrentIndex(int id, int index) {
  if (auto* combo = As<QComboBox>(id)) combo->setCurrentIndex(index);
}

std::optional<std::uint32_t> WidgetView::CurrentData(int id) const {
  const auto* combo = As<QComboBox>(id);
  if (!combo || combo->currentIndex() < 0) return std::nullopt;
  return combo->currentData().value<std::uint32_t>();
}

void WidgetView::StartTimer(int timer_id, int milliseconds) {
  QTimer*& timer = timers_[timer_id];
  if (!timer) {
    timer = new QTimer(&dialog_);
    QObject::connect(timer, &QTimer::timeout, &dialog_, [this, timer_id] { on_timer_(timer_id); });
  }
  timer->start(milliseconds);
}

void WidgetView::KillTimer(int timer_id) {
  if (const auto found = timers_.find(timer_id); found != timers_.end()) found->second->stop();
}

void WidgetView::EndDialog(int result) {
  dialog_.done(result);
}

void WidgetView::SetTextLimit(int id, int characters) {
  if (auto* line = As<QLineEdit>(id)) {
    line->setMaxLength(characters);
    return;
  }
  auto* edit = As<QPlainTextEdit>(id);
  if (!edit) return;
  // What a person types or pastes past the limit is cut off; text the program sets is not
  // (setPlainText replaces the whole document, which the limit lets through).
  QTextDocument* document = edit->document();
  QObject::connect(document, &QTextDocument::contentsChange, edit,
                   [edit, characters](int position, int removed, int added) {
                     const int length = edit->document()->characterCount() - 1;
                     if (added <= 0 || length <= characters ||
                         edit->property(kSettingText).toBool())
                       return;
                     (void)removed;
                     const int excess = std::min(added, length - characters);
                     QTextCursor cursor(edit->document());
                     cursor.setPosition(position + added - excess);
                     cursor.setPosition(position + added, QTextCursor::KeepAnchor);
                     cursor.removeSelectedText();
                   });
}

void WidgetView::SetFocus(int id) {
  if (QWidget* w = Widget(id)) w->setFocus();
}

void WidgetView::Repaint() {
  dialog_.repaint();
}

void WidgetView::InsertColumn(int id, int column, std::u16string_view title, int width_pixels) {
  auto* list = As<QTreeWidget>(id);
  if (!list) return;
  QTreeWidgetItem* header = list->headerItem();
  const int columns = std::max(list->columnCount(), column + 1);
  list->setColumnCount(columns);
  for (int c = columns - 1; c > column; --c)
    header->setText(c, header->text(c - 1));
  header->setText(column, ToQString(title));
  list->setColumnWidth(column, width_pixels);
}

int WidgetView::InsertRow(int id, int row, std::u16string_view text) {
  if (auto* box = As<QListWidget>(id)) {
    row = std::clamp(row, 0, box->count());
    box->insertItem(row, ToQString(text));
    return row;
  }
  if (auto* list = As<QTreeWidget>(id)) {
    row = std::clamp(row, 0, list->topLevelItemCount());
    auto* item = new QTreeWidgetItem;
    item->setText(0, ToQString(text));
    list->insertTopLevelItem(row, item);
    return row;
  }
  return -1;
}

bool WidgetView::SetCell(int id, int row, int column, std::u16string_view text) {
  if (auto* box = As<QListWidget>(id)) {
    QListWidgetItem* item = column == 0 ? box->item(row) : nullptr;
    if (item) item->setText(ToQString(text));
    return item != nullptr;
  }
  auto* list = As<QTreeWidget>(id);
  QTreeWidgetItem* item = list && row >= 0 ? list->topLevelItem(row) : nullptr;
  if (!item || column < 0 || column >= std::max(1, list->columnCount())) return false;
  item->setText(column, ToQString(text));
  return true;
}

std::u16string WidgetView::Cell(int id, int row, int column) const {
  if (auto* box = As<QListWidget>(id)) {
    const QListWidgetItem* item = column == 0 ? box->item(row) : nullptr;
    return item ? ToU16(item->text()) : std::u16string();
  }
  auto* list = As<QTreeWidget>(id);
  const QTreeWidgetItem* item = list && row >= 0 ? list->topLevelItem(row) : nullptr;
  return item ? ToU16(item->text(column)) : std::u16string();
}

int WidgetView::RowCount(int id) const {
  if (auto* box = As<QListWidget>(id)) return box->count();
  if (auto* list = As<QTreeWidget>(id)) return list->topLevelItemCount();
  return 0;
}

void WidgetView::RemoveRow(int id, int row) {
  if (auto* box = As<QListWidget>(id))
    delete box->takeItem(row);
  else if (auto* list = As<QTreeWidget>(id); list && row >= 0)
    delete list->takeTopLevelItem(row);
}

void WidgetView::RemoveAllRows(int id) {
  if (auto* box = As<QListWidget>(id)) box->clear();
  if (auto* list = As<QTreeWidget>(id)) list->clear();
}

std::vector<int> WidgetView::SelectedRows(int id) const {
  std::vector<int> rows;
  if (auto* box = As<QListWidget>(id))
    for (const QListWidgetItem* item : box->selectedItems())
      rows.push_back(box->row(item));
  if (auto* list = As<QTreeWidget>(id))
    for (QTreeWidgetItem* item : list->selectedItems())
      rows.push_back(list->indexOfTopLevelItem(item));
  std::sort(rows.begin(), rows.end());
  return rows;
}

int WidgetView::CurrentRow(int id) const {
  if (auto* box = As<QListWidget>(id)) {
    const QListWidgetItem* item = box->currentItem();
    return item && item->isSelected() ? box->row(item) : -1;
  }
  if (auto* list = As<QTreeWidget>(id)) {
    QTreeWidgetItem* item = list->currentItem();
    return item && item->isSelected() ? list->indexOfTopLevelItem(item) : -1;
  }
  return -1;
}

void WidgetView::SetCurrentRow(int id, int row) {
  if (auto* box = As<QListWidget>(id)) {
    box->clearSelection();
    if (QListWidgetItem* item = box->item(row)) {
      box->setCurrentItem(item, QItemSelectionModel::ClearAndSelect);
      box->scrollToItem(item);
    }
  } else if (auto* list = As<QTreeWidget>(id)) {
    list->clearSelection();
    if (QTreeWidgetItem* item = row >= 0 ? list->topLevelItem(row) : nullptr) {
      list->setCurrentItem(item, 0, QItemSelectionModel::ClearAndSelect);
      list->scrollToItem(item);
    }
  }
}

int WidgetView::InsertTreeItem(int id, int parent, std::u16string_view text, bool expandable) {
  auto* tree = As<QTreeWidget>(id);
  if (!tree) return 0;
  const auto parent_item = tree_items_.find(parent);
  auto* item = parent_item == tree_items_.end() ? new QTreeWidgetItem(tree)
                                                : new QTreeWidgetItem(parent_item->second);
  item->setText(0, ToQString(text));
  item->setChildIndicatorPolicy(expandable ? QTreeWidgetItem::ShowIndicator
                                           : QTreeWidgetItem::DontShowIndicatorWhenChildless);
  const int handle = static_cast<int>(tree_items_.size()) + 1;
  item->setData(0, Qt::UserRole, handle);
  tree_items_[handle] = item;
  return handle;
}

void WidgetView::SetTreeItemExpandable(int, int item, bool expandable) {
  if (const auto found = tree_items_.find(item); found != tree_items_.end())
    found->second->setChildIndicatorPolicy(expandable
                                               ? QTreeWidgetItem::ShowIndicator
                                               : QTreeWidgetItem::DontShowIndicatorWhenChildless);
}

int WidgetView::TreeItemHandle(const QTreeWidgetItem* item) {
  return item ? item->data(0, Qt::UserRole).toInt() : 0;
}

int WidgetView::SelectedTreeItem(int id) const {
  const auto* tree = As<QTreeWidget>(id);
  return tree ? TreeItemHandle(tree->currentItem()) : 0;
}

void WidgetView::SelectTreeItem(int id, int item) {
  auto* tree = As<QTreeWidget>(id);
  const auto found = tree_items_.find(item);
  if (tree && found != tree_items_.end()) tree->setCurrentItem(found->second);
}

} // namespace vntts::ui
