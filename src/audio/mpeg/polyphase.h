// SPDX-License-Identifier: MIT
#pragma once
// The polyphase synthesis filter bank shared by all three layers: 32 subband samples in,
// 32 PCM samples out, per channel, with the 16 x 64 history that the window spans. The work is
// done by the kernels of the chosen instruction set.
#include <cstdint>

#include "audio/mpeg/kernels.h"

namespace vntts::mpeg {

class Polyphase {
public:
  explicit Polyphase(const Kernels& kernels) : kernels_(&kernels) {}
  void Reset();
  // `count` consecutive time slots of 32 subband samples each, in order, for channel ch (0 or
  // 1). Output is in 16-bit LSB units, not rounded.
  void FilterSlots(int ch, const float* slots, int count, float* out) {
    kernels_->synthesize(history_, ch, slots, count, out);
  }

private:
  const Kernels* kernels_;
  SynthesisHistory history_ = {};
};

} // namespace vntts::mpeg
