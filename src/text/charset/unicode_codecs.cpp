// SPDX-License-Identifier: MIT
#include "text/charset/unicode_codecs.h"

#include <array>
#include <cstdint>

namespace vntts {

namespace {

// Code page 1258 from 0x80 on; bytes the code page leaves unassigned keep their own value.
constexpr std::array<char16_t, 128> kCp1258High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, // 80
    0x02C6, 0x2030, 0x008A, 0x2039, 0x0152, 0x008D, 0x008E, 0x008F, // 88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, // 90
    0x02DC, 0x2122, 0x009A, 0x203A, 0x0153, 0x009D, 0x009E, 0x0178, // 98
    0x00A0, 0x00A1, 0x00A2, 0x00A3, 0x00A4, 0x00A5, 0x00A6, 0x00A7, // A0
    0x00A8, 0x00A9, 0x00AA, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x00AF, // A8
    0x00B0, 0x00B1, 0x00B2, 0x00B3, 0x00B4, 0x00B5, 0x00B6, 0x00B7, // B0
    0x00B8, 0x00B9, 0x00BA, 0x00BB, 0x00BC, 0x00BD, 0x00BE, 0x00BF, // B8
    0x00C0, 0x00C1, 0x00C2, 0x0102, 0x00C4, 0x00C5, 0x00C6, 0x00C7, // C0
    0x00C8, 0x00C9, 0x00CA, 0x00CB, 0x0300, 0x00CD, 0x00CE, 0x00CF, // C8
    0x0110, 0x00D1, 0x0309, 0x00D3, 0x00D4, 0x01A0, 0x00D6, 0x00D7, // D0
    0x00D8, 0x00D9, 0x00DA, 0x00DB, 0x00DC, 0x01AF, 0x0303, 0x00DF, // D8
    0x00E0, 0x00E1, 0x00E2, 0x0103, 0x00E4, 0x00E5, 0x00E6, 0x00E7, // E0
    0x00E8, 0x00E9, 0x00EA, 0x00EB, 0x0301, 0x00ED, 0x00EE, 0x00EF, // E8
    0x0111, 0x00F1, 0x0323, 0x00F3, 0x00F4, 0x01A1, 0x00F6, 0x00F7, // F0
    0x00F8, 0x00F9, 0x00FA, 0x00FB, 0x00FC, 0x01B0, 0x20AB, 0x00FF, // F8
};

bool IsContinuation(std::uint8_t b) {
  return (b & 0xC0) == 0x80;
}

} // namespace

std::size_t DecodeUtf8(std::string_view utf8, std::u16string& out, char16_t replacement) {
  // Never more code units than bytes: size once, write, trim.
  const std::size_t start = out.size();
  out.resize(start + utf8.size());
  char16_t* next = out.data() + start;
  std::size_t replaced = 0;
  const std::size_t n = utf8.size();
  std::size_t i = 0;
  const auto at = [&](std::size_t k) { return static_cast<std::uint8_t>(utf8[k]); };
  while (i < n) {
    const std::uint8_t lead = at(i);
    if (lead < 0x80) {
      *next++ = lead;
      ++i;
      continue;
    }
    // Expected length and the allowed range of the second byte (this excludes overlong
    // forms, surrogates and values above U+10FFFF, as the Unicode standard's table does).
    std::size_t need = 0;
    std::uint8_t lo = 0x80;
    std::uint8_t hi = 0xBF;
    char32_t cp = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
      need = 1;
      cp = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      need = 2;
      cp = lead & 0x0F;
      if (lead == 0xE0) lo = 0xA0;
      if (lead == 0xED) hi = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      need = 3;
      cp = lead & 0x07;
      if (lead == 0xF0) lo = 0x90;
      if (lead == 0xF4) hi = 0x8F;
    } else {
      *next++ = replacement;
      ++replaced;
      ++i;
      continue;
    }
    std::size_t k = 1;
    bool ok = true;
    for (; k <= need; ++k) {
      if (i + k >= n) {
        ok = false;
        break;
      }
      const std::uint8_t b = at(i + k);
      const bool in_range = k == 1 ? (b >= lo && b <= hi) : IsContinuation(b);
      if (!in_range) {
        ok = false;
        break;
      }
      cp = (cp << 6) | (b & 0x3F);
    }
    if (!ok) {
      // The maximal subpart consumed so far (lead plus valid continuations) is one error.
      *next++ = replacement;
      ++replaced;
      i += k;
      continue;
    }
    if (cp < 0x10000) {
      *next++ = static_cast<char16_t>(cp);
    } else {
      cp -= 0x10000;
      *next++ = static_cast<char16_t>(0xD800 + (cp >> 10));
      *next++ = static_cast<char16_t>(0xDC00 + (cp & 0x3FF));
    }
    i += need + 1;
  }
  out.resize(static_cast<std::size_t>(next - out.data()));
  return replaced;
}

std::size_t EncodeUtf8(std::u16string_view utf16, std::string& out) {
  std::size_t replaced = 0;
  const std::size_t n = utf16.size();
  for (std::size_t i = 0; i < n; ++i) {
    char32_t cp = utf16[i];
    if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < n && utf16[i + 1] >= 0xDC00 &&
        utf16[i + 1] <= 0xDFFF) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (utf16[i + 1] - 0xDC00);
      ++i;
    } else if (cp >= 0xD800 && cp <= 0xDFFF) {
      cp = kReplacementCharacter;
      ++replaced;
    }
    if (cp < 0x80) {
      out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
  }
  return replaced;
}

void DecodeCp1258(std::string_view bytes, std::u16string& out) {
  out.reserve(out.size() + bytes.size());
  for (const char ch : bytes) {
    const auto b = static_cast<std::uint8_t>(ch);
    out.push_back(b < 0x80 ? char16_t{b} : kCp1258High[b - 0x80u]);
  }
}

} // namespace vntts
