// SPDX-License-Identifier: MIT
#pragma once
// The module's voice: libvntts, through its public interface only (synthesis into a callback,
// the lasting speed and the pitch).
#include "protocol/synthesizer.h"

namespace vntts::speechd {

class LibrarySynthesizer : public Synthesizer {
public:
  bool Init(std::string& status) override;
  std::vector<VoiceInfo> Voices() const override;
  std::uint32_t SampleRate() const override { return 22050; }
  void Speak(const SpeechRequest& request, SynthesisSink& sink) override;
};

} // namespace vntts::speechd
