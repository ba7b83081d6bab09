// SPDX-License-Identifier: MIT
#pragma once
// The pure core: decodes one frame at a time from memory into float PCM, keeping the state
// that runs from frame to frame (bit reservoir, IMDCT overlap, synthesis history) in fixed
// arrays. No allocation after construction and no I/O.
#include <cstddef>
#include <cstdint>

#include "audio/mpeg/bit_reader.h"
#include "audio/mpeg/frame_header.h"
#include "audio/mpeg/kernels.h"
#include "audio/mpeg/layer3.h"
#include "audio/mpeg/polyphase.h"

namespace vntts::mpeg {

class StreamDecoder {
public:
  static constexpr std::size_t kMaxFrameBytes = Layer3Decoder::kMaxFrameBytes;

  // The hot loops run on the kernels of `set` (the best this processor runs by default).
  explicit StreamDecoder(InstructionSet set = BestInstructionSet())
      : kernels_(&KernelsFor(set)), synth_(*kernels_), layer3_(*kernels_) {}
  void Reset();
  const Kernels& kernels() const { return *kernels_; }

  // Decodes the frame of `length` bytes at `frame` (header at byte 0) whose header is `h`.
  // Returns the samples per channel it produced (h.samples), or 0 when the frame was dropped:
  // a Layer III frame whose reservoir is short, or a frame that is too long or too short.
  int Decode(const std::uint8_t* frame, std::size_t length, const FrameHeader& h);

  // Output of the last decoded frame, in 16-bit LSB units, planar.
  const float* Channel(int ch) const { return pcm_[ch]; }
  int Channels() const { return channels_; }

  // Frames whose check word did not match (they are decoded all the same).
  std::uint32_t CrcErrors() const { return crc_errors_; }

private:
  const Kernels* kernels_;
  alignas(16) std::uint8_t frame_[kMaxFrameBytes + 2 * kBitReaderPadding] = {};
  alignas(32) float pcm_[2][1152] = {};
  Polyphase synth_;
  Layer3Decoder layer3_;
  int channels_ = 0;
  std::uint32_t crc_errors_ = 0;
};

} // namespace vntts::mpeg
