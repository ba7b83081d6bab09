// SPDX-License-Identifier: MIT
#pragma once
// The voice behind the module: the library in the real module, a fake in the protocol tests.
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "speech_request.h"

namespace vntts::speechd {

// Receives the speech of one request in order. Each call answers whether to go on: false
// stops the synthesis as soon as it can.
class SynthesisSink {
public:
  virtual ~SynthesisSink() = default;
  virtual bool Audio(std::span<const std::int16_t> samples) = 0;
  virtual bool Mark(std::string_view name) = 0;
};

struct VoiceInfo {
  std::string name, language, variant;
};

class Synthesizer {
public:
  virtual ~Synthesizer() = default;
  // Prepares the voice; on failure says why in `status`.
  virtual bool Init(std::string& status) = 0;
  virtual std::vector<VoiceInfo> Voices() const = 0;
  virtual std::uint32_t SampleRate() const = 0;
  // Speaks `request` into `sink` on the calling thread; returns when all is said or when the
  // sink asked to stop.
  virtual void Speak(const SpeechRequest& request, SynthesisSink& sink) = 0;
};

} // namespace vntts::speechd
