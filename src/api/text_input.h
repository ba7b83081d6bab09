// SPDX-License-Identifier: MIT
#pragma once
// The text forms the speak exports accept, turned into the engine's internal encoding.
#include <string>
#include <string_view>

namespace vntts::api {

// UTF-8 text (the SpeakVNUTF8 family and SaveVNToWaveFile).
std::string InternalFromUtf8(std::string_view utf8);

// "Windows 95VN" text, code page 1258 with separate tone bytes (the SpeakVNASCII family).
std::string InternalFromWindows95VN(std::string_view text);

} // namespace vntts::api
