// SPDX-License-Identifier: MIT
#pragma once
// What the markup reader makes of a text: pieces to speak in order, each text piece with the
// prosody in force and the place of every one of its bytes in the caller's text.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

// Factors relative to the speaker's own settings: 1 changes nothing.
struct Prosody {
  double rate = 1.0;   // pace
  double pitch = 1.0;  // fundamental frequency
  double volume = 1.0; // linear gain

  bool operator==(const Prosody&) const = default;
};

struct SpeechPiece {
  enum class Kind { kText, kMark, kBreak };
  Kind kind = Kind::kText;
  // kText: UTF-8 text to speak, entities decoded. kMark: the mark's name.
  std::string text;
  // kText: for each byte of `text`, the byte offset in the caller's text of what produced it,
  // plus one more entry: the offset just past the piece. A byte range [a, b) of `text` came
  // from [SourceAt(a), SourceAt(b)) of the caller's text. Empty when the piece is the
  // caller's bytes as they stand from `base` on (plain text). kMark, kBreak: empty; `base` is
  // the offset of the element.
  std::vector<std::uint32_t> source;
  std::uint32_t base = 0;
  Prosody prosody;            // kText
  bool spell = false;         // kText: read character by character
  std::uint32_t break_ms = 0; // kBreak

  std::uint32_t SourceAt(std::size_t i) const {
    return source.empty() ? base + static_cast<std::uint32_t>(i) : source[i];
  }
};

struct SpeechMarkup {
  bool is_markup = false; // the text was a <speak> document; else one text piece, untouched
  std::vector<SpeechPiece> pieces;
};

// Reads `text`: a document whose first element is <speak> is read as speech markup, anything
// else is plain text and comes back as one piece with every byte as it was. In markup, the
// elements speak, mark, break, say-as (interpret-as "characters", "spell-out" or "verbatim"
// spells), prosody (rate, pitch, volume) and sub (alias) are understood; other elements are
// left out and their content is spoken; comments and processing instructions are skipped.
// A '<' that does not open a well-formed tag, and an entity that is not known, are read as
// text. Never fails.
SpeechMarkup ReadSpeechMarkup(std::string_view text);

// Longest pause a <break> may ask for, so that markup cannot stall speech for minutes.
inline constexpr std::uint32_t kMaxBreakMs = 10000;

} // namespace vntts
