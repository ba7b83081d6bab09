// SPDX-License-Identifier: MIT
#pragma once
// DialogView over the widgets a template built: every call finds the widget by id and does
// what the id's kind of control does.
#include <QDialog>
#include <QTimer>
#include <QTreeWidgetItem>
#include <functional>
#include <map>
#include <vector>

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

  void SetTextLimit(int id, int characters) override;
  void SetFocus(int id) override;
  void Repaint() override;

  void InsertColumn(int id, int column, std::u16string_view title, int width_pixels) override;
  int InsertRow(int id, int row, std::u16string_view text) override;
  bool SetCell(int id, int row, int column, std::u16string_view text) override;
  std::u16string Cell(int id, int row, int column) const override;
  int RowCount(int id) const override;
  void RemoveRow(int id, int row) override;
  void RemoveAllRows(int id) override;
  std::vector<int> SelectedRows(int id) const override;
  int CurrentRow(int id) const override;
  void SetCurrentRow(int id, int row) override;

  int InsertTreeItem(int id, int parent, std::u16string_view text, bool expandable) override;
  void SetTreeItemExpandable(int id, int item, bool expandable) override;
  int SelectedTreeItem(int id) const override;
  void SelectTreeItem(int id, int item) override;
  // The handle of a tree item (0 for none), for the views' signals.
  static int TreeItemHandle(const QTreeWidgetItem* item);

private:
  QWidget* Widget(int id) const;
  template <class T> T* As(int id) const { return qobject_cast<T*>(Widget(id)); }

  QDialog& dialog_;
  std::map<int, QWidget*> controls_;
  std::function<void(int)> on_timer_;
  std::map<int, QTimer*> timers_;
  std::map<int, QTreeWidgetItem*> tree_items_;
};

// A button whose caption says what it does (Pause, then Resume) carries this property, so that
// a screen reader announces the caption it has now.
inline constexpr const char* kNameFromCaption = "nameFromCaption";

QString ToQString(std::u16string_view text);
std::u16string ToU16(const QString& text);

} // namespace vntts::ui
