// SPDX-License-Identifier: MIT
#include "ssml_text.h"

#include <array>
#include <charconv>
#include <cstdint>

namespace vntts::cli {
namespace {

struct Entity {
  std::string_view name;
  char text;
};
constexpr std::array<Entity, 5> kEntities{
    {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};

constexpr std::array<std::string_view, 3> kSeparating{"break", "p", "s"};

void AppendUtf8(std::uint32_t c, std::string& out) {
  if (c == 0 || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | c >> 6);
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | c >> 12);
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | c >> 18);
    out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

// Decodes the reference that starts at text[0] == '&'; returns the bytes it used (0: not one).
std::size_t DecodeReference(std::string_view text, std::string& out) {
  const std::size_t end = text.find(';');
  if (end == std::string_view::npos || end > 12) return 0;
  const std::string_view name = text.substr(1, end - 1);
  for (const auto& e : kEntities) {
    if (name == e.name) {
      out += e.text;
      return end + 1;
    }
  }
  if (name.size() < 2 || name[0] != '#') return 0;
  const bool hex = name[1] == 'x' || name[1] == 'X';
  const std::string_view digits = name.substr(hex ? 2 : 1);
  std::uint32_t code = 0;
  const auto [stop, ec] =
      std::from_chars(digits.data(), digits.data() + digits.size(), code, hex ? 16 : 10);
  if (ec != std::errc() || stop != digits.data() + digits.size()) return 0;
  AppendUtf8(code, out);
  return end + 1;
}

std::string_view ElementName(std::string_view tag) {
  std::size_t start = tag.starts_with('/') ? 1 : 0;
  std::size_t end = start;
  while (end < tag.size() && tag[end] != ' ' && tag[end] != '/' && tag[end] != '\t' &&
         tag[end] != '\n' && tag[end] != '>')
    ++end;
  return tag.substr(start, end - start);
}

} // namespace

std::string SsmlToText(std::string_view ssml) {
  std::string out;
  std::size_t i = 0;
  while (i < ssml.size()) {
    const char c = ssml[i];
    if (c == '&') {
      const std::size_t used = DecodeReference(ssml.substr(i), out);
      if (used == 0) out += '&';
      i += used == 0 ? 1 : used;
      continue;
    }
    if (c != '<') {
      out += c;
      ++i;
      continue;
    }
    const std::string_view rest = ssml.substr(i);
    if (rest.starts_with("<![CDATA[")) {
      const std::size_t end = rest.find("]]>");
      out += rest.substr(9, end == std::string_view::npos ? std::string_view::npos : end - 9);
      if (end == std::string_view::npos) break;
      i += end + 3;
      continue;
    }
    const std::string_view closer = rest.starts_with("<!--") ? "-->" : ">";
    const std::size_t end = rest.find(closer);
    if (end == std::string_view::npos) break;
    const std::string_view tag = rest.substr(1, end - 1);
    for (const auto name : kSeparating)
      if (ElementName(tag) == name) out += '\n';
    i += end + closer.size();
  }
  return out;
}

} // namespace vntts::cli
