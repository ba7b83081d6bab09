// SPDX-License-Identifier: MIT
#include "vietnamese_letters.h"

#include <array>

namespace voicegen {
namespace {

// Each row: the vowel without tone, then sắc, huyền, hỏi, ngã, nặng.
constexpr std::array<std::array<char32_t, 6>, 12> kVowels = {{
    {U'a', U'á', U'à', U'ả', U'ã', U'ạ'},
    {U'ă', U'ắ', U'ằ', U'ẳ', U'ẵ', U'ặ'},
    {U'â', U'ấ', U'ầ', U'ẩ', U'ẫ', U'ậ'},
    {U'e', U'é', U'è', U'ẻ', U'ẽ', U'ẹ'},
    {U'ê', U'ế', U'ề', U'ể', U'ễ', U'ệ'},
    {U'i', U'í', U'ì', U'ỉ', U'ĩ', U'ị'},
    {U'o', U'ó', U'ò', U'ỏ', U'õ', U'ọ'},
    {U'ô', U'ố', U'ồ', U'ổ', U'ỗ', U'ộ'},
    {U'ơ', U'ớ', U'ờ', U'ở', U'ỡ', U'ợ'},
    {U'u', U'ú', U'ù', U'ủ', U'ũ', U'ụ'},
    {U'ư', U'ứ', U'ừ', U'ử', U'ữ', U'ự'},
    {U'y', U'ý', U'ỳ', U'ỷ', U'ỹ', U'ỵ'},
}};

const std::array<char32_t, 6>* RowOf(char32_t c) {
  for (const auto& row : kVowels)
    for (char32_t v : row)
      if (v == c) return &row;
  return nullptr;
}

} // namespace

bool IsVowel(char32_t c) {
  return RowOf(ToLower(c)) != nullptr;
}

char32_t ToneBase(char32_t c) {
  const auto* row = RowOf(c);
  return row ? (*row)[0] : c;
}

char32_t WithTone(char32_t base, Tone tone) {
  const auto* row = RowOf(base);
  return row ? (*row)[tone] : base;
}

bool HasQualityMark(char32_t base) {
  return base == U'ă' || base == U'â' || base == U'ê' || base == U'ô' || base == U'ơ' ||
         base == U'ư';
}

char32_t ToLower(char32_t c) {
  if (c >= U'A' && c <= U'Z') return c + 0x20;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 0x20;
  if (c >= 0x1EA0 && c <= 0x1EF9)
    return c | 1; // upper case at even code points, lower case right after
  switch (c) {
  case 0x102: // Ă
  case 0x110: // Đ
  case 0x128: // Ĩ
  case 0x168: // Ũ
  case 0x1A0: // Ơ
    return c + 1;
  case 0x1AF: // Ư
    return 0x1B0;
  default:
    return c;
  }
}

std::u32string ToLower(std::u32string_view s) {
  std::u32string out(s);
  for (auto& c : out)
    c = ToLower(c);
  return out;
}

bool IsLetter(char32_t c) {
  c = ToLower(c);
  return (c >= U'a' && c <= U'z') || c == U'đ' || RowOf(c) != nullptr;
}

std::u32string FromUtf8(std::string_view s) {
  std::u32string out;
  for (std::size_t i = 0; i < s.size();) {
    const auto b = static_cast<unsigned char>(s[i]);
    const int extra = b < 0x80 ? 0 : b < 0xE0 ? 1 : b < 0xF0 ? 2 : 3;
    char32_t cp = extra == 0 ? b : extra == 1 ? (b & 0x1F) : extra == 2 ? (b & 0x0F) : (b & 0x07);
    for (int k = 1; k <= extra && i + k < s.size(); ++k)
      cp = (cp << 6) | (static_cast<unsigned char>(s[i + k]) & 0x3F);
    out.push_back(cp);
    i += static_cast<std::size_t>(extra) + 1;
  }
  return out;
}

std::string ToUtf8(std::u32string_view s) {
  std::string out;
  for (char32_t c : s) {
    if (c < 0x80) {
      out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (c >> 6)));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (c >> 12)));
      out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (c >> 18)));
      out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
  }
  return out;
}

} // namespace voicegen
