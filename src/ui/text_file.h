// SPDX-License-Identifier: MIT
#pragma once
// The text a file's bytes stand for, as the Speaker window shows it. Text files today are
// mostly UTF-8; older Vietnamese files are in the VNI-Windows encoding, which is also the
// engine's own text. Bytes that are valid UTF-8 (a byte-order mark is dropped; a sequence cut
// off at the very end is dropped too) are read as UTF-8, anything else as VNI-Windows.
#include <string>
#include <string_view>

namespace vntts::ui {

std::u16string DecodeTextFile(std::string_view bytes);

// Internal text (VNI-Windows) as the window holds it, and back.
std::u16string InternalToWindowText(std::string_view internal);
std::string WindowTextToInternal(std::u16string_view text);

// The window's text as UTF-8, for files and paths.
std::string WindowTextToUtf8(std::u16string_view text);
std::u16string Utf8ToWindowText(std::string_view utf8);

} // namespace vntts::ui
