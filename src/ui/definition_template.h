// SPDX-License-Identifier: MIT
#pragma once
// Template 133, the abbreviation editor ("Abbreviation table"), and the ids its logic uses.
#include <array>

#include "ui/dialog_template.h"

namespace vntts::ui::definition {

inline constexpr int kTemplateId = 133;

inline constexpr int kReplace = 1015;
inline constexpr int kWith = 1016;
inline constexpr int kList = 1023;
inline constexpr int kAdd = 129;
inline constexpr int kRemove = 130;
inline constexpr int kClose = kIdOk;
inline constexpr int kTest = 131;

// The list's two columns and their widths in pixels.
inline constexpr int kReplaceColumnWidth = 150;
inline constexpr int kWithColumnWidth = 370;

inline constexpr std::array kControls = {
    ControlTemplate{
        kReplace, ControlKind::kEdit, "", kAutoHorizontalScroll | kBorder, {7, 16, 65, 13}},
    ControlTemplate{
        kWith, ControlKind::kEdit, "", kAutoHorizontalScroll | kBorder, {76, 16, 184, 13}},
    ControlTemplate{kStaticId, ControlKind::kLabel, "Replace :", 0, {7, 3, 35, 10}},
    ControlTemplate{kStaticId, ControlKind::kLabel, "With :", 0, {78, 3, 52, 10}},
    ControlTemplate{kList,
                    ControlKind::kListView,
                    "List2",
                    kSingleSelection | kNoHideSelection | kBorder,
                    {7, 36, 254, 126}},
    ControlTemplate{kAdd, ControlKind::kPushButton, "&Add", 0, {267, 15, 29, 15}},
    ControlTemplate{kRemove, ControlKind::kPushButton, "&Remove", 0, {267, 31, 29, 15}},
    ControlTemplate{kClose, ControlKind::kPushButton, "&Close", 0, {267, 63, 29, 15}},
    ControlTemplate{kTest, ControlKind::kPushButton, "&Test", 0, {267, 47, 29, 15}},
};

inline constexpr DialogTemplate kTemplate{
    kTemplateId, "Abbreviation table", "MS Serif", 11, 303, 169, kControls};

} // namespace vntts::ui::definition
