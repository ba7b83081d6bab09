// SPDX-License-Identifier: MIT
#pragma once
// Roman numerals as Vietnamese text uses them: centuries, chapters, congresses, quarters,
// levels ("thế kỷ XXI", "chương IV", "Đại hội XIII", "quý II"). They are read as numbers only
// after a word that takes one, so that "I", "V" or "XL" elsewhere stay letters.
#include <optional>
#include <string_view>

namespace vntts {

// The value of an upper-case numeral of I, V, X and L in its usual form (1..89): "XXI" is 21,
// "IIII", "VX" and "xxi" are none. C, D and M are left out on purpose: "CD", "MC" and "DC"
// are far more often abbreviations than numbers.
std::optional<int> RomanNumeralValue(std::string_view token);

// Whether the token has the letters of such a numeral (whatever the word before it).
bool HasRomanNumeralLetters(std::string_view token);

// Whether a numeral after this word (any case) is read as a number: kỷ, kỉ, chương, phần,
// khóa, khoá, hội, thứ, quyển, tập, mục, quý, quí, cấp, loại, hạng, đoạn, kỳ, kì, chiến, độ.
bool TakesRomanNumeral(std::string_view previous_word);

} // namespace vntts
