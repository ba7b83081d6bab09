// SPDX-License-Identifier: MIT
#pragma once
// The two halves of WaveBuffer::AppendTo, for a writer that appends to one file again and
// again: where the samples go (read once from the file's header), and the writes themselves.
#include <cstdint>

#include "core/messages.h"

namespace vntts {

class ByteStream;

// Where the next samples of an open WAV file go.
struct AppendPoint {
  std::uint64_t data_offset = 0; // first byte of the "data" chunk's samples
  std::uint32_t samples = 0;     // bytes of samples the chunk really holds
  std::uint64_t file_size = 0;
};

// Reads the header and checks that PCM of this format may be added. False after a message.
bool FindAppendPoint(ByteStream& file, std::uint16_t channels, std::uint32_t samples_per_second,
                     std::uint16_t bits_per_sample, Messages& messages, AppendPoint& point);

// Adds `count` bytes of samples at `point` (flushed) and moves the point past them. 0 on
// success, 1 after a message; the file then loads with all its old samples, and the point is
// no longer to be trusted.
int WriteAppend(ByteStream& file, AppendPoint& point, const std::uint8_t* bytes,
                std::uint32_t count, Messages& messages);

} // namespace vntts
