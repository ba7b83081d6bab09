// SPDX-License-Identifier: MIT
#include "synthesis/host_synthesis.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "ssml/speech_markup.h"
#include "synthesis/spelled_text.h"
#include "synthesis/utf8_text_map.h"

namespace vntts {
namespace {

constexpr double kUnitRate = 22050;

// The text of one piece as the engine reads it, and the way from its internal offsets back
// to the caller's text: internal -> the piece's UTF-8 (through the spelling, if any) -> the
// caller's bytes.
class PieceText {
public:
  PieceText(const SpeechPiece& piece, bool spell) : piece_(piece) {
    if (spell) spelled_ = SpellOut(piece.text);
    map_.emplace(spelled_ ? std::string_view(spelled_->text) : std::string_view(piece.text));
  }

  const std::string& internal() const { return map_->internal(); }

  std::pair<std::uint32_t, std::uint32_t> ToCaller(std::uint32_t start,
                                                   std::uint32_t length) const {
    auto [from, to] = map_->ToUtf8(start, length);
    if (spelled_) from = spelled_->source[from], to = spelled_->source[to];
    const std::uint32_t a = piece_.SourceAt(from), b = piece_.SourceAt(to);
    return {a, std::max(a, b)};
  }

private:
  const SpeechPiece& piece_;
  std::optional<SpelledText> spelled_;
  std::optional<Utf8TextMap> map_;
};

class HostSynthesis {
public:
  HostSynthesis(const HostSynthesisOptions& options, SentenceSource& source,
                const HostChunkSink& sink)
      : options_(options), source_(source), sink_(sink) {}

  HostSynthesisResult Run(std::string_view utf8) {
    SpeechMarkup markup;
    if (options_.markup) {
      markup = ReadSpeechMarkup(utf8);
    } else if (!utf8.empty()) {
      markup.pieces.emplace_back().text = std::string(utf8);
    }
    for (const SpeechPiece& piece : markup.pieces) {
      if (!Piece(piece)) return HostSynthesisResult::kStopped;
    }
    // Marks after the last sound still reach the host, in a chunk without samples.
    if (!pending_.empty() && !Deliver({})) return HostSynthesisResult::kStopped;
    return HostSynthesisResult::kDone;
  }

private:
  bool Piece(const SpeechPiece& piece) {
    switch (piece.kind) {
    case SpeechPiece::Kind::kMark:
      pending_.push_back({HostEvent::Kind::kMark, position_, piece.base, 0, piece.text});
      return true;
    case SpeechPiece::Kind::kBreak: {
      const std::vector<std::int16_t> silence(
          static_cast<std::size_t>(std::lround(piece.break_ms * kUnitRate / 1000)), 0);
      return Deliver(silence);
    }
    case SpeechPiece::Kind::kText:
      break;
    }
    const PieceText text(piece, options_.spell || piece.spell);
    const double gain = piece.prosody.volume;
    return source_.Render(
        text.internal(), piece.prosody.rate, piece.prosody.pitch, [&](RenderedSentence& sentence) {
          if (gain != 1.0)
            for (std::int16_t& s : sentence.samples)
              s = static_cast<std::int16_t>(std::clamp(std::lround(s * gain), -32768L, 32767L));
          return Sentence(text, sentence);
        });
  }

  bool Sentence(const PieceText& text, const RenderedSentence& sentence) {
    const auto [s_from, s_to] = text.ToCaller(sentence.text_start, sentence.text_length);
    pending_.push_back({HostEvent::Kind::kSentence, position_, s_from, s_to - s_from, {}});
    for (const RenderedWord& w : sentence.words) {
      const auto [from, to] = text.ToCaller(w.text_start, w.text_length);
      const std::uint64_t at = position_ + std::min<std::size_t>(w.frame, sentence.samples.size());
      pending_.push_back({HostEvent::Kind::kWord, at, from, to - from, {}});
    }
    return Deliver(sentence.samples);
  }

  bool Deliver(std::span<const std::int16_t> samples) {
    const bool go_on = sink_(samples, pending_);
    pending_.clear();
    position_ += samples.size();
    return go_on;
  }

  const HostSynthesisOptions& options_;
  SentenceSource& source_;
  const HostChunkSink& sink_;
  std::vector<HostEvent> pending_;
  std::uint64_t position_ = 0;
};

} // namespace

HostSynthesisResult SynthesizeForHost(std::string_view utf8, const HostSynthesisOptions& options,
                                      SentenceSource& source, const HostChunkSink& sink) {
  return HostSynthesis(options, source, sink).Run(utf8);
}

} // namespace vntts
