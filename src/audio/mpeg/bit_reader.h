// SPDX-License-Identifier: MIT
#pragma once
// Most-significant-bit-first reader over a buffer that the owner pads with at least
// kBitReaderPadding readable bytes past its end, so that a peek never needs a bounds test.
// Positions past the end only ever read the padding.
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vntts::mpeg {

inline constexpr std::size_t kBitReaderPadding = 8;

class BitReader {
public:
  BitReader() = default;
  BitReader(const std::uint8_t* data, std::size_t bytes) : data_(data), limit_(bytes * 8) {}

  // Up to 32 bits at the current position, left-aligned in the result's top bits.
  std::uint32_t Peek32() const {
    const std::size_t at = pos_ < limit_ ? pos_ : limit_;
    std::uint64_t v;
    std::memcpy(&v, data_ + (at >> 3), 8);
    v = __builtin_bswap64(v) << (at & 7);
    return static_cast<std::uint32_t>(v >> 32);
  }
  // At least 57 bits at the current position, left-aligned.
  std::uint64_t Peek64() const {
    const std::size_t at = pos_ < limit_ ? pos_ : limit_;
    std::uint64_t v;
    std::memcpy(&v, data_ + (at >> 3), 8);
    return __builtin_bswap64(v) << (at & 7);
  }
  void Skip(unsigned n) { pos_ += n; }
  // n in 0..24
  std::uint32_t Read(unsigned n) {
    if (n == 0) return 0;
    const std::uint32_t v = Peek32() >> (32 - n);
    pos_ += n;
    return v;
  }
  bool ReadBit() { return Read(1) != 0; }

  std::size_t Position() const { return pos_; }
  void Seek(std::size_t bit) { pos_ = bit; }
  bool Overrun() const { return pos_ > limit_; }

private:
  const std::uint8_t* data_ = nullptr;
  std::size_t pos_ = 0;
  std::size_t limit_ = 0;
};

} // namespace vntts::mpeg
