// SPDX-License-Identifier: MIT
#pragma once
// The tag frame that LAME, ffmpeg and Fraunhofer encoders put first in a stream: a frame with
// no audio that carries "Xing" (VBR) or "Info" (CBR) after its side information, or "VBRI" at
// byte 36. LAME and ffmpeg add the encoder delay and padding, which gapless decoding trims.
#include <cstddef>
#include <cstdint>

#include "audio/mpeg/frame_header.h"

namespace vntts::mpeg {

struct VbrTag {
  std::uint32_t frames = 0;  // audio frames of the stream (the tag frame not counted)
  bool has_frames = false;   // the frame count is flagged as present
  bool has_gapless = false;  // an encoder extension gave delay and padding
  std::uint16_t delay = 0;   // samples the encoder put before the first input sample
  std::uint16_t padding = 0; // samples it put after the last
};

// Samples by which decoding shifts the signal: the first encoded sample comes out this late.
// Encoders count their delay fields on top of it.
inline constexpr std::uint32_t kDecoderDelay = 529;

// Where a "Xing" or "Info" tag is looked for: after the header, the CRC and (Layer III) the
// side information, as the frame layout puts it.
std::size_t VbrTagOffset(const FrameHeader& h);

// Recognises a tag frame of `length` bytes. With a CRC, LAME writes the tag where it would
// stand without one, so both places are tried. `strict` (for frames after the first, where
// audio is expected) also wants the side information all zero, as tag frames have it.
bool FindVbrTag(const std::uint8_t* frame, std::size_t length, const FrameHeader& h, bool strict,
                VbrTag& out);

} // namespace vntts::mpeg
