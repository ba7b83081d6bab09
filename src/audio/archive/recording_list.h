// SPDX-License-Identifier: MIT
#pragma once
// What goes into an archive: the recordings of one folder, listed the way the Create data tool
// lists them. Names are shown and sorted lower-cased, as internal-encoding bytes (UTF-8 file
// names are converted), by their full name with the extension; the real file name is kept
// beside each entry so that case-sensitive file systems still find the file.
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

// Type box entries in order; the index picks the search pattern.
inline constexpr std::string_view kRecordingTypeNames[] = {"MP3 files (*.mp3)",
                                                           "Wave files (*.wav)", "All files (*.*)"};

// "*.mp3", "*.wav", "*.*" for 0, 1, 2; empty for any other index.
std::string_view RecordingPattern(int type_index);

// Windows-style name match for the three patterns: "*.ext" compares the extension without
// regard to case, "*.*" takes every entry (also "." and ".." and folders); empty takes nothing.
bool MatchesRecordingPattern(std::string_view file_name, std::string_view pattern);

// A file name as internal-encoding bytes: valid UTF-8 with non-ASCII characters is converted,
// anything else (plain ASCII, or bytes that already are the internal encoding) stays as it is.
std::string FileNameToInternal(std::string_view file_name);

struct ListedRecording {
  std::string name;           // lower-cased internal-encoding file name, extension included
  std::filesystem::path file; // the entry as it is on disk
};

// The folder's entries that match the type's pattern, lower-cased, sorted ascending by byte
// value without duplicates (of names equal after lower-casing the first in byte order of the
// real names wins). A folder that cannot be read lists nothing.
std::vector<ListedRecording> ListRecordings(const std::filesystem::path& folder, int type_index);

// "Total : %d files"
std::string TotalFilesText(std::size_t count);

// The listed name without its last four characters (".mp3"), lower-cased; "x.mpeg" gives "x."
// and a name shorter than four characters an empty key.
std::string KeyFromListedName(std::string_view listed_name);

} // namespace vntts
