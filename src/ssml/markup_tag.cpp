// SPDX-License-Identifier: MIT
#include "ssml/markup_tag.h"

#include <charconv>

namespace vntts {
namespace {

constexpr std::size_t kMaxEntityLength = 12; // "&#x10FFFF;" and the named ones fit

bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':';
}
bool IsNameChar(char c) {
  return IsNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

std::size_t SkipSpace(std::string_view text, std::size_t pos) {
  while (pos < text.size() && IsSpace(text[pos]))
    ++pos;
  return pos;
}

// A name at `pos`: its end, or `pos` when there is none.
std::size_t NameEnd(std::string_view text, std::size_t pos) {
  if (pos >= text.size() || !IsNameStart(text[pos])) return pos;
  while (pos < text.size() && IsNameChar(text[pos]))
    ++pos;
  return pos;
}

void AppendUtf8(char32_t c, std::string& out) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

std::optional<char32_t> NumericReference(std::string_view digits) {
  int base = 10;
  if (!digits.empty() && (digits.front() == 'x' || digits.front() == 'X'))
    base = 16, digits.remove_prefix(1);
  std::uint32_t value = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  if (digits.empty() || error != std::errc{} || end != digits.data() + digits.size())
    return std::nullopt;
  // Only characters XML allows: no NUL or other C0 controls but blanks, no surrogates.
  const bool control = value < 0x20 && value != '\t' && value != '\n' && value != '\r';
  if (control || (value >= 0xD800 && value <= 0xDFFF) || value > 0x10FFFF) return std::nullopt;
  return static_cast<char32_t>(value);
}

// Attribute value between quotes at `pos`, entities decoded: the value and its end.
std::optional<std::pair<std::string, std::size_t>> QuotedValue(std::string_view text,
                                                               std::size_t pos) {
  if (pos >= text.size() || (text[pos] != '"' && text[pos] != '\'')) return std::nullopt;
  const char quote = text[pos++];
  std::string value;
  while (pos < text.size() && text[pos] != quote) {
    if (text[pos] == '<') return std::nullopt;
    if (text[pos] == '&') {
      auto entity = ReadEntity(text, pos);
      if (!entity) return std::nullopt;
      value += entity->first;
      pos = entity->second;
      continue;
    }
    value += text[pos++];
  }
  if (pos >= text.size()) return std::nullopt;
  return std::pair{std::move(value), pos + 1};
}

std::optional<MarkupTag> Delimited(std::string_view text, std::size_t body, CachedFind& closing,
                                   std::size_t closing_length, MarkupTag::Kind kind) {
  const std::size_t close = closing.From(text, body);
  if (close == std::string_view::npos) return std::nullopt;
  MarkupTag tag;
  tag.kind = kind;
  tag.content = text.substr(body, close - body);
  tag.end = close + closing_length;
  return tag;
}

std::optional<MarkupTag> ElementTag(std::string_view text, std::size_t pos) {
  MarkupTag tag;
  const bool closing = text[pos + 1] == '/';
  std::size_t p = pos + (closing ? 2 : 1);
  const std::size_t name_end = NameEnd(text, p);
  if (name_end == p) return std::nullopt;
  tag.name = std::string(text.substr(p, name_end - p));
  p = name_end;
  tag.kind = closing ? MarkupTag::Kind::kEnd : MarkupTag::Kind::kStart;
  while (true) {
    const std::size_t after_space = SkipSpace(text, p);
    if (after_space >= text.size()) return std::nullopt;
    if (text[after_space] == '>') {
      tag.end = after_space + 1;
      return tag;
    }
    if (!closing && text.compare(after_space, 2, "/>") == 0) {
      tag.kind = MarkupTag::Kind::kEmpty;
      tag.end = after_space + 2;
      return tag;
    }
    // An attribute must be set off from what precedes it by a blank.
    if (closing || after_space == p) return std::nullopt;
    const std::size_t key_end = NameEnd(text, after_space);
    if (key_end == after_space) return std::nullopt;
    p = SkipSpace(text, key_end);
    if (p >= text.size() || text[p] != '=') return std::nullopt;
    auto value = QuotedValue(text, SkipSpace(text, p + 1));
    if (!value) return std::nullopt;
    tag.attributes.emplace_back(std::string(text.substr(after_space, key_end - after_space)),
                                std::move(value->first));
    p = value->second;
  }
}

} // namespace

const std::string* MarkupTag::Attribute(std::string_view key) const {
  for (const auto& [k, v] : attributes)
    if (k == key) return &v;
  return nullptr;
}

std::size_t CachedFind::From(std::string_view text, std::size_t pos) {
  if (!valid_ || pos < from_ || (found_ != std::string_view::npos && pos > found_)) {
    found_ = text.find(needle_, pos);
    from_ = pos;
    valid_ = true;
  }
  return found_;
}

std::optional<MarkupTag> ReadTag(std::string_view text, std::size_t pos, TagFinders& finders) {
  if (pos + 1 >= text.size() || text[pos] != '<') return std::nullopt;
  const std::string_view rest = text.substr(pos);
  if (rest.starts_with("<!--"))
    return Delimited(text, pos + 4, finders.comment_end, 3, MarkupTag::Kind::kComment);
  if (rest.starts_with("<![CDATA["))
    return Delimited(text, pos + 9, finders.cdata_end, 3, MarkupTag::Kind::kCData);
  if (rest.starts_with("<?"))
    return Delimited(text, pos + 2, finders.instruction_end, 2, MarkupTag::Kind::kInstruction);
  if (rest.starts_with("<!")) {
    // A declaration such as DOCTYPE, without an internal subset.
    const std::size_t close = text.find_first_of("<>", pos + 2);
    if (close == std::string_view::npos || text[close] != '>') return std::nullopt;
    MarkupTag tag;
    tag.kind = MarkupTag::Kind::kDeclaration;
    tag.end = close + 1;
    return tag;
  }
  return ElementTag(text, pos);
}

std::optional<std::pair<std::string, std::size_t>> ReadEntity(std::string_view text,
                                                              std::size_t pos) {
  // Looking no further than the longest reference keeps a text full of '&' linear.
  const std::size_t found = text.substr(pos + 1, kMaxEntityLength).find(';');
  if (found == std::string_view::npos) return std::nullopt;
  const std::size_t semicolon = pos + 1 + found;
  const std::string_view name = text.substr(pos + 1, semicolon - pos - 1);
  static constexpr std::pair<std::string_view, std::string_view> kNamed[] = {
      {"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}};
  for (const auto& [n, v] : kNamed)
    if (name == n) return std::pair{std::string(v), semicolon + 1};
  if (name.size() < 2 || name.front() != '#') return std::nullopt;
  const auto code = NumericReference(name.substr(1));
  if (!code) return std::nullopt;
  std::string utf8;
  AppendUtf8(*code, utf8);
  return std::pair{std::move(utf8), semicolon + 1};
}

} // namespace vntts
