// SPDX-License-Identifier: MIT
#pragma once
// Units of measure written as abbreviations: m, cm, dm, mm, km, g, mg, kg, l, ml, cl, dl, ha,
// m2, m3, km2, cm3, ... and one of them over another or over h (hour) or s (second):
// km/h, m/s, g/l. Temperatures and angles: the degree sign alone or before C or F.
#include <optional>
#include <string>
#include <string_view>

namespace vntts {

// The degree sign: code page 1258 and the internal text both hold it at B0.
inline constexpr std::string_view kDegreeSign = "\xB0";

// The spoken unit for an abbreviation (compared in lower case), or nothing if it is none.
std::optional<std::string> ReadUnit(std::string_view abbreviation);

// Length of the number at the start of a token: digits with single '.' or ',' between
// digits ("2,5" in "2,5kg"); 0 when the token does not start with a digit.
std::size_t NumberPrefixLength(std::string_view token);

} // namespace vntts
