// SPDX-License-Identifier: MIT
#pragma once
// Vietnamese letters as Unicode code points: the twelve vowels with their six tones, lower-casing
// and UTF-8 conversion for the generator's inventory.
#include <string>
#include <string_view>

namespace voicegen {

enum Tone { kNgang = 0, kSac = 1, kHuyen = 2, kHoi = 3, kNga = 4, kNang = 5 };

bool IsVowel(char32_t c);
// The vowel without its tone mark (ấ -> â); other letters unchanged.
char32_t ToneBase(char32_t c);
char32_t WithTone(char32_t base, Tone tone);
// Vowels that carry a quality mark of their own: ă â ê ô ơ ư.
bool HasQualityMark(char32_t base);

char32_t ToLower(char32_t c);
std::u32string ToLower(std::u32string_view s);
bool IsLetter(char32_t c);

std::u32string FromUtf8(std::string_view s);
std::string ToUtf8(std::u32string_view s);

} // namespace voicegen
