#include "text/charset/charset_record.h"
#include "text/charset/charsets.h"
#include "text/charset/unicode_codecs.h"

namespace vntts {

namespace {

std::string Windows95ToLegacy(std::string_view windows95vn, int toIndex) {
  std::string pivot;
  ConvertCharset(windows95vn, pivot, kEncodingWindows95, kEncodingPivot);
  std::string out;
  ExpandFromPivot(pivot, out, toIndex);
  return out;
}

} // namespace

std::string AsciiToInternal(std::string_view windows95vn) {
  return Windows95ToLegacy(windows95vn, kEncodingInternal);
}

std::string Utf8ToLegacy(std::string_view utf8, int toIndex) {
  // A broken sequence is spoken as a pause-like '?' rather than as the letter its
  // replacement character's low byte would otherwise become.
  std::u16string utf16;
  utf16.reserve(utf8.size());
  DecodeUtf8(utf8, utf16, u'?');
  std::string windows95;
  Utf16ToCp1258(utf16, &windows95);
  return Windows95ToLegacy(windows95, toIndex);
}

std::string Utf8ToInternal(std::string_view utf8) {
  return Utf8ToLegacy(utf8, kEncodingInternal);
}

std::string LegacyToUtf8(std::string_view text, int fromIndex) {
  std::u16string utf16;
  LegacyToUtf16(fromIndex, text, &utf16);
  std::string utf8;
  utf8.reserve(text.size() + text.size() / 2);
  EncodeUtf8(utf16, utf8);
  return utf8;
}

std::string InternalToUtf8(std::string_view internal) {
  return LegacyToUtf8(internal, kEncodingInternal);
}

} // namespace vntts
