// SPDX-License-Identifier: MIT
#include "text/charset/text_conversion.h"

#include <array>
#include <cctype>

#include "text/charset/charset_record.h"
#include "text/charset/charsets.h"
#include "text/charset/text_folding.h"
#include "text/charset/unicode_codecs.h"
#include "text/charset/unicode_letters.h"
#include "text/charset/utf16_to_legacy.h"
#include "text/charset/working_record.h"

namespace vntts {

namespace {

struct ShortName {
  std::string_view name;
  int index;
};
// Common names of the records, as users know them.
constexpr std::array<ShortName, 10> kShortNames = {{
    {"vni", 3},
    {"vniwindows", 3},
    {"internal", kEncodingInternal},
    {"cp1258", kEncodingWindows95},
    {"windows1258", kEncodingWindows95},
    {"tcvn3", 14},
    {"vps", 18},
    {"tcvn5712", 12},
    {"vietwarex", 1},
    {"vietwaref", 2},
}};

// Lower case without blanks, dashes and underscores: "VNI-Windows ANSI" -> "vniwindowsansi".
std::string Folded(std::string_view s, bool keep_dashes) {
  std::string out;
  for (const char c : s) {
    if (c == ' ' || c == '\t' || c == '_' || (!keep_dashes && c == '-')) continue;
    out.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
  }
  return out;
}

bool IsSurrogate(char16_t u) {
  return u >= 0xD800 && u <= 0xDFFF;
}

// Lone surrogates are counted and, for a legacy target, replaced.
std::size_t CountLoneSurrogates(std::u16string& text, char16_t replacement) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t u = text[i];
    if (u >= 0xD800 && u <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
        text[i + 1] <= 0xDFFF) {
      ++i;
      continue;
    }
    if (IsSurrogate(u)) {
      ++count;
      if (replacement != 0) text[i] = replacement;
    }
  }
  return count;
}

std::u16string ReadUtf16(std::string_view bytes, std::size_t& invalid) {
  bool big_endian = false;
  std::size_t start = 0;
  if (bytes.size() >= 2) {
    const auto b0 = static_cast<unsigned char>(bytes[0]);
    const auto b1 = static_cast<unsigned char>(bytes[1]);
    if (b0 == 0xFF && b1 == 0xFE) {
      start = 2;
    } else if (b0 == 0xFE && b1 == 0xFF) {
      start = 2;
      big_endian = true;
    }
  }
  std::u16string out;
  out.reserve((bytes.size() - start) / 2 + 1);
  std::size_t i = start;
  for (; i + 1 < bytes.size(); i += 2) {
    const auto a = static_cast<unsigned char>(bytes[i]);
    const auto b = static_cast<unsigned char>(bytes[i + 1]);
    out.push_back(static_cast<char16_t>(big_endian ? (a << 8 | b) : (b << 8 | a)));
  }
  if (i < bytes.size()) {
    out.push_back(kReplacementCharacter);
    ++invalid;
  }
  return out;
}

void WriteUtf16(std::u16string_view text, std::string& out) {
  out.reserve(2 * text.size() + 2);
  out.push_back(static_cast<char>(0xFF));
  out.push_back(static_cast<char>(0xFE));
  for (const char16_t u : text) {
    out.push_back(static_cast<char>(u & 0xFF));
    out.push_back(static_cast<char>(u >> 8));
  }
}

} // namespace

std::optional<TextEncoding> FindTextEncoding(std::string_view name) {
  const std::string folded = Folded(name, true);
  if (folded == "utf-8" || folded == "utf8") return TextEncoding{TextEncoding::Kind::kUtf8, 0};
  if (folded == "utf-16" || folded == "utf16" || folded == "utf-16le" || folded == "utf16le")
    return TextEncoding{TextEncoding::Kind::kUtf16, 0};
  if (!folded.empty() && folded.size() <= 2 &&
      std::isdigit(static_cast<unsigned char>(folded[0])) &&
      std::isdigit(static_cast<unsigned char>(folded.back()))) {
    const int index = std::stoi(folded);
    if (index < kEncodingCount) return TextEncoding{TextEncoding::Kind::kLegacy, index};
    return std::nullopt;
  }
  const std::string loose = Folded(name, false);
  for (int i = 0; i < kEncodingCount; ++i)
    if (Folded(WorkingRecord::Stored(i)->name, false) == loose)
      return TextEncoding{TextEncoding::Kind::kLegacy, i};
  for (const auto& s : kShortNames)
    if (s.name == loose) return TextEncoding{TextEncoding::Kind::kLegacy, s.index};
  return std::nullopt;
}

std::string TextEncodingName(TextEncoding encoding) {
  switch (encoding.kind) {
  case TextEncoding::Kind::kUtf8:
    return "UTF-8";
  case TextEncoding::Kind::kUtf16:
    return "UTF-16";
  case TextEncoding::Kind::kLegacy:
    break;
  }
  const CharsetRecord* record = WorkingRecord::Stored(encoding.index);
  return record != nullptr ? std::string(record->name) : std::string();
}

ConvertedText ConvertText(std::string_view input, TextEncoding from, TextEncoding to) {
  ConvertedText result;
  const bool legacy_target = to.kind == TextEncoding::Kind::kLegacy;

  if (from.kind == TextEncoding::Kind::kLegacy) {
    if (legacy_target) {
      if (from.index == to.index) {
        result.bytes.assign(input);
        return result;
      }
      std::string pivot;
      ConvertCharset(input, pivot, from.index, kEncodingPivot);
      ExpandFromPivot(pivot, result.bytes, to.index);
      return result;
    }
    std::u16string utf16;
    LegacyToUtf16(from.index, input, &utf16);
    if (to.kind == TextEncoding::Kind::kUtf8)
      EncodeUtf8(utf16, result.bytes);
    else
      WriteUtf16(utf16, result.bytes);
    return result;
  }

  const char16_t replacement = legacy_target ? u'?' : kReplacementCharacter;
  std::u16string utf16;
  if (from.kind == TextEncoding::Kind::kUtf8) {
    utf16.reserve(input.size());
    result.invalid += DecodeUtf8(input, utf16, replacement);
  } else {
    utf16 = ReadUtf16(input, result.invalid);
    if (legacy_target)
      for (char16_t& u : utf16)
        if (u == kReplacementCharacter) u = replacement;
    result.invalid += CountLoneSurrogates(utf16, legacy_target ? replacement : 0);
  }

  switch (to.kind) {
  case TextEncoding::Kind::kUtf8:
    EncodeUtf8(utf16, result.bytes);
    break;
  case TextEncoding::Kind::kUtf16:
    WriteUtf16(utf16, result.bytes);
    break;
  case TextEncoding::Kind::kLegacy:
    result.unrepresentable += Utf16ToLegacy(to.index).Append(utf16, result.bytes);
    break;
  }
  return result;
}

} // namespace vntts
