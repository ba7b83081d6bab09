// SPDX-License-Identifier: MIT
#include "audio/mpeg/stream_decoder.h"

#include <cstring>

#include "audio/mpeg/crc16.h"
#include "audio/mpeg/layer12.h"

namespace vntts::mpeg {

void StreamDecoder::Reset() {
  synth_.Reset();
  layer3_.Reset();
  channels_ = 0;
  crc_errors_ = 0;
}

int StreamDecoder::Decode(const std::uint8_t* frame, std::size_t length, const FrameHeader& h) {
  if (length < 4 || length > kMaxFrameBytes) return 0;
  // A padded private copy: every bit read stays inside this buffer.
  std::memcpy(frame_, frame, length);
  std::memset(frame_ + length, 0, 2 * kBitReaderPadding);
  float* const out[2] = {pcm_[0], pcm_[1]};
  std::size_t protected_bits = 0;
  switch (h.layer) {
  case 1:
    DecodeLayer1(h, frame_, length, synth_, out, protected_bits);
    break;
  case 2:
    DecodeLayer2(h, frame_, length, synth_, out, protected_bits);
    break;
  default:
    if (length < (h.has_crc ? 6u : 4u) + h.SideInfoBytes()) return 0;
    protected_bits = h.SideInfoBytes() * 8;
    if (h.has_crc && !CrcMatches(frame_, protected_bits)) ++crc_errors_;
    if (!layer3_.Decode(h, frame_, length, synth_, out)) return 0;
    channels_ = h.channels;
    return h.samples;
  }
  if (h.has_crc && (protected_bits + 7) / 8 + 6 <= length && !CrcMatches(frame_, protected_bits))
    ++crc_errors_;
  channels_ = h.channels;
  return h.samples;
}

} // namespace vntts::mpeg
