// SPDX-License-Identifier: MIT
#pragma once
// DialogView over the widgets a template built: every call finds the widget by id and does
// what the id's kind of control does.
#include <QDialog>
#include <QTimer>
#include <functional>
#include <map>

#include "ui/dialog_view.h"
#include "ui/qt/template_builder.h"

namespace vntts::ui {

class WidgetView final : public DialogView {
public:
  // on_timer receives the id of each timer tick.
  WidgetView(QDialog& dialog, const BuiltDialog& built, std::function<void(int)> on_timer);

  void Enable(int id, bool enabled) override;
  bool IsEnabled(int id) const override;
  std::u16string Text(int id) const override;
  void SetText(int id, std::u16string_view text) override;
  bool IsChecked(int id) const override;
  void SetChecked(int id, bool checked) override;
  TextSelection Selection(int id) const override;
  void Select(int id, TextSelection selection) override;
  void SetRange(int id, int minimum, int maximum) override;
  int Minimum(int id) const override;
  int Maximum(int id) const override;
  int Position(int id) const override;
  void SetPosition(int id, int position) override;
  void AddItem(int id, std::u16string_view text, std::uint32_t data) override;
  int CurrentIndex(int id) const override;
  void SetCurrentIndex(int id, int index) override;
  std::optional<std::uint32_t> CurrentData(int id) const override;
  void StartTimer(int timer_id, int milliseconds) override;
  void KillTimer(int timer_id) override;
  void EndDialog(int result) override;

private:
  QWidget* Widget(int id) const;
  template <class T> T* As(int id) const { return qobject_cast<T*>(Widget(id)); }

  QDialog& dialog_;
  std::map<int, QWidget*> controls_;
  std::function<void(int)> on_timer_;
  std::map<int, QTimer*> timers_;
};

// A button whose caption says what it does (Pause, then Resume) carries this property, so that
// a screen reader announces the caption it has now.
inline constexpr const char* kNameFromCaption = "nameFromCaption";

QString ToQString(std::u16string_view text);
std::u16string ToU16(const QString& text);

} // namespace vntts::ui
