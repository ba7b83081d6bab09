// SPDX-License-Identifier: MIT
#pragma once
// Template 1021, the Phrase Express page of the Tools sheet, and the ids its logic uses.
#include <array>

#include "ui/dialog_template.h"

namespace vntts::ui::phrase_express {

inline constexpr int kTemplateId = 1021;

inline constexpr int kEdit = 1017;
inline constexpr int kOpen = 1018;
inline constexpr int kSave = 1019;
inline constexpr int kList = 1015;
inline constexpr int kAdd = 1021;
inline constexpr int kDelete = 1023;
inline constexpr int kDeleteAll = 1024;
inline constexpr int kLoad = 1020;
inline constexpr int kCreate = 1016;
inline constexpr int kFind = 1025;

inline constexpr int kTextLimit = 1'000'000;

inline constexpr std::array kControls = {
    ControlTemplate{kEdit,
                    ControlKind::kEdit,
                    "",
                    kMultiLine | kVerticalScroll | kWantReturn | kBorder,
                    {7, 7, 114, 147}},
    ControlTemplate{kOpen, ControlKind::kPushButton, "&Open", 0, {7, 159, 50, 14}},
    ControlTemplate{kSave, ControlKind::kPushButton, "&Save", kDisabled, {61, 159, 50, 14}},
    ControlTemplate{kList,
                    ControlKind::kListBox,
                    "",
                    kExtendedSelection | kVerticalScroll | kBorder,
                    {179, 7, 114, 147}},
    ControlTemplate{kAdd, ControlKind::kPushButton, "&Add", kDisabled, {125, 7, 50, 14}},
    ControlTemplate{kDelete, ControlKind::kPushButton, "&Delete", kDisabled, {125, 26, 50, 14}},
    ControlTemplate{
        kDeleteAll, ControlKind::kPushButton, "D&elete All", kDisabled, {125, 45, 50, 14}},
    ControlTemplate{kLoad, ControlKind::kPushButton, "&Load", 0, {189, 159, 50, 14}},
    ControlTemplate{kCreate, ControlKind::kPushButton, "&Create", kDisabled, {243, 159, 50, 14}},
    ControlTemplate{kFind, ControlKind::kPushButton, "&Find", 0, {125, 63, 50, 14}},
};

inline constexpr DialogTemplate kTemplate{kTemplateId, "Phrase Express", "MS Sans Serif", 8, 300,
                                          180,         kControls};

} // namespace vntts::ui::phrase_express
