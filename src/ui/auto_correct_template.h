// SPDX-License-Identifier: MIT
#pragma once
// Template 1022, the Auto Correct page of the Tools sheet, and the ids its logic uses.
#include <array>

#include "ui/dialog_template.h"

namespace vntts::ui::auto_correct {

inline constexpr int kTemplateId = 1022;

inline constexpr int kReplace = 1024;
inline constexpr int kWith = 1016;
inline constexpr int kList = 1015;
inline constexpr int kAdd = 1021;
inline constexpr int kDelete = 1023;
inline constexpr int kSave = 1019;
inline constexpr int kLoad = 1020;

// The list's two columns and their widths in pixels.
inline constexpr int kReplaceColumnWidth = 130;
inline constexpr int kWithColumnWidth = 290;

inline constexpr std::array kControls = {
    ControlTemplate{kStaticId, ControlKind::kLabel, "&Replace", 0, {7, 7, 61, 12}},
    ControlTemplate{kStaticId, ControlKind::kLabel, "&With", 0, {94, 7, 61, 12}},
    ControlTemplate{kReplace,
                    ControlKind::kEdit,
                    "",
                    kAutoHorizontalScroll | kBorder | kNoHideSelection,
                    {7, 20, 77, 12}},
    ControlTemplate{kWith,
                    ControlKind::kEdit,
                    "",
                    kAutoHorizontalScroll | kBorder | kNoHideSelection,
                    {94, 20, 199, 12}},
    ControlTemplate{kList,
                    ControlKind::kListView,
                    "List1",
                    kSingleSelection | kNoHideSelection | kBorder,
                    {7, 41, 286, 113}},
    ControlTemplate{kAdd, ControlKind::kPushButton, "&Add", kDisabled, {7, 159, 50, 14}},
    ControlTemplate{kDelete, ControlKind::kPushButton, "&Delete", kDisabled, {61, 159, 50, 14}},
    ControlTemplate{kSave, ControlKind::kPushButton, "&Save", kDisabled, {243, 159, 50, 14}},
    ControlTemplate{kLoad, ControlKind::kPushButton, "&Load", 0, {189, 159, 50, 14}},
};

inline constexpr DialogTemplate kTemplate{kTemplateId, "Auto Correct", "MS Sans Serif", 8, 300,
                                          180,         kControls};

} // namespace vntts::ui::auto_correct
