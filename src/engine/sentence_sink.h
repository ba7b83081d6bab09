// SPDX-License-Identifier: MIT
#pragma once
// Where the consumer puts the sentences of one speech: the sound card, a WAV file, or (for a
// host that takes the samples itself) a host function. The consumer converts each finished
// sentence to the sink's layout, hands it over, and ends the speech when the sink cannot go on.
#include <atomic>
#include <string>

#include "dsp/device_conversion.h"
#include "engine/sentence_assembler.h"

namespace vntts {

class SentenceSink {
public:
  virtual ~SentenceSink() = default;

  // The channels, rate and bits a sentence is converted to; asked once per sentence.
  virtual OutputLayout Layout() = 0;

  // Takes one finished sentence and returns once it is delivered (heard, written, handed
  // over), or early once `stop` is set. False when the speech cannot go on; the sink has
  // said why.
  virtual bool Put(PlayableSentence& sentence, const std::atomic<bool>& stop) = 0;

  // The WAV file this sink created, if it created one (not one it appended to).
  virtual std::string CreatedFile() const { return {}; }

  // Factors on the engine's speed and pitch for this sink's speech (a host's prosody); asked
  // once per sentence.
  virtual double SpeedFactor() { return 1.0; }
  virtual double PitchFactor() { return 1.0; }
  // The speech is being stopped: a Put that waits on something of the sink's own returns now.
  // Called from any thread, also while a Put runs.
  virtual void Interrupt() {}
  // No Put follows: the consumer is through with the speech, or the speech was replaced before
  // the consumer took it up.
  virtual void Finish() {}
};

} // namespace vntts
