#include "audio/mpeg/frame_scanner.h"

namespace vntts::mpeg {

FrameScanner::FrameScanner(const std::uint8_t* data, std::size_t size, std::size_t start)
    : data_(data), size_(data ? size : 0), pos_(start), start_(start) {}

bool FrameScanner::header_at(std::size_t p, FrameHeader& h) const {
  return p + 4 <= size_ && parse_header(data_ + p, h);
}

std::uint32_t FrameScanner::frame_length(std::size_t p, const FrameHeader& h) {
  if (!h.free_format()) return h.bytes();
  const std::uint32_t pad = h.padding ? h.slot_bytes() : 0;
  if (free_bytes_ && locked_ && h.same_stream(lock_)) return free_bytes_ + pad;
  // Measure: the next header of the same stream, also in free format, ends this frame.
  const std::size_t max_end = p + kMaxFrameBytes < size_ ? p + kMaxFrameBytes : size_;
  for (std::size_t q = p + 4 + pad + 16; q + 4 <= max_end; ++q) {
    FrameHeader n;
    if (data_[q] == 0xFF && parse_header(data_ + q, n) && n.same_stream(h) && n.free_format() &&
        n.layer == h.layer) {
      const std::uint32_t bytes = static_cast<std::uint32_t>(q - p);
      if (bytes <= pad) continue;
      if (h.layer == 1 && ((bytes - pad) % 4) != 0) continue;
      free_bytes_ = bytes - pad;
      return bytes;
    }
  }
  return 0;
}

bool FrameScanner::chain_follows(std::size_t p, std::uint32_t len, const FrameHeader& h) {
  // Two more headers of the same stream and channel mode (or the end of the data) must follow
  // a header found by searching: one lucky 0xFF byte in coded data is common, three in a row
  // at the right distances are not.
  for (int link = 0; link < 2; ++link) {
    p += len;
    if (p == size_) return true;
    FrameHeader n;
    if (!header_at(p, n) || !n.same_stream(h) || n.mode != h.mode || n.free_format()) return false;
    len = n.bytes();
    if (p + len > size_) return link > 0;
  }
  return true;
}

bool FrameScanner::next(FrameSpan& out) {
  while (pos_ + 4 <= size_) {
    const std::size_t p = pos_;
    FrameHeader h;
    if (data_[p] != 0xFF || !header_at(p, h) || (locked_ && !h.same_stream(lock_))) {
      ++pos_;
      continue;
    }
    // Free format frames are only measured where a frame is due (the start of the data or
    // right after the previous frame): measuring every candidate met while searching would
    // cost a forward search per byte.
    const bool due = (p == start_ && !locked_) || (locked_ && p == expected_);
    if (h.free_format() && !due) {
      ++pos_;
      continue;
    }
    const std::uint32_t len = frame_length(p, h);
    if (len < 4 || len > kMaxFrameBytes) {
      ++pos_;
      continue;
    }
    if (p + len > size_) {
      // Cut off by the end of the data: not a whole frame. A false sync in junk may look like
      // this too, so keep searching.
      ++pos_;
      continue;
    }
    bool accept = locked_ && p == expected_;
    if (!accept) {
      if (p == start_ && !locked_) {
        accept = true;
      } else {
        accept = chain_follows(p, len, h);
      }
    }
    if (!accept) {
      ++pos_;
      continue;
    }
    if (!locked_) {
      locked_ = true;
      lock_ = h;
    }
    out.offset = static_cast<std::uint32_t>(p);
    out.length = len;
    out.header = h;
    pos_ = p + len;
    expected_ = pos_;
    return true;
  }
  return false;
}

} // namespace vntts::mpeg
