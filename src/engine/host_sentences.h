// SPDX-License-Identifier: MIT
#pragma once
// Sentences for host synthesis, made by the speak driver exactly as it makes them for the
// device or a WAV file: a speech into a sink that hands each finished sentence (16-bit mono
// 22050 Hz) to the thread that asked for it and waits for its answer. The host's function thus
// runs on the host's own thread, while the driver's workers render ahead.
#include "engine/speak_driver.h"
#include "synthesis/sentence_source.h"

namespace vntts {

class HostSentences final : public SentenceSource {
public:
  explicit HostSentences(SpeakDriver& driver) : driver_(driver) {}

  bool Render(std::string_view internal, double speed_factor, double pitch_factor,
              const Handler& handler) override;

private:
  SpeakDriver& driver_;
};

} // namespace vntts
