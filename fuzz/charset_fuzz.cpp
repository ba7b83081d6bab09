// SPDX-License-Identifier: MIT
// Every converter of the character-set layer on arbitrary bytes. The first two bytes choose
// the encodings; the rest is the text. Besides crashes it checks what must always hold:
// bounded growth, equal indices copying, and the piecewise long-text paths agreeing with one
// pass over the whole text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "text/charset/charset_record.h"
#include "text/charset/charsets.h"
#include "text/charset/text_conversion.h"
#include "text/charset/text_folding.h"
#include "text/charset/unicode_codecs.h"
#include "text/charset/utf16_to_legacy.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

std::string OnePassUtf8ToInternal(std::string_view utf8) {
  std::u16string utf16;
  vntts::DecodeUtf8(utf8, utf16, u'?');
  std::string internal;
  vntts::Utf16ToLegacy(vntts::kEncodingInternal).Append(utf16, internal);
  return internal;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const int from = data[0] % (vntts::kEncodingCount + 1); // one past the end: bad index
  const int to = data[1] % (vntts::kEncodingCount + 1);
  const std::string_view text(reinterpret_cast<const char*>(data + 2), size - 2);

  std::string out;
  const bool ok = vntts::ConvertCharset(text, out, from, to);
  Check(ok == (from < vntts::kEncodingCount && to < vntts::kEncodingCount));
  Check(out.size() <= 2 * text.size());
  if (ok && from == to) Check(out == text);

  std::string expanded;
  const std::size_t written = vntts::ExpandFromPivot(text, expanded, to);
  Check(written <= 2 * text.size());

  const std::string internal = vntts::Utf8ToInternal(text);
  Check(internal == OnePassUtf8ToInternal(text));
  Check(internal.size() <= 2 * text.size());
  Check(vntts::AsciiToInternal(text).size() <= 2 * text.size());

  std::u16string utf16;
  vntts::LegacyToUtf16(from, text, &utf16);
  Check(vntts::LegacyToUtf16(from, text, nullptr) == utf16.size());
  Check(vntts::InternalToUtf8(text).size() <= 4 * text.size() + 4);

  // The same bytes read as UTF-16 code units.
  std::u16string units(text.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i)
    units[i] = static_cast<char16_t>(static_cast<unsigned char>(text[2 * i]) |
                                     static_cast<unsigned char>(text[2 * i + 1]) << 8);
  std::string windows95;
  Check(vntts::Utf16ToCp1258(units, &windows95) == vntts::Utf16ToCp1258(units, nullptr));
  std::u16string composed;
  Check(vntts::ComposeUtf16(units, composed) <= units.size());
  vntts::ContainsVietnamese(units);
  std::string utf8;
  vntts::EncodeUtf8(units, utf8);

  // Long texts remember the words they repeat: the input said over and over (blank-separated
  // and glued) must convert as one pass does, and as a stream of parts does.
  if (!text.empty()) {
    std::string longText;
    for (int k = 0; longText.size() < 5000; ++k) {
      longText += text;
      if (k % 3 != 2) longText += k % 2 ? ' ' : '\n';
    }
    const std::string longInternal = vntts::Utf8ToInternal(longText);
    Check(longInternal == OnePassUtf8ToInternal(longText));
    const std::string whole = vntts::InternalToUtf8(longText);
    vntts::InternalToUtf8Stream stream;
    std::string parts;
    std::size_t start = 0;
    while (start < longText.size()) {
      std::size_t end = longText.find_first_of(" \n", start + 1 + longText.size() / 7);
      end = end == std::string::npos ? longText.size() : end + 1;
      parts += stream.Convert(std::string_view(longText).substr(start, end - start));
      start = end;
    }
    Check(parts == whole);
  }

  const auto a =
      vntts::FindTextEncoding(std::string_view(text.data(), text.size() < 24 ? text.size() : 24));
  const vntts::TextEncoding legacy{vntts::TextEncoding::Kind::kLegacy,
                                   from % vntts::kEncodingCount};
  const vntts::TextEncoding kinds[] = {
      {vntts::TextEncoding::Kind::kUtf8, 0}, {vntts::TextEncoding::Kind::kUtf16, 0}, legacy};
  for (const auto& f : kinds)
    for (const auto& t : kinds)
      vntts::ConvertText(text, a ? *a : f, t);
  return 0;
}
