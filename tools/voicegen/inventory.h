// SPDX-License-Identifier: MIT
#pragma once
// The syllables the default voice covers, each with the text the synthesiser speaks for it.
#include <map>
#include <string>

namespace voicegen {

struct InventorySources {
  std::string hunspell_dic; // path of the hunspell word list; empty or missing: left out
};

// key (UTF-8, lower case) -> text to speak (UTF-8). Keys are the syllables of the spelling
// rules, every syllable of the word list in both tone placements, the words the number, date,
// time, money, measure, address and symbol readings produce, and the single letters that a
// spelled-out word uses, which are spoken by their Vietnamese letter names.
std::map<std::string, std::string> BuildInventory(const InventorySources& sources);

} // namespace voicegen
