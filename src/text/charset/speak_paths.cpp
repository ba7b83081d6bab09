#include "text/charset/charset_record.h"
#include "text/charset/charsets.h"
#include "text/charset/unicode_codecs.h"

namespace vntts {

std::string AsciiToInternal(std::string_view windows95vn) {
  std::string pivot;
  ConvertCharset(windows95vn, pivot, kEncodingWindows95, kEncodingPivot);
  std::string internal;
  ExpandFromPivot(pivot, internal, kEncodingInternal);
  return internal;
}

std::string Utf8ToInternal(std::string_view utf8) {
  // A broken sequence is spoken as a pause-like '?' rather than as the letter its
  // replacement character's low byte would otherwise become.
  std::u16string utf16;
  utf16.reserve(utf8.size());
  DecodeUtf8(utf8, utf16, u'?');
  std::string windows95;
  Utf16ToCp1258(utf16, &windows95);
  return AsciiToInternal(windows95);
}

std::string InternalToUtf8(std::string_view internal) {
  std::u16string utf16;
  LegacyToUtf16(kEncodingInternal, internal, &utf16);
  std::string utf8;
  utf8.reserve(internal.size() + internal.size() / 2);
  EncodeUtf8(utf16, utf8);
  return utf8;
}

} // namespace vntts
