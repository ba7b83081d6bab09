// SPDX-License-Identifier: MIT
#pragma once
// Brings Unicode text into the repertoire that the legacy encodings and the internal text can
// hold, before the code page 1258 step of the UTF-8 paths. Without it, that step keeps only
// the low byte of every other character, and the pivot then reads many of those bytes as
// letters: an ellipsis became '&', a dash a control byte, '«' the letter ô, '€' the letter ơ.
#include <cstddef>
#include <string>
#include <string_view>

namespace vntts {

// Appends the folded form of `text` to `out`:
//  - ASCII, the Vietnamese letters, the five tone marks, and the Latin-1 characters that
//    survive the pivot (no-break space, ° ± ² ³ ´) stay as they are;
//  - decomposed letters are composed: a vowel followed by a combining circumflex, breve or
//    horn becomes â ă ê ô ơ ư (in either mark order), its tone mark stays separate; other
//    combining marks are dropped, as is any combining mark without a vowel before it;
//  - typography becomes ASCII: dashes '-', quotes ' and ", ellipsis "...", the Unicode
//    blanks ' ', zero-width characters nothing, « » ‹ › '"'; control characters other than
//    NUL, tab and the line and page breaks become ' ';
//  - the other Latin-1 letters lose their accents (ñ n, ß ss, Æ AE), × is 'x', ÷ '/';
//  - emoji, pictographs, arrows, dingbats and similar symbols become ' ' (they stand between
//    words, and a '?' would end a sentence on the speak path), variation selectors and the
//    tags of flag sequences nothing; ℃ is "°C", ≤ "<=", ≥ ">=";
//  - anything else is '?'.
// Returns how many characters could not be kept (became '?' or a blank; a surrogate pair
// counts once).
std::size_t FoldToLegacyRepertoire(std::u16string_view text, std::u16string& out);

} // namespace vntts
