// SPDX-License-Identifier: MIT
#pragma once
// The written shape of a Vietnamese syllable: onset consonants, one to three vowels (each with
// at most one mark byte after it) and a final consonant group. The front end uses it to tell
// words the voice can say from abbreviations and foreign words that must be spelled.
#include <string>
#include <string_view>

namespace vntts {

// True when the lower-case internal-text word is written like one Vietnamese syllable.
bool LooksLikeSyllable(std::string_view lower_case_word);

// The word letter by letter: "usb" -> "u ét bê"; đ -> "đê", digits by their digit words, a
// Vietnamese vowel with its marks stays as it is. Words separated by blanks.
std::string SpellWord(std::string_view word);

} // namespace vntts
