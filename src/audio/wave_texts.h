// SPDX-License-Identifier: MIT
#pragma once
// The texts and captions the WAV file operations show, exactly as users know them.
#include <string_view>

namespace vntts::wave_text {

inline constexpr std::string_view kOpenCaption = "Open File Error";
inline constexpr std::string_view kSaveCaption = "Save File Error";
inline constexpr std::string_view kAppendCaption = "Append File Error";

inline constexpr std::string_view kCouldNotOpen = "Could not open file !";
inline constexpr std::string_view kNotWave = "This is not a WAVE File !";
inline constexpr std::string_view kNoFmt = "WAVE File has no 'fmt' chunk !";
inline constexpr std::string_view kFmtShortRead = "Failed to read format chunk !";
inline constexpr std::string_view kNoData = "WAVE File has no 'data' chunk !";
inline constexpr std::string_view kEmptyData = "The data chunk has no data!";
inline constexpr std::string_view kDataShortRead = "Failed to read data chunk !";
inline constexpr std::string_view kInvalidFormat = "Invalid format file!";

inline constexpr std::string_view kCannotCreate = "Unable to create specified File !";
inline constexpr std::string_view kRiffHeader = "Unable to write the RIFF chunk header !";
inline constexpr std::string_view kFmtHeader = "Unable to create the fmt chunk header !";
inline constexpr std::string_view kFormatWrite = "Unable to write the format to File !";
inline constexpr std::string_view kDataHeader = "Unable to create the data chunk header !";
inline constexpr std::string_view kDataWrite = "Unable to write the data buffer to File !";
// Closing the "data" chunk and closing the RIFF chunk report these two texts, each naming
// the other chunk; users and scripts have long matched on that pairing.
inline constexpr std::string_view kDataCloseFailed = "Unable to write the fmt chunk header !";
inline constexpr std::string_view kRiffCloseFailed = "Unable to write the data chunk header !";
inline constexpr std::string_view kEventWrite = "Unable to write the event buffer to File !";
inline constexpr std::string_view kComplete = "Complete!";

inline constexpr std::string_view kNoMatchFormat = "Can not append to this file, No match format!";

inline constexpr std::string_view kNoMemory =
    "Could not allocate requested memory\r\nYou should exit somes of applications";

} // namespace vntts::wave_text
