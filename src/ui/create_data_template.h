// SPDX-License-Identifier: MIT
#pragma once
// Template 1020, the Create data page of the Tools sheet, and the ids its logic uses.
#include <array>

#include "ui/dialog_template.h"

namespace vntts::ui::create_data {

inline constexpr int kTemplateId = 1020;

inline constexpr int kTree = 1012;
inline constexpr int kType = 1013;
inline constexpr int kList = 1015;
inline constexpr int kCreate = 1016;
inline constexpr int kAddFolder = 1030;
inline constexpr int kAddFiles = 1031;
inline constexpr int kTotal = 1033;

// The Add Folder and Add Files buttons are in the template but never shown.
inline constexpr std::array kControls = {
    ControlTemplate{
        kTree, ControlKind::kTreeView, "Tree1", kNoHideSelection | kBorder, {7, 6, 115, 147}},
    ControlTemplate{kType, ControlKind::kComboBox, "", 0, {131, 6, 162, 84}},
    ControlTemplate{kList,
                    ControlKind::kListBox,
                    "",
                    kMultiColumn | kVerticalScroll | kBorder,
                    {131, 24, 162, 130}},
    ControlTemplate{kCreate, ControlKind::kPushButton, "&Create", kDisabled, {243, 159, 50, 14}},
    ControlTemplate{
        kAddFolder, ControlKind::kPushButton, "&Add Folder", kHidden, {60, 159, 50, 14}},
    ControlTemplate{kAddFiles, ControlKind::kPushButton, "Add &Files", kHidden, {7, 159, 50, 14}},
    ControlTemplate{kTotal, ControlKind::kLabel, "Static", 0, {133, 161, 101, 12}},
};

inline constexpr DialogTemplate kTemplate{kTemplateId, "Create data", "MS Sans Serif", 8,
                                          300,         180,           kControls};

} // namespace vntts::ui::create_data
