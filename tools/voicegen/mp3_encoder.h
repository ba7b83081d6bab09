#pragma once
// MPEG-2 Layer III encoding of one unit (22050 Hz mono) with LAME, cut to the frames that carry
// sound: the first frame holds only the encoder's look-ahead and the frames past the end only
// padding, so both are dropped. The bit reservoir is off so that every frame decodes on its
// own, which is what makes the cut clean.
#include <cstdint>
#include <vector>

namespace voicegen {

struct EncoderSettings {
  int sample_rate = 22050;
  int kbps = 32;
  int quality = 2; // LAME's 0 (best) .. 9
};

// Empty on failure.
std::vector<std::uint8_t> EncodeUnit(const std::vector<std::int16_t>& pcm,
                                     const EncoderSettings& settings = {});

// Byte offsets of the frames of an MPEG audio stream (Layers II/III, MPEG-1/2), plus the end.
std::vector<std::size_t> FrameOffsets(const std::vector<std::uint8_t>& stream);

} // namespace voicegen
