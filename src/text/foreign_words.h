// SPDX-License-Identifier: MIT
#pragma once
// Foreign names and words that no list holds (Kamala, Blinken, Guterres, Fukushima) read the
// way a Vietnamese newsreader reads them out: cut into syllables, each written as a Vietnamese
// syllable (ca ma la, bờ lin ken, gu tê rét, phu cu si ma), rather than letter by letter.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

// The syllables (internal text, lower case) for a word of Latin letters, acute or grave accents
// allowed on its vowels; nothing for a word that has no vowel, holds other letters, is longer
// than a name can be, or would give a syllable that is not written like a Vietnamese one.
std::optional<std::vector<std::string>> ReadForeignWord(std::string_view word);

} // namespace vntts
