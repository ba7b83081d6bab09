// SPDX-License-Identifier: MIT
#pragma once
// Spelling variants of a Vietnamese syllable, for a word the voice has no recording of under the
// spelling the text uses. Vietnamese allows more than one spelling of many syllables: the tone
// mark of "oa", "oe" and "uy" sits on the first vowel in the older habit (hòa, thủy) and on the
// second in the newer one (hoà, thuỷ); a lone final i/y is written either way after some onsets
// (kỹ/kĩ, quí/quý, lý/lí). A word may also be two syllables typed without a blank (xinchào).
//
// Every function works on internal-encoding bytes, upper or lower case, and never throws on
// bad input: text that is not Vietnamese letters simply yields no variants and no split.
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

// The two retries for a syllable the archive lacks. Each is empty when it does not apply.
struct SpellingVariants {
  // The same syllable with its tone mark on the other vowel of an open oa/oe/uy group, or on the
  // vowel where one of the two conventions puts it when the text has it somewhere else.
  std::string tone_placement;
  // The same syllable with its lone final i written y or the other way round. Only offered when
  // the vowel group holds no other vowel of "ueoai", so tai/tay or hoi/hoy are never confused.
  std::string iy_swap;
};

SpellingVariants MakeSpellingVariants(std::string_view syllable);

// The variants above that apply, tonePlacement first, without duplicates or the input itself.
std::vector<std::string> SpellingVariantList(std::string_view syllable);

// Every i becomes y and every y becomes i, with its tone mark and letter case kept. Bytes that
// are not an i or a y pass through unchanged.
std::string SwapIAndY(std::string_view word);

// True when the text is one well-formed Vietnamese syllable: a known onset, a known rhyme, the
// onset spelling rules (k/gh/ngh before front vowels, c/g/ng elsewhere) and, after a stop coda
// (c, ch, p, t), only the rising or the heavy tone.
bool IsVietnameseSyllable(std::string_view syllable);

// Tells whether the voice archive holds a recording under this exact key.
using HasUnitKey = std::function<bool(std::string_view key)>;

// Splits a word into syllables for the speak path: one part when the word is itself a syllable,
// two parts when it is two syllables run together, none otherwise. Among several two-part cuts
// the one whose parts the archive holds (directly or through a spelling variant) wins; then a
// cut whose second part starts with a consonant (ba|na rather than ban|a); then the longer first
// part. hasKey may be empty.
std::vector<std::string> SplitIntoSyllables(std::string_view word, const HasUnitKey& has_key);

// Where the fallback gets recordings: whether a key exists (cheap), and its samples as signed
// 16-bit mono bytes (decoding; asked only for keys that exist).
struct UnitSource {
  HasUnitKey has_key;
  std::function<bool(std::string_view key, std::vector<std::uint8_t>& bytes)> fetch;
};

// What the speak path does for a word the archive does not hold as it is written:
//  1. the word itself, then its spelling variants (tone placement, then i/y);
//  2. split it: no syllable -> nothing; one syllable -> every i and y swapped, then the
//     variants of that; two syllables run together -> each part as in 1, with the i/y swap
//     of the part tried once more when it misses, and the two recordings joined with a short
//     crossfade.
// The word is expected in lower case. Returns false, with `bytes` empty, when nothing fits.
bool RenderWithSpellingFallback(std::string_view word, const UnitSource& source,
                                std::vector<std::uint8_t>& bytes);

} // namespace vntts
