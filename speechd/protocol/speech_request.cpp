// SPDX-License-Identifier: MIT
#include "speech_request.h"

namespace vntts::speechd {
namespace {

std::string Escaped(std::string_view text) {
  std::string out;
  for (char c : text) {
    switch (c) {
    case '<':
      out += "&lt;";
      break;
    case '>':
      out += "&gt;";
      break;
    case '&':
      out += "&amp;";
      break;
    case '"':
      out += "&quot;";
      break;
    default:
      out += c;
    }
  }
  return out;
}

// The one code point `text` holds, or -1 when it holds none or more.
long SingleCodePoint(std::string_view text) {
  if (text.empty()) return -1;
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (text.size() != length) return -1;
  if (length == 1) return lead;
  long code = lead & (0x3F >> (length - 1));
  for (std::size_t i = 1; i < length; ++i)
    code = (code << 6) | (static_cast<unsigned char>(text[i]) & 0x3F);
  return code;
}

// Capital letters of Vietnamese: A-Z, the accented capitals of Latin-1, Ă Đ Ĩ Ũ Ơ Ư, and the
// even code points of the Vietnamese block U+1EA0..U+1EF9.
bool IsCapital(long c) {
  if ((c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDD && c != 0xD7)) return true;
  if (c == 0x102 || c == 0x110 || c == 0x128 || c == 0x168 || c == 0x1A0 || c == 0x1AF) return true;
  return c >= 0x1EA0 && c <= 0x1EF9 && c % 2 == 0;
}

std::string Spelled(std::string_view character) {
  return "<say-as interpret-as=\"characters\">" + Escaped(character) + "</say-as>";
}

std::string CharMarkup(std::string_view data, const ModuleSettings& settings, std::string& icon) {
  if (data == "space") return KeyWords("space");
  const long code = SingleCodePoint(data);
  if (code < 0) return Escaped(data); // words the server made of a symbol
  std::string out;
  if (IsCapital(code) && settings.cap_let_recogn == "spell") out = "hoa ";
  if (IsCapital(code) && settings.cap_let_recogn == "icon") icon = "capital";
  return out + Spelled(data);
}

std::string KeyMarkup(std::string_view name) {
  std::string out;
  std::size_t start = 0;
  while (start <= name.size()) {
    std::size_t end = name.find('_', start);
    if (end == std::string_view::npos) end = name.size();
    const std::string_view part = name.substr(start, end - start);
    if (!part.empty()) {
      if (!out.empty()) out += ' ';
      const std::string words = KeyWords(part);
      out += !words.empty()               ? Escaped(words)
             : SingleCodePoint(part) >= 0 ? Spelled(part)
                                          : Escaped(part);
    }
    start = end + 1;
  }
  return out;
}

} // namespace

SpeechRequest RequestFor(MessageKind kind, std::string_view data, const ModuleSettings& settings) {
  SpeechRequest request;
  request.speed = settings.Speed();
  request.pitch = settings.Pitch();
  request.gain = settings.Gain();
  switch (kind) {
  case MessageKind::kText:
    request.text = data;
    request.spell = settings.Spelling();
    break;
  case MessageKind::kChar:
    request.text = "<speak>" + CharMarkup(data, settings, request.icon_before) + "</speak>";
    break;
  case MessageKind::kKey:
    request.text = "<speak>" + KeyMarkup(data) + "</speak>";
    break;
  }
  return request;
}

} // namespace vntts::speechd
