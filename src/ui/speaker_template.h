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
                    ControlKind::Edit,
                    "",
                    kMultiLine | kVerticalScroll | kBorder | kWantReturn | kNoHideSelection,
                    {9, 5, 177, 64}},
    ControlTemplate{kOpenFile, ControlKind::BitmapButton, "&Play", 0, {198, 65, 12, 10}},
    ControlTemplate{kVolume, ControlKind::Slider, "Slider1", kNoTicks, {28, 78, 76, 10}},
    ControlTemplate{kEnglish, ControlKind::RadioButton, "&English", 0, {178, 82, 32, 8}},
    ControlTemplate{kStaticId, ControlKind::GroupBox, "Text", 0, {119, 74, 96, 20}},
    ControlTemplate{kVietnamese, ControlKind::RadioButton, "&Vietnamese", 0, {130, 82, 42, 8}},
    ControlTemplate{kSpeak, ControlKind::BitmapButton, "Button1", 0, {197, 5, 25, 9}},
    ControlTemplate{kPause, ControlKind::BitmapButton, "Button1", 0, {197, 27, 25, 9}},
    ControlTemplate{kCancel, ControlKind::BitmapButton, "Button1", 0, {197, 39, 25, 9}},
    ControlTemplate{kStop, ControlKind::BitmapButton, "Button1", 0, {197, 16, 25, 9}},
    ControlTemplate{kFormat, ControlKind::ComboBox, "", 0, {118, 97, 98, 51}},
    ControlTemplate{kStaticId, ControlKind::Label, "&Vol", kAlignRight, {9, 78, 17, 9}},
    ControlTemplate{kStaticId, ControlKind::Label, "&Rate", kAlignRight, {8, 92, 18, 10}},
    ControlTemplate{kRate, ControlKind::Slider, "Slider1", kNoTicks, {28, 92, 76, 10}},
    ControlTemplate{kStaticId, ControlKind::Label, "&Pitch", kAlignRight, {8, 106, 18, 10}},
    ControlTemplate{kPitch, ControlKind::Slider, "Slider1", kNoTicks, {28, 106, 76, 10}},
    ControlTemplate{kEnglishVoice, ControlKind::ComboBox, "", 0, {118, 111, 98, 58}},
    ControlTemplate{kReset, ControlKind::PushButton, "&Reset", 0, {197, 50, 25, 12}},
};

inline constexpr DialogTemplate kTemplate{kTemplateId, "Speaker", "MS Serif", 12,
                                          225,         128,       kControls};

} // namespace vntts::ui::speaker
