// SPDX-License-Identifier: MIT
#pragma once
// What the wave device and the recorder tell the user.
#include <string_view>

namespace vntts::device_text {

inline constexpr std::string_view kNoOutputDevice =
    "There is not any wave-form device in your system !";
inline constexpr std::string_view kNoInputDevice =
    "There is not any device to record, please plug new device !!!.";
inline constexpr std::string_view kNoStereo = "This device do not support stereo.";
inline constexpr std::string_view kFormatUnsupported = "This device do not support this format.";
inline constexpr std::string_view kUnknownError = "Error !!!";

inline constexpr std::string_view kRecordOpenFailed = "Failed to open device.";
inline constexpr std::string_view kRecordParamsFailed = "Failed to set params of device.";
inline constexpr std::string_view kRecordStartFailed = "Failed to start record.";

} // namespace vntts::device_text
