// SPDX-License-Identifier: MIT
#pragma once
// Dialog templates as data: the window's id, caption, font and size, and each control's id,
// kind, text, styles and rectangle, all in dialog units. One builder (src/ui/qt) turns a
// template into widgets; the controllers only ever name controls by id.
#include <cstdint>
#include <span>
#include <string_view>

namespace vntts::ui {

// The id of controls that nothing refers to (labels, group boxes).
inline constexpr int kStaticId = -1;
// The ids every dialog shares: its OK, Cancel and Reset-like command buttons.
inline constexpr int kIdOk = 1;
inline constexpr int kIdCancel = 2;

enum class ControlKind {
  kEdit,
  kPushButton,
  kBitmapButton, // owner-drawn: four state images, sized to the up image
  kRadioButton,
  kGroupBox,
  kLabel,
  kSlider,   // horizontal trackbar
  kComboBox, // drop-down list
  kListBox,  // a list of texts, one column
  kListView, // report style: rows under column headings
  kTreeView, // a tree of items that open on demand
};

// Style bits; only those that change how a control is built or behaves.
enum ControlStyle : std::uint32_t {
  kMultiLine = 1u << 0,
  kVerticalScroll = 1u << 1,
  kBorder = 1u << 2,
  kWantReturn = 1u << 3,
  kNoHideSelection = 1u << 4,
  kNoTicks = 1u << 5,
  kAlignRight = 1u << 6,
  kAlignCentre = 1u << 7,
  kDisabled = 1u << 8,
  kAutoHorizontalScroll = 1u << 9,
  kHidden = 1u << 10,
  kSingleSelection = 1u << 11,   // a list view selects one row at a time
  kExtendedSelection = 1u << 12, // a list box selects ranges with Shift and Ctrl
  kMultiColumn = 1u << 13,       // a list box flows its entries into columns
};

struct DialogRect {
  int x = 0, y = 0, width = 0, height = 0;
};

struct ControlTemplate {
  int id;
  ControlKind kind;
  std::string_view text;
  std::uint32_t styles;
  DialogRect rect;
};

struct DialogTemplate {
  int id;
  std::string_view caption;
  std::string_view font;
  int point_size;
  int width, height;
  std::span<const ControlTemplate> controls;
};

// The control with this id, or null.
constexpr const ControlTemplate* FindControl(const DialogTemplate& dialog, int id) {
  for (const ControlTemplate& c : dialog.controls)
    if (c.id == id) return &c;
  return nullptr;
}

} // namespace vntts::ui
