// SPDX-License-Identifier: MIT
#pragma once
// Template 143, the Speaker window, and the ids its logic uses.
#include <array>

#include "ui/dialog_template.h"

namespace vntts::ui::speaker {

inline constexpr int kTemplateId = 143;
inline constexpr int kIconId = 162;

inline constexpr int kEdit = 1034;
inline constexpr int kOpenFile = 32782;
inline constexpr int kVolume = 203;
inline constexpr int kEnglish = 1053;
inline constexpr int kVietnamese = 1054;
inline constexpr int kSpeak = 32779;
inline constexpr int kPause = 32826;
inline constexpr int kCancel = kIdCancel;
inline constexpr int kStop = 32780;
inline constexpr int kFormat = 1066;
inline constexpr int kRate = 1067;
inline constexpr int kPitch = 205;
inline constexpr int kEnglishVoice = 1071;
inline constexpr int kReset = 3;

inline constexpr std::array kControls = {
    ControlTemplate{kEdit,
                    ControlKind::kEdit,
                    "",
                    kMultiLine | kVerticalScroll | kBorder | kWantReturn | kNoHideSelection,
                    {9, 5, 177, 64}},
    ControlTemplate{kOpenFile, ControlKind::kBitmapButton, "&Play", 0, {198, 65, 12, 10}},
    ControlTemplate{kVolume, ControlKind::kSlider, "Slider1", kNoTicks, {28, 78, 76, 10}},
    ControlTemplate{kEnglish, ControlKind::kRadioButton, "&English", 0, {178, 82, 32, 8}},
    ControlTemplate{kStaticId, ControlKind::kGroupBox, "Text", 0, {119, 74, 96, 20}},
    ControlTemplate{kVietnamese, ControlKind::kRadioButton, "&Vietnamese", 0, {130, 82, 42, 8}},
    ControlTemplate{kSpeak, ControlKind::kBitmapButton, "Button1", 0, {197, 5, 25, 9}},
    ControlTemplate{kPause, ControlKind::kBitmapButton, "Button1", 0, {197, 27, 25, 9}},
    ControlTemplate{kCancel, ControlKind::kBitmapButton, "Button1", 0, {197, 39, 25, 9}},
    ControlTemplate{kStop, ControlKind::kBitmapButton, "Button1", 0, {197, 16, 25, 9}},
    ControlTemplate{kFormat, ControlKind::kComboBox, "", 0, {118, 97, 98, 51}},
    ControlTemplate{kStaticId, ControlKind::kLabel, "&Vol", kAlignRight, {9, 78, 17, 9}},
    ControlTemplate{kStaticId, ControlKind::kLabel, "&Rate", kAlignRight, {8, 92, 18, 10}},
    ControlTemplate{kRate, ControlKind::kSlider, "Slider1", kNoTicks, {28, 92, 76, 10}},
    ControlTemplate{kStaticId, ControlKind::kLabel, "&Pitch", kAlignRight, {8, 106, 18, 10}},
    ControlTemplate{kPitch, ControlKind::kSlider, "Slider1", kNoTicks, {28, 106, 76, 10}},
    ControlTemplate{kEnglishVoice, ControlKind::kComboBox, "", 0, {118, 111, 98, 58}},
    ControlTemplate{kReset, ControlKind::kPushButton, "&Reset", 0, {197, 50, 25, 12}},
};

inline constexpr DialogTemplate kTemplate{kTemplateId, "Speaker", "MS Serif", 12,
                                          225,         128,       kControls};

} // namespace vntts::ui::speaker
