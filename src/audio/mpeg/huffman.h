// SPDX-License-Identifier: MIT
#pragma once
// Two-level lookup tables for the Layer III Huffman codes, built at compile time from the code
// lists in huffman_codes.h. The first level is indexed by the next kPrimaryBits bits; longer
// codes continue in a sub-table sized for the longest code under that prefix.
#include <array>
#include <cstddef>
#include <cstdint>

#include "audio/mpeg/huffman_codes.h"

namespace vntts::mpeg {

namespace huffman_detail {

inline constexpr int kPrimaryBits = 8;
// Entry: leaf = length | x << 8 | y << 16; branch = 1 << 31 | sub_bits << 24 | offset.
inline constexpr std::uint32_t kBranch = 0x80000000u;

template <std::size_t kN> constexpr std::size_t table_size(const huffman_codes::Code (&codes)[kN]) {
  std::size_t size = 1u << kPrimaryBits;
  for (unsigned prefix = 0; prefix < (1u << kPrimaryBits); ++prefix) {
    int extra = 0;
    for (const auto& c : codes)
      if (c.length > kPrimaryBits &&
          static_cast<unsigned>(c.bits >> (c.length - kPrimaryBits)) == prefix &&
          c.length - kPrimaryBits > extra)
        extra = c.length - kPrimaryBits;
    if (extra) size += std::size_t{1} << extra;
  }
  return size;
}

template <std::size_t kSize, std::size_t kN>
constexpr std::array<std::uint32_t, kSize> build(const huffman_codes::Code (&codes)[kN],
                                                 int width) {
  std::array<std::uint32_t, kSize> t{};
  for (std::size_t i = 0; i < kN; ++i) {
    const auto& c = codes[i];
    if (c.length > kPrimaryBits) continue;
    const std::uint32_t leaf = c.length | (static_cast<std::uint32_t>(i / width) << 8) |
                               (static_cast<std::uint32_t>(i % width) << 16);
    const int spare = kPrimaryBits - c.length;
    for (std::uint32_t j = 0; j < (1u << spare); ++j)
      t[(static_cast<std::uint32_t>(c.bits) << spare) + j] = leaf;
  }
  std::size_t next = 1u << kPrimaryBits;
  for (unsigned prefix = 0; prefix < (1u << kPrimaryBits); ++prefix) {
    int extra = 0;
    for (const auto& c : codes)
      if (c.length > kPrimaryBits &&
          static_cast<unsigned>(c.bits >> (c.length - kPrimaryBits)) == prefix &&
          c.length - kPrimaryBits > extra)
        extra = c.length - kPrimaryBits;
    if (!extra) continue;
    t[prefix] =
        kBranch | (static_cast<std::uint32_t>(extra) << 24) | static_cast<std::uint32_t>(next);
    for (std::size_t i = 0; i < kN; ++i) {
      const auto& c = codes[i];
      if (c.length <= kPrimaryBits ||
          static_cast<unsigned>(c.bits >> (c.length - kPrimaryBits)) != prefix)
        continue;
      const int own = c.length - kPrimaryBits;
      const std::uint32_t suffix = c.bits & ((1u << own) - 1);
      const std::uint32_t leaf = c.length | (static_cast<std::uint32_t>(i / width) << 8) |
                                 (static_cast<std::uint32_t>(i % width) << 16);
      const int spare = extra - own;
      for (std::uint32_t j = 0; j < (1u << spare); ++j)
        t[next + (suffix << spare) + j] = leaf;
    }
    next += std::size_t{1} << extra;
  }
  return t;
}

#define VNTTS_HUFFMAN_TABLE(name, codes, width)                                                    \
  inline constexpr auto name = build<table_size(codes)>(codes, width)

VNTTS_HUFFMAN_TABLE(kLookup1, huffman_codes::kTable1, 2);
VNTTS_HUFFMAN_TABLE(kLookup2, huffman_codes::kTable2, 3);
VNTTS_HUFFMAN_TABLE(kLookup3, huffman_codes::kTable3, 3);
VNTTS_HUFFMAN_TABLE(kLookup5, huffman_codes::kTable5, 4);
VNTTS_HUFFMAN_TABLE(kLookup6, huffman_codes::kTable6, 4);
VNTTS_HUFFMAN_TABLE(kLookup7, huffman_codes::kTable7, 6);
VNTTS_HUFFMAN_TABLE(kLookup8, huffman_codes::kTable8, 6);
VNTTS_HUFFMAN_TABLE(kLookup9, huffman_codes::kTable9, 6);
VNTTS_HUFFMAN_TABLE(kLookup10, huffman_codes::kTable10, 8);
VNTTS_HUFFMAN_TABLE(kLookup11, huffman_codes::kTable11, 8);
VNTTS_HUFFMAN_TABLE(kLookup12, huffman_codes::kTable12, 8);
VNTTS_HUFFMAN_TABLE(kLookup13, huffman_codes::kTable13, 16);
VNTTS_HUFFMAN_TABLE(kLookup15, huffman_codes::kTable15, 16);
VNTTS_HUFFMAN_TABLE(kLookup16, huffman_codes::kTable16, 16);
VNTTS_HUFFMAN_TABLE(kLookup24, huffman_codes::kTable24, 16);
VNTTS_HUFFMAN_TABLE(kLookupQuadA, huffman_codes::kQuadA, 16);

#undef VNTTS_HUFFMAN_TABLE

} // namespace huffman_detail

// One big-value table as the side information selects it (0..31).
struct PairTable {
  const std::uint32_t* lookup; // null for table 0 and the unused 4 and 14: every value is 0
  std::uint8_t linbits;
};

inline constexpr PairTable kPairTables[32] = {
    {nullptr, 0},
    {huffman_detail::kLookup1.data(), 0},
    {huffman_detail::kLookup2.data(), 0},
    {huffman_detail::kLookup3.data(), 0},
    {nullptr, 0},
    {huffman_detail::kLookup5.data(), 0},
    {huffman_detail::kLookup6.data(), 0},
    {huffman_detail::kLookup7.data(), 0},
    {huffman_detail::kLookup8.data(), 0},
    {huffman_detail::kLookup9.data(), 0},
    {huffman_detail::kLookup10.data(), 0},
    {huffman_detail::kLookup11.data(), 0},
    {huffman_detail::kLookup12.data(), 0},
    {huffman_detail::kLookup13.data(), 0},
    {nullptr, 0},
    {huffman_detail::kLookup15.data(), 0},
    {huffman_detail::kLookup16.data(), 1},
    {huffman_detail::kLookup16.data(), 2},
    {huffman_detail::kLookup16.data(), 3},
    {huffman_detail::kLookup16.data(), 4},
    {huffman_detail::kLookup16.data(), 6},
    {huffman_detail::kLookup16.data(), 8},
    {huffman_detail::kLookup16.data(), 10},
    {huffman_detail::kLookup16.data(), 13},
    {huffman_detail::kLookup24.data(), 4},
    {huffman_detail::kLookup24.data(), 5},
    {huffman_detail::kLookup24.data(), 6},
    {huffman_detail::kLookup24.data(), 7},
    {huffman_detail::kLookup24.data(), 8},
    {huffman_detail::kLookup24.data(), 9},
    {huffman_detail::kLookup24.data(), 11},
    {huffman_detail::kLookup24.data(), 13},
};

} // namespace vntts::mpeg
