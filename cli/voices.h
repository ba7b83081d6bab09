// SPDX-License-Identifier: MIT
#pragma once
// Voices the command can find. A voice is a data folder with a syllable archive (main_dic.dat
// and its companions) and, optionally, word stores. "default" is the data folder the library
// itself would use; more voices are the subfolders of
//   $XDG_DATA_HOME/vntts/voices (else ~/.local/share/vntts/voices), and
//   the "voices" folder beside the default data folder (<prefix>/share/vntts/voices).
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vntts::cli {

struct Voice {
  std::string name;
  std::filesystem::path folder;
};

std::vector<Voice> FindVoices();

// A folder given by path (anything with a '/', or an existing folder) or a voice by its name.
std::optional<std::filesystem::path> ResolveVoice(const std::string& name_or_folder);

// True when folder holds a syllable archive.
bool HasVoice(const std::filesystem::path& folder);

} // namespace vntts::cli
