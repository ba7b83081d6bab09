// SPDX-License-Identifier: MIT
#pragma once
// The readings of the token classes: each turns one token into the words spoken for it, as
// internal text made of words that carry their own blanks (see vocabulary.h).
#include <optional>
#include <string>
#include <string_view>

namespace vntts {

std::string ReadSymbol(char symbol);           // class J
std::string ReadPhone(std::string_view token); // class N: digit by digit
// Class B. With monthAlreadySaid ("tháng 12/2024") a month/year date does not repeat tháng.
std::string ReadDate(std::string_view token, bool month_already_said = false);
std::string ReadTime(std::string_view token);       // class G
std::string ReadAmount(std::string_view token);     // class D
std::string ReadRange(std::string_view token);      // class M
std::string ReadMeasure(std::string_view token);    // class O
std::string ReadAddress(std::string_view token);    // class L (and e-mail addresses)
std::string ReadExpression(std::string_view token); // class K
std::string ReadOver(std::string_view token);       // class H: parts joined by trên

// The reading of a lone number that its word before makes special, or nothing: after thứ the
// ordinals nhất and tư for 1 and 4 (the weekday Wednesday is thứ tư, the fourth time lần thứ
// tư), after tháng the month tư for 4 and 04 ("tháng 4" is April, never "tháng bốn").
std::optional<std::string> ReadAfterWord(std::string_view previous_word, std::string_view digits);

// Money words written on their own: đ, VND, VNĐ, USD, EUR (any case); nothing otherwise.
std::optional<std::string> ReadCurrencyWord(std::string_view letters);

// The reading of a token of the given class, or nothing for classes without a reading
// ('@', 'E', 'F', 'I', 'P', 255). previous_word is the word before the token in the input.
std::optional<std::string> Normalise(int token_class, std::string_view token,
                                     std::string_view previous_word = {});

} // namespace vntts
