// SPDX-License-Identifier: MIT
#include "ssml_text.h"

#include "ssml/speech_markup.h"

namespace vntts::cli {
namespace {

// One character a word: the UTF-8 sequences of text with blanks between them.
std::string Spelled(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool starts_character = (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80;
    if (starts_character && !out.empty()) out += ' ';
    out += text[i];
  }
  return out;
}

} // namespace

std::string SsmlToText(std::string_view ssml) {
  const SpeechMarkup markup = ReadSpeechMarkup(ssml);
  std::string out;
  for (const SpeechPiece& piece : markup.pieces) {
    if (piece.kind == SpeechPiece::Kind::kBreak) out += '\n';
    if (piece.kind != SpeechPiece::Kind::kText) continue;
    out += piece.spell ? ' ' + Spelled(piece.text) + ' ' : piece.text;
  }
  return out;
}

} // namespace vntts::cli
