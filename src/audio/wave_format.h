#pragma once
// The 16-byte PCM format record, in the field order of a WAV file's "fmt " chunk.
#include <array>
#include <cstdint>

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
  static constexpr WaveFormat pcm(std::uint16_t channels, std::uint32_t rate, std::uint16_t bits) {
    const auto align = static_cast<std::uint16_t>(channels * (bits / 8));
    return {1, channels, rate, rate * align, align, bits};
  }

  // Bytes of one sample frame, from bits and channels (block alignment is not trusted).
  constexpr std::uint32_t frame_bytes() const {
    return static_cast<std::uint32_t>(bits_per_sample / 8) * channels;
  }

  std::array<std::uint8_t, kBytes> to_bytes() const;
  // Reads up to 16 bytes; fields the bytes do not reach stay zero.
  static WaveFormat from_bytes(const std::uint8_t* bytes, std::size_t count);

  friend constexpr bool operator==(const WaveFormat&, const WaveFormat&) = default;
};

} // namespace vntts
