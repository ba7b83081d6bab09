// SPDX-License-Identifier: MIT
#pragma once
// One speech event: nine little-endian 32-bit words, the same 36 bytes in memory, in the
// notification call and in the trailer of the WAV files we write.
#include <array>
#include <cstddef>
#include <cstdint>

namespace vntts {

enum class EventKind : std::uint32_t {
  kUndefined = 0,
  kStartInputStream = 1,
  kEndInputStream = 2,
  kWordBoundary = 3,
  kSentenceBoundary = 4,
  kSoundStart = 5,
  kSoundEnd = 6,
  kDraw = 7,
  kOpenDialog = 8,
  kCloseDialog = 9,
  kReserved = 20,
};

struct EventRecord {
  std::uint32_t kind = 0;
  // Sample frame of the playing buffer at which the event fires; for SoundEnd the byte
  // length of the buffer.
  std::uint32_t position = 0;
  std::uint32_t text_start = 0;
  std::uint32_t text_length = 0;
  // Client-defined; a sentence boundary carries its text start and length in the first two,
  // SoundStart carries 1 in the third.
  std::array<std::uint32_t, 5> params{};

  static constexpr std::size_t kBytes = 36;
  static constexpr std::size_t kWords = 9;

  constexpr std::array<std::uint32_t, kWords> Words() const {
    return {kind,      position,  text_start, text_length, params[0],
            params[1], params[2], params[3],  params[4]};
  }
  static constexpr EventRecord FromWords(const std::array<std::uint32_t, kWords>& w) {
    return {w[0], w[1], w[2], w[3], {w[4], w[5], w[6], w[7], w[8]}};
  }

  std::array<std::uint8_t, kBytes> ToBytes() const {
    std::array<std::uint8_t, kBytes> out{};
    const auto w = Words();
    for (std::size_t i = 0; i < kWords; ++i)
      for (std::size_t b = 0; b < 4; ++b)
        out[i * 4 + b] = static_cast<std::uint8_t>(w[i] >> (8 * b));
    return out;
  }
  static EventRecord FromBytes(const std::uint8_t* bytes) {
    std::array<std::uint32_t, kWords> w{};
    for (std::size_t i = 0; i < kWords; ++i)
      for (std::size_t b = 0; b < 4; ++b)
        w[i] |= static_cast<std::uint32_t>(bytes[i * 4 + b]) << (8 * b);
    return FromWords(w);
  }

  friend constexpr bool operator==(const EventRecord&, const EventRecord&) = default;
};

static_assert(sizeof(EventRecord) == EventRecord::kBytes, "event records are nine packed words");

} // namespace vntts
