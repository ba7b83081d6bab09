#pragma once
// The pure core: decodes one frame at a time from memory into float PCM, keeping the state
// that runs from frame to frame (bit reservoir, IMDCT overlap, synthesis history) in fixed
// arrays. No allocation after construction and no I/O.
#include <cstddef>
#include <cstdint>

#include "audio/mpeg/bit_reader.h"
#include "audio/mpeg/frame_header.h"
#include "audio/mpeg/layer3.h"
#include "audio/mpeg/polyphase.h"

namespace vntts::mpeg {

class StreamDecoder {
public:
  static constexpr std::size_t kMaxFrameBytes = Layer3Decoder::kMaxFrameBytes;

  StreamDecoder() = default;
  void reset();

  // Decodes the frame of `length` bytes at `frame` (header at byte 0) whose header is `h`.
  // Returns the samples per channel it produced (h.samples), or 0 when the frame was dropped:
  // a Layer III frame whose reservoir is short, or a frame that is too long or too short.
  int decode(const std::uint8_t* frame, std::size_t length, const FrameHeader& h);

  // Output of the last decoded frame, in 16-bit LSB units, planar.
  const float* channel(int ch) const { return pcm_[ch]; }
  int channels() const { return channels_; }

  // Frames whose check word did not match (they are decoded all the same).
  std::uint32_t crc_errors() const { return crc_errors_; }

private:
  alignas(16) std::uint8_t frame_[kMaxFrameBytes + 2 * kBitReaderPadding] = {};
  alignas(16) float pcm_[2][1152] = {};
  Polyphase synth_;
  Layer3Decoder layer3_;
  int channels_ = 0;
  std::uint32_t crc_errors_ = 0;
};

// Rounds to nearest and clips planar float PCM into interleaved signed 16-bit samples with
// `out_channels` channels: a mono frame is copied to both channels of stereo output, a stereo
// frame is averaged into mono output.
void to_s16(const float* left, const float* right, int frame_channels, int out_channels,
            std::size_t samples, std::int16_t* out);

} // namespace vntts::mpeg
