// SPDX-License-Identifier: MIT
#include "audio/archive/recording_list.h"

#include <algorithm>
#include <cstdio>
#include <dirent.h>
#include <map>

#include "audio/archive/key_case.h"
#include "audio/archive/sorted_name_set.h"
#include "audio/archive/utf8_names.h"

namespace vntts {

std::string_view RecordingPattern(int type_index) {
  switch (type_index) {
  case 0:
    return "*.mp3";
  case 1:
    return "*.wav";
  case 2:
    return "*.*";
  default:
    return {};
  }
}

bool MatchesRecordingPattern(std::string_view file_name, std::string_view pattern) {
  if (pattern.empty()) return false;
  if (pattern == "*.*") return true;
  const std::string_view suffix = pattern.substr(1); // ".mp3"
  if (file_name.size() < suffix.size()) return false;
  const auto tail = file_name.substr(file_name.size() - suffix.size());
  return std::equal(tail.begin(), tail.end(), suffix.begin(), [](char a, char b) {
    return LowerKeyByte(static_cast<unsigned char>(a)) ==
           LowerKeyByte(static_cast<unsigned char>(b));
  });
}

std::string FileNameToInternal(std::string_view file_name) {
  const bool ascii = std::all_of(file_name.begin(), file_name.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (ascii || !IsValidUtf8(file_name)) return std::string(file_name);
  return Utf8NameToInternal(file_name);
}

std::vector<ListedRecording> ListRecordings(const std::filesystem::path& folder, int type_index) {
  const std::string_view pattern = RecordingPattern(type_index);
  std::vector<std::string> raw;
  if (DIR* dir = ::opendir(folder.c_str())) {
    while (const dirent* e = ::readdir(dir))
      if (MatchesRecordingPattern(e->d_name, pattern)) raw.emplace_back(e->d_name);
    ::closedir(dir);
  }
  // Directory order is arbitrary; sorting first makes the winner among names that collide after
  // lower-casing the same on every run.
  std::sort(raw.begin(), raw.end());
  SortedNameSet names;
  std::map<std::string, std::string> file_of;
  for (const auto& r : raw) {
    const std::string internal = FileNameToInternal(r);
    if (names.Insert(internal)) file_of.emplace(LowerKey(internal), r);
  }
  std::vector<ListedRecording> list;
  list.reserve(names.Count());
  for (const auto& n : names.Names())
    list.push_back({n, folder / file_of[n]});
  return list;
}

std::string TotalFilesText(std::size_t count) {
  char text[48];
  std::snprintf(text, sizeof text, "Total : %d files", static_cast<int>(count));
  return text;
}

std::string KeyFromListedName(std::string_view listed_name) {
  const std::size_t keep = listed_name.size() > 4 ? listed_name.size() - 4 : 0;
  return LowerKey(listed_name.substr(0, keep));
}

} // namespace vntts
