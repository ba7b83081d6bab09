// SPDX-License-Identifier: MIT
#pragma once
// Vietnamese syllables by the spelling rules: onset + rhyme + tone, with c/k/q, g/gh, ng/ngh
// and gi written as the orthography wants, and the tone mark on the vowel that carries it.
#include <string>
#include <vector>

#include "vietnamese_letters.h"

namespace voicegen {

// Puts the tone on a toneless syllable. rhyme_start is where the rhyme begins (after the onset,
// "qu" and "gi" included). With old_style the pairs oa, oe and uy without a final consonant take
// the mark on their first vowel (hòa, khỏe, thủy) instead of the second (hoà, khoẻ, thuỷ).
std::u32string PlaceTone(const std::u32string& syllable, std::size_t rhyme_start, Tone tone,
                         bool old_style = false);

// Where the rhyme of a written syllable starts: after the initial consonant letters, with "qu"
// and "gi" (when a vowel follows) counted as onsets.
std::size_t RhymeStart(const std::u32string& syllable);

// Every syllable the rules allow, each tone, both tone placements where they differ; sorted,
// without duplicates, UTF-8.
std::vector<std::string> OrthographicSyllables();

// Both placements of a toned syllable that has oa, oe or uy without a final consonant (the
// syllable itself when it has no such pair).
std::vector<std::string> TonePlacementVariants(const std::string& syllable);

} // namespace voicegen
