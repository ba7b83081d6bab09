// SPDX-License-Identifier: MIT
#include "voices.h"

#include <algorithm>
#include <cstdlib>
#include <system_error>

#include "core/data_folder.h"

namespace vntts::cli {
namespace fs = std::filesystem;
namespace {

std::vector<fs::path> VoiceRoots(const fs::path& default_folder) {
  std::vector<fs::path> roots;
  if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg)
    roots.push_back(fs::path(xdg) / "vntts" / "voices");
  else if (const char* home = std::getenv("HOME"); home && *home)
    roots.push_back(fs::path(home) / ".local" / "share" / "vntts" / "voices");
  roots.push_back(default_folder.parent_path() / "voices");
  return roots;
}

} // namespace

bool HasVoice(const fs::path& folder) {
  std::error_code ec;
  return fs::is_regular_file(folder / "main_dic.dat", ec);
}

std::vector<Voice> FindVoices() {
  const fs::path default_folder = DataFolder::Locate().path();
  std::vector<Voice> voices{{"default", default_folder}};
  for (const auto& root : VoiceRoots(default_folder)) {
    std::error_code ec;
    std::vector<Voice> found;
    for (const auto& entry : fs::directory_iterator(root, ec))
      if (HasVoice(entry.path())) found.push_back({entry.path().filename().string(), entry.path()});
    std::sort(found.begin(), found.end(),
              [](const Voice& a, const Voice& b) { return a.name < b.name; });
    voices.insert(voices.end(), found.begin(), found.end());
  }
  return voices;
}

std::optional<fs::path> ResolveVoice(const std::string& name_or_folder) {
  std::error_code ec;
  if (name_or_folder.find('/') != std::string::npos || fs::is_directory(name_or_folder, ec))
    return fs::path(name_or_folder);
  for (const auto& voice : FindVoices())
    if (voice.name == name_or_folder) return voice.folder;
  return std::nullopt;
}

} // namespace vntts::cli
