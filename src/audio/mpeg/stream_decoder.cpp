#include "audio/mpeg/stream_decoder.h"

#include <cstring>

#include "audio/mpeg/crc16.h"
#include "audio/mpeg/layer12.h"

namespace vntts::mpeg {

void StreamDecoder::reset() {
  synth_.reset();
  layer3_.reset();
  channels_ = 0;
  crc_errors_ = 0;
}

int StreamDecoder::decode(const std::uint8_t* frame, std::size_t length, const FrameHeader& h) {
  if (length < 4 || length > kMaxFrameBytes) return 0;
  // A padded private copy: every bit read stays inside this buffer.
  std::memcpy(frame_, frame, length);
  std::memset(frame_ + length, 0, 2 * kBitReaderPadding);
  float* const out[2] = {pcm_[0], pcm_[1]};
  std::size_t protected_bits = 0;
  switch (h.layer) {
  case 1:
    decode_layer1(h, frame_, length, synth_, out, protected_bits);
    break;
  case 2:
    decode_layer2(h, frame_, length, synth_, out, protected_bits);
    break;
  default:
    if (length < (h.has_crc ? 6u : 4u) + h.side_info_bytes()) return 0;
    protected_bits = h.side_info_bytes() * 8;
    if (h.has_crc && !crc_matches(frame_, protected_bits)) ++crc_errors_;
    if (!layer3_.decode(h, frame_, length, synth_, out)) return 0;
    channels_ = h.channels;
    return h.samples;
  }
  if (h.has_crc && (protected_bits + 7) / 8 + 6 <= length && !crc_matches(frame_, protected_bits))
    ++crc_errors_;
  channels_ = h.channels;
  return h.samples;
}

} // namespace vntts::mpeg
