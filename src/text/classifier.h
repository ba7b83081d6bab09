// SPDX-License-Identifier: MIT
#pragma once
// The token classifier: which reading a token gets. Classes are the letter codes of
// token_class.h; the tests run in a fixed order and the first that holds decides.
#include <string_view>

namespace vntts {

// The class of a token; previous_word is the word that stood before it in the input (the
// telephone, date and measure tests look at it).
int Classify(std::string_view token, std::string_view previous_word = {});

// The individual tests, for the readings and the sentence parser.
bool IsAllLetters(std::string_view token);
bool IsNumberToken(std::string_view token); // digits, single '.', ',' or '/' between digits
bool IsDateToken(std::string_view token, std::string_view previous_word);
bool IsTimeToken(std::string_view token, std::string_view previous_word);
bool IsRangeToken(std::string_view token, std::string_view previous_word);
bool IsTelephoneToken(std::string_view token, std::string_view previous_word);
bool IsMeasureToken(std::string_view token);
bool IsExpressionToken(std::string_view token, std::string_view previous_word);
bool IsSlashedWordsToken(std::string_view token);
bool IsAmountToken(std::string_view token, std::string_view previous_word);
bool IsAddressToken(std::string_view token);

// A date or measure context word before the token ("ngày", "tháng", "nặng", ...), compared
// in lower case with a trailing ':' or ',' ignored.
bool IsDateContextWord(std::string_view word);
bool IsMeasureContextWord(std::string_view word);
// The labels that make a following number a telephone number.
bool IsTelephoneLabel(std::string_view word);

} // namespace vntts
