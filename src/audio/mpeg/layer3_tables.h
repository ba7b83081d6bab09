#pragma once
// Fixed figures of Layer III: scale-factor bands, scale-factor bit lengths, the pre-emphasis
// table and the LSF scale-factor partitions.
#include <cstdint>

namespace vntts::mpeg::layer3 {

struct BandEdges {
  std::uint16_t l[23]; // long-block band starts, last = 576
  std::uint16_t s[14]; // short-block band starts within one window, last = 192
};

// [lsf][sampling index]
inline constexpr BandEdges kBandEdges[2][3] = {
    {{{0,  4,  8,   12,  16,  20,  24,  30,  36,  44,  52, 62,
       74, 90, 110, 134, 162, 196, 238, 288, 342, 418, 576},
      {0, 4, 8, 12, 16, 22, 30, 40, 52, 66, 84, 106, 136, 192}},
     {{0,  4,  8,   12,  16,  20,  24,  30,  36,  42,  50, 60,
       72, 88, 106, 128, 156, 190, 230, 276, 330, 384, 576},
      {0, 4, 8, 12, 16, 22, 28, 38, 50, 64, 80, 100, 126, 192}},
     {{0,  4,   8,   12,  16,  20,  24,  30,  36,  44,  54, 66,
       82, 102, 126, 156, 194, 240, 296, 364, 448, 550, 576},
      {0, 4, 8, 12, 16, 22, 30, 42, 58, 78, 104, 138, 180, 192}}},
    {{{0,   6,   12,  18,  24,  30,  36,  44,  54,  66,  80, 96,
       116, 140, 168, 200, 238, 284, 336, 396, 464, 522, 576},
      {0, 4, 8, 12, 18, 24, 32, 42, 56, 74, 100, 132, 174, 192}},
     {{0,   6,   12,  18,  24,  30,  36,  44,  54,  66,  80, 96,
       114, 136, 162, 194, 232, 278, 332, 394, 464, 540, 576},
      {0, 4, 8, 12, 18, 26, 36, 48, 62, 80, 104, 136, 180, 192}},
     {{0,   6,   12,  18,  24,  30,  36,  44,  54,  66,  80, 96,
       116, 140, 168, 200, 238, 284, 336, 396, 464, 522, 576},
      {0, 4, 8, 12, 18, 26, 36, 48, 62, 80, 104, 134, 174, 192}}},
};

// MPEG-1 scalefac_compress -> bit lengths of the two band groups.
inline constexpr std::uint8_t kSlen[2][16] = {{0, 0, 0, 0, 3, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4},
                                              {0, 1, 2, 3, 0, 1, 2, 3, 1, 2, 3, 1, 2, 3, 2, 3}};

inline constexpr std::uint8_t kPretab[22] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                             1, 1, 1, 1, 2, 2, 3, 3, 3, 2, 0};

// LSF: scale factors per partition, by [table][block kind: long, short, mixed][partition].
inline constexpr std::uint8_t kLsfPartitions[6][3][4] = {
    {{6, 5, 5, 5}, {9, 9, 9, 9}, {6, 9, 9, 9}},
    {{6, 5, 7, 3}, {9, 9, 12, 6}, {6, 9, 12, 6}},
    {{11, 10, 0, 0}, {18, 18, 0, 0}, {15, 18, 0, 0}},
    {{7, 7, 7, 0}, {12, 12, 12, 0}, {6, 15, 12, 0}},
    {{6, 6, 6, 3}, {12, 9, 9, 6}, {6, 12, 9, 6}},
    {{8, 8, 5, 0}, {15, 12, 9, 0}, {6, 18, 9, 0}},
};

} // namespace vntts::mpeg::layer3
