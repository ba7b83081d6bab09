// SPDX-License-Identifier: MIT
#pragma once
// Our own codecs for the two code pages the converters need (UTF-8 and Windows code page
// 1258), plus UTF-16LE byte streams for the command line.
#include <cstddef>
#include <string>
#include <string_view>

namespace vntts {

inline constexpr char16_t kReplacementCharacter = 0xFFFD;

// Appends the UTF-16 form of `utf8`. Each maximal ill-formed subsequence (stray continuation
// bytes, truncated sequences, overlong forms, encoded surrogates, values above U+10FFFF)
// becomes one `replacement` unit. Returns how many replacements were made.
std::size_t DecodeUtf8(std::string_view utf8, std::u16string& out,
                       char16_t replacement = kReplacementCharacter);

// Appends the UTF-8 form of `utf16`; a lone surrogate becomes U+FFFD. Returns how many lone
// surrogates were replaced.
std::size_t EncodeUtf8(std::u16string_view utf16, std::string& out);

// Appends the code page 1258 characters of `bytes` one unit per byte, as the platform's
// table has them (combining tone bytes stay separate). The five bytes the code page leaves
// unassigned map to the C1 control of the same value.
void DecodeCp1258(std::string_view bytes, std::u16string& out);

} // namespace vntts
