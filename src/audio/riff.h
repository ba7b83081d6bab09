// SPDX-License-Identifier: MIT
#pragma once
// Our RIFF reader and writer. It keeps the classic multimedia file rules: searching for a
// chunk walks sibling headers from the current position inside the parent; leaving a chunk
// moves past its data and the pad byte of an odd size; a chunk we create gets its real size
// written when it is closed, followed by a pad byte when that size is odd.
#include <cstdint>
#include <string_view>

#include "audio/byte_stream.h"

namespace vntts {

constexpr std::uint32_t Fourcc(std::string_view four) {
  return static_cast<std::uint8_t>(four[0]) | static_cast<std::uint8_t>(four[1]) << 8 |
         static_cast<std::uint8_t>(four[2]) << 16 |
         static_cast<std::uint32_t>(static_cast<std::uint8_t>(four[3])) << 24;
}

struct RiffChunk {
  std::uint32_t id = 0;
  std::uint32_t size = 0;
  std::uint32_t form = 0; // form type of a RIFF or LIST chunk
  // First byte after the size field (a RIFF chunk's form type is part of its data).
  std::uint64_t data_offset = 0;
  bool created = false;
  std::uint64_t end() const { return data_offset + size; }
};

class RiffIO {
public:
  explicit RiffIO(ByteStream& stream) : stream_(stream) {}

  // From the current position, walks top-level chunks for a "RIFF" of the given form and
  // leaves the position after the form type.
  bool FindRiff(std::uint32_t form, RiffChunk& out);
  // From the current position, walks the parent's children for the given id and leaves the
  // position at the start of its data.
  bool FindChunk(const RiffChunk& parent, std::uint32_t id, RiffChunk& out);
  // Moves past the chunk's data and pad byte; a created chunk first gets its size fixed and
  // its pad byte written. False when a write or seek failed.
  bool Leave(const RiffChunk& chunk);

  bool CreateRiff(std::uint32_t form, RiffChunk& out);
  bool CreateChunk(std::uint32_t id, std::uint32_t size, RiffChunk& out);

  ByteStream& Stream() { return stream_; }

private:
  bool ReadHeader(std::uint32_t& id, std::uint32_t& size);
  bool WriteU32(std::uint32_t v);
  ByteStream& stream_;
};

} // namespace vntts
