// SPDX-License-Identifier: MIT
#pragma once
// File names in UTF-8 and the internal encoding.
#include <string>
#include <string_view>

namespace vntts {

// Strict UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool IsValidUtf8(std::string_view s);

// Converts a UTF-8 file name to internal-encoding bytes.
std::string Utf8NameToInternal(std::string_view utf8);

} // namespace vntts
