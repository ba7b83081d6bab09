// SPDX-License-Identifier: MIT
#pragma once
// Number readings: a group of up to nine digits, an integer of any length, and a number with
// thousands separators, a decimal point or comma, or a '/' between numbers. Results are
// internal text built from words that carry their own blanks.
#include <string>
#include <string_view>

namespace vntts {

// Up to nine digits read as one whole number (a leading 0 of a three-digit string reads
// "không trăm", 00 "không trăm lẻ"); zero reads as nothing. Non-digits are ignored.
std::string ReadGroup(std::string_view digits);

// Any number of digits, in groups of three under nghìn, triệu, tỉ and again nghìn; zero (and
// the empty string) reads as nothing, the caller says "không". Non-digits are ignored.
std::string ReadInteger(std::string_view digits);

// A number token: "12.500", "3,25", "1.25", "0,5", "3/4", "12.".
std::string ReadNumber(std::string_view token);

// Each digit on its own ("05" -> " không năm"); other characters are skipped.
std::string ReadDigits(std::string_view digits);

} // namespace vntts
