// SPDX-License-Identifier: MIT
#pragma once
// Template 139, the Record window, and the ids its logic uses.
#include <array>

#include "ui/dialog_template.h"

namespace vntts::ui::record {

inline constexpr int kTemplateId = 139;

inline constexpr int kStart = 1024;
inline constexpr int kIndicator = 1025;
inline constexpr int kTime = 1026;
inline constexpr int kCancel = kIdCancel;
inline constexpr int kStop = 1000;
inline constexpr int kPause = 1027;

inline constexpr int kTimerId = 12345;
inline constexpr int kTimerMs = 99;

inline constexpr std::array kControls = {
    ControlTemplate{kStart, ControlKind::kBitmapButton, "&Start", 0, {52, 68, 29, 16}},
    ControlTemplate{kIndicator, ControlKind::kSlider, "Slider1", kDisabled, {32, 38, 153, 15}},
    ControlTemplate{kTime, ControlKind::kLabel, "00:00:00", kAlignCentre, {47, 17, 123, 10}},
    ControlTemplate{kCancel, ControlKind::kBitmapButton, "Cancel", 0, {139, 68, 29, 16}},
    ControlTemplate{kStop, ControlKind::kBitmapButton, "St&op", 0, {113, 68, 29, 16}},
    ControlTemplate{kPause, ControlKind::kBitmapButton, "&Pause", 0, {81, 68, 29, 16}},
};

inline constexpr DialogTemplate kTemplate{kTemplateId, "Record", "MS Sans Serif", 8,
                                          217,         95,       kControls};

} // namespace vntts::ui::record
