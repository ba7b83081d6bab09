// SPDX-License-Identifier: MIT
#pragma once
// MPEG-2 Layer III encoding of one unit (22050 Hz mono) with LAME, for gapless decoding: the
// stream opens with an "Info" frame whose LAME tag records the encoder delay and the padding,
// so a decoder that honours it (ours, libmpg123) gives back exactly the samples encoded, and
// the encoder is flushed so that the last samples are in the stream. The lowpass sits above
// 10 kHz: the unit keeps the bandwidth of the synthesiser's 22050 Hz output.
#include <cstdint>
#include <vector>

namespace voicegen {

struct EncoderSettings {
  int sample_rate = 22050;
  int kbps = 64;
  int lowpass_hz = 10500;
  int quality = 2; // LAME's 0 (best) .. 9
};

// Empty on failure.
std::vector<std::uint8_t> EncodeUnit(const std::vector<std::int16_t>& pcm,
                                     const EncoderSettings& settings = {});

} // namespace voicegen
