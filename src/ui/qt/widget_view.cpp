// SPDX-License-Identifier: MIT
#include "ui/qt/widget_view.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSlider>
#include <QTextBlock>
#include <algorithm>

namespace vntts::ui {

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
  if (auto* edit = As<QPlainTextEdit>(id))
    edit->setPlainText(q);
  else if (auto* line = As<QLineEdit>(id))
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

} // namespace vntts::ui
