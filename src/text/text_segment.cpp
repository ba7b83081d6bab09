#include "text/text_segment.h"

#include "text/char_classes.h"
#include "text/classifier.h"
#include "text/readings.h"

namespace vntts {

const std::string& TextSegment::First() {
  tokenStart = scanPos = 0;
  current.clear();
  lookahead = NextToken();
  return current;
}

const std::string& TextSegment::Next() {
  tokenStart = scanPos;
  current = std::move(lookahead);
  lookahead = NextToken();
  return current;
}

std::string TextSegment::NextToken() {
  const auto size = static_cast<int>(text.size());
  if (scanPos < 0 || scanPos > size) scanPos = size;
  if (tokenClass == token_class::kRestOfText) {
    tokenClass = token_class::kNone;
    std::string rest = text.substr(static_cast<std::size_t>(scanPos));
    scanPos = size;
    return rest;
  }
  while (scanPos < size && IsBlank(text[static_cast<std::size_t>(scanPos)]))
    ++scanPos;
  if (scanPos >= size) return {};
  auto at = [&](int i) { return text[static_cast<std::size_t>(i)]; };
  const bool numeric = IsDigit(at(scanPos));
  std::string token;
  while (scanPos < size && IsWordChar(at(scanPos))) {
    if (numeric && scanPos + 1 < size &&
        (at(scanPos + 1) == '/' || at(scanPos + 1) == '.' || at(scanPos + 1) == ',')) {
      token += at(scanPos++);
    }
    token += at(scanPos++);
  }
  if (token.empty()) {
    token += at(scanPos++);
  }
  return token;
}

void TextSegment::SetText(std::string s) {
  text = std::move(s);
  current.clear();
  lookahead.clear();
  tokenStart = scanPos = 0;
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
  return vntts::Classify(token, previousWord);
}

void TextSegment::Dispatch(const DefinitionLookup* definitions) {
  using namespace token_class;
  if (IsPause()) return;
  sourceText = text;
  if (tokenClass == kCompound) {
    if (definitions != nullptr)
      if (auto definition = definitions->FindDefinition(text)) text = std::move(*definition);
    definitionChecked = 1;
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
        if (auto reading = Normalise(cls, current, previousWord)) spoken += *reading;
        break;
      default:
        break; // symbols, expressions and plain words add nothing here
      }
    }
    SetText(std::move(spoken));
    return;
  }
  if (tokenClass >= 'A' && tokenClass <= 'O')
    if (auto reading = Normalise(tokenClass, text, previousWord)) SetText(std::move(*reading));
}

} // namespace vntts
