// SPDX-License-Identifier: MIT
#pragma once
// The 16-byte PCM format record, in the field order of a WAV file's "fmt " chunk, and the
// extensible form of that chunk that files of more than two channels or 16 bits carry.
#include <array>
#include <cstdint>
#include <vector>

namespace vntts {

struct WaveFormat {
  std::uint16_t format_tag = 1; // 1 = PCM
  std::uint16_t channels = 0;
  std::uint32_t samples_per_second = 0;
  std::uint32_t average_bytes_per_second = 0;
  std::uint16_t block_align = 0;
  std::uint16_t bits_per_sample = 0;

  static constexpr std::size_t kBytes = 16;

  // A consistent PCM record for the three values a user chooses.
  static constexpr WaveFormat Pcm(std::uint16_t channels, std::uint32_t rate, std::uint16_t bits) {
    const auto align = static_cast<std::uint16_t>(channels * (bits / 8));
    return {1, channels, rate, rate * align, align, bits};
  }

  // Bytes of one sample frame, from bits and channels (block alignment is not trusted).
  constexpr std::uint32_t FrameBytes() const {
    return static_cast<std::uint32_t>(bits_per_sample / 8) * channels;
  }

  std::array<std::uint8_t, kBytes> ToBytes() const;
  // Reads up to 16 bytes; fields the bytes do not reach stay zero.
  static WaveFormat FromBytes(const std::uint8_t* bytes, std::size_t count);

  // What the sound devices take: PCM of 8 or 16 bits. Other tags (A-law, float...) would be
  // played as noise.
  constexpr bool DevicePcm() const {
    return format_tag == kPcmTag && channels > 0 && samples_per_second > 0 &&
           (bits_per_sample == 8 || bits_per_sample == 16);
  }

  static constexpr std::uint16_t kPcmTag = 1;
  static constexpr std::uint16_t kExtensibleTag = 0xFFFE;

  friend constexpr bool operator==(const WaveFormat&, const WaveFormat&) = default;
};

// What the extensible form of a "fmt " chunk adds: the bits of each sample that carry sound,
// the speakers the channels feed and the subformat, whose first two bytes are the plain tag.
struct WaveFormatExtension {
  static constexpr std::size_t kChunkBytes = 40;
  std::uint16_t valid_bits = 0;             // 0: all of them
  std::uint32_t channel_mask = 0;           // 0: not said
  std::array<std::uint8_t, 16> subformat{}; // kept only when it is not a plain tag's
};

// Reads a "fmt " chunk of `count` bytes. The extensible form of a standard subformat (PCM,
// float, A-law...) comes back as that plain tag, with its extension; an unknown subformat keeps
// the extensible tag and its identifier.
WaveFormat ParseFormatChunk(const std::uint8_t* bytes, std::size_t count,
                            WaveFormatExtension& extension);

// The "fmt " chunk for a record: the plain 16 bytes where the tag says enough (at most two
// channels of at most 16 bits), else the 40-byte extensible form that other tools require
// for more channels or deeper samples.
std::vector<std::uint8_t> FormatChunkBytes(const WaveFormat& format,
                                           const WaveFormatExtension& extension = {});

} // namespace vntts
