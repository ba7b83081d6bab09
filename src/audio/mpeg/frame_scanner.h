// SPDX-License-Identifier: MIT
#pragma once
// Walks the frames of a stream held in memory. An ID3v2 tag is stepped over by its size field
// wherever one starts, and an ID3v1 block where a frame is due. A header where the stream
// starts (or right after a leading tag) counts when the frame after it is of the same stream
// or the data ends there; anywhere else a header counts only when two more headers of the same
// stream follow it at the right distances (or the data ends), so that stray 0xFF bytes in junk
// are not taken for frames. Once locked, frames must keep the version, layer and sampling
// frequency of the first: stray headers of another stream are skipped byte by byte, but a
// whole chain of them means the stream changes format there, and the walk ends (changed()).
// Frames cut off by the end of the data are not returned. Free format frames are measured by
// the distance to the next header.
#include <cstddef>
#include <cstdint>

#include "audio/mpeg/frame_header.h"

namespace vntts::mpeg {

struct FrameSpan {
  std::uint32_t offset = 0;
  std::uint32_t length = 0;
  FrameHeader header;
};

// Bytes of the ID3v2 tag (header, body and footer) that starts at p, or 0 when none does.
std::size_t Id3v2TagBytes(const std::uint8_t* p, std::size_t available);

class FrameScanner {
public:
  FrameScanner(const std::uint8_t* data, std::size_t size, std::size_t start = 0);
  // The next whole frame, or false at the end of the data (or of the stream's format).
  bool Next(FrameSpan& out);

  static constexpr std::uint32_t kMaxFrameBytes = 4096;

private:
  // Length of the frame at p with header h, or 0 if it cannot be measured.
  std::uint32_t FrameLength(std::size_t p, const FrameHeader& h);
  bool HeaderAt(std::size_t p, FrameHeader& h) const;
  // `links` more headers of the same stream follow; with `end_counts`, reaching the end of
  // the data (or a frame it cuts off) after the first link counts as following.
  bool ChainFollows(std::size_t p, std::uint32_t len, const FrameHeader& h, int links,
                    bool end_counts);
  bool SkipTag(std::size_t p);
  bool Accept(std::size_t p, std::uint32_t len, const FrameHeader& h);

  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t pos_;
  std::size_t due_;                 // where the first frame of the stream is due
  std::size_t expected_ = SIZE_MAX; // where the next frame of a locked stream begins
  bool locked_ = false;
  FrameHeader lock_;
  std::uint32_t free_bytes_ = 0; // free format frame size without padding, once measured
};

} // namespace vntts::mpeg
