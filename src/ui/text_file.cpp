// SPDX-License-Identifier: MIT
#include "ui/text_file.h"

#include "text/charset/charsets.h"
#include "text/charset/unicode_codecs.h"

namespace vntts::ui {
namespace {

// How many bytes at the end start a UTF-8 sequence that the text ends before finishing.
std::size_t CutOffSequence(std::string_view bytes) {
  for (std::size_t back = 1; back <= 3 && back <= bytes.size(); ++back) {
    const auto b = static_cast<unsigned char>(bytes[bytes.size() - back]);
    if ((b & 0xC0) == 0x80) continue;   // a continuation byte: look further back
    if (b < 0xC2 || b > 0xF4) return 0; // not a lead byte: nothing was cut off
    const std::size_t needed = b >= 0xF0 ? 4 : b >= 0xE0 ? 3 : 2;
    return needed > back ? back : 0;
  }
  return 0;
}

} // namespace

std::u16string DecodeTextFile(std::string_view bytes) {
  if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
  std::u16string text;
  std::string_view utf8 = bytes;
  utf8.remove_suffix(CutOffSequence(utf8));
  if (DecodeUtf8(utf8, text) == 0) return text;
  return InternalToWindowText(bytes);
}

std::u16string InternalToWindowText(std::string_view internal) {
  return Utf8ToWindowText(InternalToUtf8(internal));
}

std::string WindowTextToInternal(std::u16string_view text) {
  return Utf8ToInternal(WindowTextToUtf8(text));
}

std::string WindowTextToUtf8(std::u16string_view text) {
  std::string utf8;
  EncodeUtf8(text, utf8);
  return utf8;
}

std::u16string Utf8ToWindowText(std::string_view utf8) {
  std::u16string text;
  DecodeUtf8(utf8, text);
  return text;
}

} // namespace vntts::ui
