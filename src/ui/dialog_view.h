// SPDX-License-Identifier: MIT
#pragma once
// What a controller may do to its window's controls, each named by its template id. The Qt
// views implement it over the built widgets; tests implement it with plain maps. Texts are
// UTF-16, as the window holds them.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

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
};

} // namespace vntts::ui
