#pragma once
// The polyphase synthesis filter bank shared by all three layers: 32 subband samples in,
// 32 PCM samples out, per channel, with the 16 x 64 history that the window spans.
#include <cstdint>

namespace vntts::mpeg {

class Polyphase {
public:
  void reset();
  // Filters one time slot of channel ch (0 or 1). Output is in 16-bit LSB units, not rounded.
  void filter(int ch, const float* subbands, float* out);
  // `count` consecutive time slots of 32 subband samples each, in order.
  void filter_slots(int ch, const float* slots, int count, float* out);

private:
  // Shifts the 32 DCT outputs into the history and applies the window.
  void window(int ch, const float* a, float* out);

  alignas(16) float v_[2][16][64] = {};
  unsigned newest_[2] = {0, 0};
};

} // namespace vntts::mpeg
