#pragma once
// Walks the frames of a stream held in memory. The first candidate at the scan's start is
// taken as it stands; anywhere else a header counts only when two more headers of the same
// stream follow it at the right distances (or the data ends), so that stray 0xFF
// bytes in junk are not taken for frames. Once locked, frames must keep the version, layer and
// sampling frequency of the first; whatever breaks the chain is skipped byte by byte. Frames cut
// off by the end of the data are not returned. Free format frames are measured by the distance to
// the next header.
#include <cstddef>
#include <cstdint>

#include "audio/mpeg/frame_header.h"

namespace vntts::mpeg {

struct FrameSpan {
  std::uint32_t offset = 0;
  std::uint32_t length = 0;
  FrameHeader header;
};

class FrameScanner {
public:
  FrameScanner(const std::uint8_t* data, std::size_t size, std::size_t start = 0);
  // The next whole frame, or false at the end of the data.
  bool next(FrameSpan& out);

  static constexpr std::uint32_t kMaxFrameBytes = 4096;

private:
  // Length of the frame at p with header h, or 0 if it cannot be measured.
  std::uint32_t frame_length(std::size_t p, const FrameHeader& h);
  bool header_at(std::size_t p, FrameHeader& h) const;
  bool chain_follows(std::size_t p, std::uint32_t len, const FrameHeader& h);

  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t pos_;
  std::size_t start_;
  std::size_t expected_ = SIZE_MAX; // where the next frame of a locked stream begins
  bool locked_ = false;
  FrameHeader lock_;
  std::uint32_t free_bytes_ = 0; // free format frame size without padding, once measured
};

} // namespace vntts::mpeg
