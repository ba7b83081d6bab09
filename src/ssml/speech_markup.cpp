// SPDX-License-Identifier: MIT
#include "ssml/speech_markup.h"

#include <algorithm>
#include <optional>

#include "ssml/markup_tag.h"
#include "ssml/prosody_values.h"

namespace vntts {
namespace {

constexpr std::size_t kMaxDepth = 64;
constexpr std::uint32_t kDefaultBreakMs = 400; // a <break/> without attributes: "medium"
constexpr double kMinFactor = 1.0 / 16, kMaxFactor = 16;

struct Style {
  Prosody prosody;
  bool spell = false;
  bool hidden = false; // inside <sub>: the alias is spoken instead

  bool operator==(const Style&) const = default;
};

struct OpenElement {
  std::string name;
  Style style;
};

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

double Scaled(double factor, const std::optional<double>& by, double lowest = kMinFactor) {
  return by ? std::clamp(factor * *by, lowest, kMaxFactor) : factor;
}

class MarkupReader {
public:
  explicit MarkupReader(std::string_view text) : text_(text) {}

  SpeechMarkup Read() {
    SpeechMarkup out;
    const std::optional<std::size_t> body = AfterSpeakTag();
    if (!body) {
      if (!text_.empty()) {
        SpeechPiece plain;
        plain.text = std::string(text_);
        out.pieces.push_back(std::move(plain));
      }
      return out;
    }
    out.is_markup = true;
    Walk(*body);
    Flush();
    out.pieces = std::move(pieces_);
    return out;
  }

private:
  const Style& Current() const { return stack_.empty() ? base_ : stack_.back().style; }

  // Where the content of the root <speak> element starts, when the text is a document:
  // blanks, a byte-order mark, an XML declaration, comments and a DOCTYPE may come first.
  std::optional<std::size_t> AfterSpeakTag() {
    std::size_t pos = text_.starts_with("\xEF\xBB\xBF") ? 3 : 0;
    while (true) {
      while (pos < text_.size() && IsBlank(text_[pos]))
        ++pos;
      const auto tag = ReadTag(text_, pos, finders_);
      if (!tag) return std::nullopt;
      switch (tag->kind) {
      case MarkupTag::Kind::kComment:
      case MarkupTag::Kind::kInstruction:
      case MarkupTag::Kind::kDeclaration:
        pos = tag->end;
        continue;
      case MarkupTag::Kind::kStart:
      case MarkupTag::Kind::kEmpty:
        if (tag->name != "speak") return std::nullopt;
        if (tag->kind == MarkupTag::Kind::kStart) stack_.push_back({tag->name, base_});
        return tag->end;
      default:
        return std::nullopt;
      }
    }
  }

  void Walk(std::size_t pos) {
    while (pos < text_.size()) {
      const char c = text_[pos];
      if (c == '<') {
        if (auto tag = ReadTag(text_, pos, finders_)) {
          OnTag(*tag, pos);
          pos = tag->end;
          continue;
        }
      } else if (c == '&') {
        if (auto entity = ReadEntity(text_, pos)) {
          AppendText(entity->first, pos, entity->second);
          pos = entity->second;
          continue;
        }
      }
      // A run of plain bytes up to the next markup character.
      const std::size_t next = std::min(text_.find_first_of("<&", pos + 1), text_.size());
      AppendSource(pos, next);
      pos = next;
    }
  }

  void OnTag(const MarkupTag& tag, std::size_t at) {
    using Kind = MarkupTag::Kind;
    if (tag.kind == Kind::kCData) {
      const auto from = static_cast<std::size_t>(tag.content.data() - text_.data());
      AppendSource(from, from + tag.content.size());
      return;
    }
    if (tag.kind == Kind::kEnd) {
      if (tag.name == "p" || tag.name == "s") AppendText(" ", at, tag.end);
      const auto open = std::find_if(stack_.rbegin(), stack_.rend(),
                                     [&](const OpenElement& e) { return e.name == tag.name; });
      if (open != stack_.rend()) stack_.erase(std::next(open).base(), stack_.end());
      return;
    }
    if (tag.kind != Kind::kStart && tag.kind != Kind::kEmpty) return;
    if (tag.name == "p" || tag.name == "s") AppendText(" ", at, tag.end); // keep words apart
    Style style = Current();
    if (!style.hidden) Element(tag, at, style);
    if (tag.kind == Kind::kStart && stack_.size() < kMaxDepth) stack_.push_back({tag.name, style});
  }

  // What an element does where it stands, and the style of its content.
  void Element(const MarkupTag& tag, std::size_t at, Style& style) {
    if (tag.name == "mark") {
      if (const std::string* name = tag.Attribute("name"))
        Emit(SpeechPiece::Kind::kMark, *name, at);
    } else if (tag.name == "break") {
      std::optional<std::uint32_t> ms;
      if (const std::string* time = tag.Attribute("time")) ms = ReadBreakTime(*time);
      if (const std::string* strength = tag.Attribute("strength"); !ms && strength)
        ms = ReadBreakStrength(*strength);
      Emit(SpeechPiece::Kind::kBreak, {}, at).break_ms = ms.value_or(kDefaultBreakMs);
    } else if (tag.name == "say-as") {
      const std::string* how = tag.Attribute("interpret-as");
      style.spell = how && (*how == "characters" || *how == "spell-out" || *how == "verbatim");
    } else if (tag.name == "prosody") {
      Prosody& p = style.prosody;
      if (const std::string* v = tag.Attribute("rate")) p.rate = Scaled(p.rate, ReadRate(*v));
      if (const std::string* v = tag.Attribute("pitch")) p.pitch = Scaled(p.pitch, ReadPitch(*v));
      if (const std::string* v = tag.Attribute("volume"))
        p.volume = Scaled(p.volume, ReadVolume(*v), 0.0);
    } else if (tag.name == "sub") {
      if (const std::string* alias = tag.Attribute("alias")) {
        AppendText(*alias, at, tag.end);
        style.hidden = true;
      }
    }
  }

  SpeechPiece& Emit(SpeechPiece::Kind kind, std::string text, std::size_t at) {
    Flush();
    SpeechPiece& piece = pieces_.emplace_back();
    piece.kind = kind;
    piece.text = std::move(text);
    piece.base = static_cast<std::uint32_t>(at);
    return piece;
  }

  // Bytes [from, to) of the caller's text, as they stand.
  void AppendSource(std::size_t from, std::size_t to) {
    if (!Begin()) return;
    current_->text.append(text_.substr(from, to - from));
    for (std::size_t i = from; i < to; ++i)
      current_->source.push_back(static_cast<std::uint32_t>(i));
    current_end_ = to;
  }

  // Text that stands for the caller's bytes [from, to) (an entity, an alias).
  void AppendText(std::string_view text, std::size_t from, std::size_t to) {
    if (!Begin()) return;
    current_->text.append(text);
    current_->source.insert(current_->source.end(), text.size(), static_cast<std::uint32_t>(from));
    current_end_ = to;
  }

  // Makes sure a text piece in the current style is open; false inside hidden content.
  bool Begin() {
    const Style& style = Current();
    if (style.hidden) return false;
    if (current_ && !(current_style_ == style)) Flush();
    if (!current_) {
      current_.emplace();
      current_->prosody = style.prosody;
      current_->spell = style.spell;
      current_style_ = style;
    }
    return true;
  }

  void Flush() {
    if (!current_) return;
    const bool blank = std::all_of(current_->text.begin(), current_->text.end(), IsBlank);
    if (!blank) {
      current_->source.push_back(static_cast<std::uint32_t>(current_end_));
      current_->base = current_->source.front();
      pieces_.push_back(std::move(*current_));
    }
    current_.reset();
  }

  std::string_view text_;
  TagFinders finders_;
  Style base_;
  std::vector<OpenElement> stack_;
  std::vector<SpeechPiece> pieces_;
  std::optional<SpeechPiece> current_;
  Style current_style_;
  std::size_t current_end_ = 0;
};

} // namespace

SpeechMarkup ReadSpeechMarkup(std::string_view text) {
  return MarkupReader(text).Read();
}

} // namespace vntts
