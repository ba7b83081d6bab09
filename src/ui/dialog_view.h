// SPDX-License-Identifier: MIT
#pragma once
// What a controller may do to its window's controls, each named by its template id. The Qt
// views implement it over the built widgets; tests implement it with plain maps. Texts are
// UTF-16, as the window holds them.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vntts::ui {

struct TextSelection {
  int start = 0; // UTF-16 units
  int end = 0;
  bool operator==(const TextSelection&) const = default;
};

class DialogView {
public:
  virtual ~DialogView() = default;

  virtual void Enable(int id, bool enabled) = 0;
  virtual bool IsEnabled(int id) const = 0;

  // The caption of a button or label, the text of an edit box.
  virtual std::u16string Text(int id) const = 0;
  virtual void SetText(int id, std::u16string_view text) = 0;

  virtual bool IsChecked(int id) const = 0;
  virtual void SetChecked(int id, bool checked) = 0;

  // An edit box's selection; Select also scrolls it into view.
  virtual TextSelection Selection(int id) const = 0;
  virtual void Select(int id, TextSelection selection) = 0;

  // A slider's range and position; a position outside the range is clamped to it.
  virtual void SetRange(int id, int minimum, int maximum) = 0;
  virtual int Minimum(int id) const = 0;
  virtual int Maximum(int id) const = 0;
  virtual int Position(int id) const = 0;
  virtual void SetPosition(int id, int position) = 0;

  // A combo box's entries: text and a number that goes with it.
  virtual void AddItem(int id, std::u16string_view text, std::uint32_t data) = 0;
  virtual int CurrentIndex(int id) const = 0; // -1 when nothing is selected
  virtual void SetCurrentIndex(int id, int index) = 0;
  // The number of the selected entry; nothing when no entry is selected.
  virtual std::optional<std::uint32_t> CurrentData(int id) const = 0;

  // Timers tick into the controller's OnTimer with their id until killed.
  virtual void StartTimer(int timer_id, int milliseconds) = 0;
  virtual void KillTimer(int timer_id) = 0;

  // Ends the window with a result (a modal window's exec returns it).
  virtual void EndDialog(int result) = 0;

  // The most characters a person may type into an edit box; text the program sets may be
  // longer.
  virtual void SetTextLimit(int id, int characters) = 0;
  virtual void SetFocus(int id) = 0;
  // Draws the window now: a long task that handles no events follows.
  virtual void Repaint() = 0;

  // A list box (one column) or a report-style list view, row by row from 0.
  virtual void InsertColumn(int id, int column, std::u16string_view title, int width_pixels) = 0;
  // Inserts a row with text in its first column before `row` (at the end when row is past it);
  // the new row's index, or -1 when it could not be inserted.
  virtual int InsertRow(int id, int row, std::u16string_view text) = 0;
  // False when there is no such row or column.
  virtual bool SetCell(int id, int row, int column, std::u16string_view text) = 0;
  virtual std::u16string Cell(int id, int row, int column) const = 0;
  virtual int RowCount(int id) const = 0;
  virtual void RemoveRow(int id, int row) = 0;
  virtual void RemoveAllRows(int id) = 0;
  // The selected rows, ascending.
  virtual std::vector<int> SelectedRows(int id) const = 0;
  // The row that holds the list's focus mark (where Delete or Test acts), -1 when none.
  virtual int CurrentRow(int id) const = 0;
  // Makes row the current row and the only selected one, scrolled into view; -1 selects none.
  virtual void SetCurrentRow(int id, int row) = 0;

  // A tree whose items are named by handles above 0; 0 stands for the tree itself, the parent
  // of its top items. An expandable item shows its expansion button before it has children.
  virtual int InsertTreeItem(int id, int parent, std::u16string_view text, bool expandable) = 0;
  virtual void SetTreeItemExpandable(int id, int item, bool expandable) = 0;
  virtual int SelectedTreeItem(int id) const = 0; // 0 when none
  virtual void SelectTreeItem(int id, int item) = 0;
};

} // namespace vntts::ui
