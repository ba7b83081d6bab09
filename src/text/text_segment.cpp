// SPDX-License-Identifier: MIT
#include "text/text_segment.h"

#include "text/char_classes.h"
#include "text/classifier.h"
#include "text/readings.h"

namespace vntts {

const std::string& TextSegment::First() {
  token_start = scan_pos = 0;
  current.clear();
  lookahead = NextToken();
  return current;
}

const std::string& TextSegment::Next() {
  token_start = scan_pos;
  current = std::move(lookahead);
  lookahead = NextToken();
  return current;
}

std::string TextSegment::NextToken() {
  const auto size = static_cast<int>(text.size());
  if (scan_pos < 0 || scan_pos > size) scan_pos = size;
  if (token_class == token_class::kRestOfText) {
    token_class = token_class::kNone;
    std::string rest = text.substr(static_cast<std::size_t>(scan_pos));
    scan_pos = size;
    return rest;
  }
  while (scan_pos < size && IsBlank(text[static_cast<std::size_t>(scan_pos)]))
    ++scan_pos;
  if (scan_pos >= size) return {};
  auto at = [&](int i) { return text[static_cast<std::size_t>(i)]; };
  const bool numeric = IsDigit(at(scan_pos));
  std::string token;
  while (scan_pos < size && IsWordChar(at(scan_pos))) {
    if (numeric && scan_pos + 1 < size &&
        (at(scan_pos + 1) == '/' || at(scan_pos + 1) == '.' || at(scan_pos + 1) == ',')) {
      token += at(scan_pos++);
    }
    token += at(scan_pos++);
  }
  if (token.empty()) {
    token += at(scan_pos++);
  }
  return token;
}

void TextSegment::SetText(std::string s) {
  text = std::move(s);
  current.clear();
  lookahead.clear();
  token_start = scan_pos = 0;
}

int TextSegment::PauseWeight(char c) {
  switch (c) {
  case '\n':
  case '\r':
  case '!':
  case '?':
    return 5000;
  case ',':
    return 600;
  case '.':
  case ':':
  case ';':
    return 4000;
  default:
    return IsWordChar(c) ? 0 : 20;
  }
}

int TextSegment::SegmentPauseWeight() const {
  if (text.size() == 1 || (text.size() == 2 && (text[0] == '\r' || text[0] == '\n')))
    return PauseWeight(text[0]);
  return 0;
}

int TextSegment::Classify(std::string_view token) const {
  return vntts::Classify(token, previous_word);
}

void TextSegment::Dispatch(const DefinitionLookup* definitions) {
  using namespace token_class;
  if (IsPause()) return;
  source_text = text;
  if (token_class == kCompound) {
    if (definitions != nullptr)
      if (auto definition = definitions->FindDefinition(text)) text = std::move(*definition);
    definition_checked = 1;
    if (text.empty()) return;
    text = LowerInternal(text);
    std::string spoken;
    First();
    while (!Next().empty()) {
      const int cls = Classify(current);
      switch (cls) {
      case kNumber:
      case kDate:
      case kDriverNumber:
      case kAmount:
      case kTime:
      case kOver:
      case kAddress:
      case kRange:
      case kTelephone:
      case kMeasure:
        if (auto reading = Normalise(cls, current, previous_word)) spoken += *reading;
        break;
      default:
        break; // symbols, expressions and plain words add nothing here
      }
    }
    SetText(std::move(spoken));
    return;
  }
  if (token_class >= 'A' && token_class <= 'O')
    if (auto reading = Normalise(token_class, text, previous_word)) SetText(std::move(*reading));
}

} // namespace vntts
