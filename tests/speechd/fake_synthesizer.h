// SPDX-License-Identifier: MIT
#pragma once
// A voice for the protocol tests: for each text piece of a request's markup it hands over as
// many samples of value 1000 as the piece has bytes (in `chunks` parts, `delay` apart), and
// each mark where it stands.
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

#include "protocol/synthesizer.h"
#include "ssml/speech_markup.h"

namespace vntts::speechd::test {

class FakeSynthesizer : public Synthesizer {
public:
  int chunks = 1;
  std::chrono::milliseconds delay{0};

  bool Init(std::string& status) override {
    status = "fake voice ready";
    return true;
  }
  std::vector<VoiceInfo> Voices() const override { return {{"fake", "vi", "none"}}; }
  std::uint32_t SampleRate() const override { return 22050; }

  void Speak(const SpeechRequest& request, SynthesisSink& sink) override {
    {
      std::lock_guard lock(mutex_);
      requests_.push_back(request);
    }
    for (const SpeechPiece& piece : ReadSpeechMarkup(request.text).pieces) {
      if (piece.kind == SpeechPiece::Kind::kMark && !sink.Mark(piece.text)) return;
      if (piece.kind != SpeechPiece::Kind::kText) continue;
      const std::vector<std::int16_t> samples(piece.text.size(), 1000);
      for (int c = 0; c < chunks; ++c) {
        std::this_thread::sleep_for(delay);
        if (!sink.Audio(samples)) return;
      }
    }
  }

  std::vector<SpeechRequest> requests() {
    std::lock_guard lock(mutex_);
    return requests_;
  }

private:
  std::mutex mutex_;
  std::vector<SpeechRequest> requests_;
};

} // namespace vntts::speechd::test
