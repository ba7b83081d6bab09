// SPDX-License-Identifier: MIT
#include "audio/mpeg/frame_scanner.h"

#include <cstring>

namespace vntts::mpeg {

std::size_t Id3v2TagBytes(const std::uint8_t* p, std::size_t available) {
  // "ID3", version and revision below 0xFF, flags, then a 28-bit size in four 7-bit bytes.
  if (available < 10 || std::memcmp(p, "ID3", 3) != 0 || p[3] == 0xFF || p[4] == 0xFF) return 0;
  std::size_t body = 0;
  for (int i = 6; i < 10; ++i) {
    if (p[i] & 0x80) return 0;
    body = body << 7 | p[i];
  }
  const bool footer = p[3] >= 4 && (p[5] & 0x10) != 0;
  return 10 + body + (footer ? 10 : 0);
}

FrameScanner::FrameScanner(const std::uint8_t* data, std::size_t size, std::size_t start)
    : data_(data), size_(data ? size : 0), pos_(start), due_(start) {}

bool FrameScanner::HeaderAt(std::size_t p, FrameHeader& h) const {
  return p + 4 <= size_ && ParseHeader(data_ + p, h);
}

std::uint32_t FrameScanner::FrameLength(std::size_t p, const FrameHeader& h) {
  if (!h.FreeFormat()) return h.Bytes();
  const std::uint32_t pad = h.padding ? h.SlotBytes() : 0;
  if (free_bytes_ && locked_ && h.SameStream(lock_)) return free_bytes_ + pad;
  // Measure: the next header of the same stream, also in free format, ends this frame.
  const std::size_t max_end = p + kMaxFrameBytes < size_ ? p + kMaxFrameBytes : size_;
  for (std::size_t q = p + 4 + pad + 16; q + 4 <= max_end; ++q) {
    FrameHeader n;
    if (data_[q] == 0xFF && ParseHeader(data_ + q, n) && n.SameStream(h) && n.FreeFormat() &&
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

bool FrameScanner::ChainFollows(std::size_t p, std::uint32_t len, const FrameHeader& h, int links,
                                bool end_counts) {
  // One lucky 0xFF byte in coded data is common, three in a row at the right distances are
  // not.
  for (int link = 0; link < links; ++link) {
    p += len;
    if (end_counts && p == size_) return true;
    FrameHeader n;
    if (!HeaderAt(p, n) || !n.SameStream(h) || n.mode != h.mode || n.FreeFormat()) return false;
    len = n.Bytes();
    if (p + len > size_) return end_counts && link > 0;
  }
  return true;
}

bool FrameScanner::SkipTag(std::size_t p) {
  const bool due = locked_ ? p == expected_ : p == due_;
  std::size_t bytes = Id3v2TagBytes(data_ + p, size_ - p);
  // An ID3v1 block only where a frame is due: its text could hold anything.
  if (bytes == 0 && due && p + 128 <= size_ && std::memcmp(data_ + p, "TAG", 3) == 0) bytes = 128;
  if (bytes == 0) return false;
  pos_ = p + bytes < size_ ? p + bytes : size_;
  // What follows a tag is where a frame is due.
  (locked_ ? expected_ : due_) = pos_;
  return true;
}

bool FrameScanner::Accept(std::size_t p, std::uint32_t len, const FrameHeader& h) {
  if (locked_) return p == expected_ || ChainFollows(p, len, h, 2, true);
  if (p != due_) return ChainFollows(p, len, h, 2, true);
  // Where the stream starts: the next frame must be of the same stream, unless the data ends
  // (a one-frame unit) or a tag follows, or a free format frame was measured by its successor
  // already.
  if (h.FreeFormat() || p + len + 4 > size_) return true;
  FrameHeader n;
  if (HeaderAt(p + len, n)) return n.SameStream(h);
  const std::uint8_t* next = data_ + p + len;
  return std::memcmp(next, "TAG", 3) == 0 || std::memcmp(next, "ID3", 3) == 0 ||
         std::memcmp(next, "APET", 4) == 0 || std::memcmp(next, "LYRI", 4) == 0;
}

bool FrameScanner::Next(FrameSpan& out) {
  while (pos_ + 4 <= size_) {
    const std::size_t p = pos_;
    if (data_[p] != 0xFF && SkipTag(p)) continue;
    FrameHeader h;
    if (data_[p] != 0xFF || !HeaderAt(p, h)) {
      ++pos_;
      continue;
    }
    if (locked_ && !h.SameStream(lock_)) {
      // A whole chain of frames in another format: the stream changes here, and ends for us.
      const std::uint32_t len = h.Bytes();
      if (len >= 4 && len <= kMaxFrameBytes && ChainFollows(p, len, h, 2, false)) {
        pos_ = size_;
        return false;
      }
      ++pos_;
      continue;
    }
    // Free format frames are only measured where a frame is due: measuring every candidate
    // met while searching would cost a forward search per byte.
    const bool due = locked_ ? p == expected_ : p == due_;
    if (h.FreeFormat() && !due) {
      ++pos_;
      continue;
    }
    const std::uint32_t len = FrameLength(p, h);
    // A frame cut off by the end of the data is not whole; a false sync in junk may look like
    // this too, so keep searching.
    if (len < 4 || len > kMaxFrameBytes || p + len > size_ || !Accept(p, len, h)) {
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
