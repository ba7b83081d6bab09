// SPDX-License-Identifier: MIT
#include "audio/riff.h"

namespace vntts {
namespace {
constexpr std::uint64_t kHeaderBytes = 8;
std::uint32_t Le32(const std::uint8_t* p) {
  return p[0] | p[1] << 8 | p[2] << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}
} // namespace

bool RiffIO::ReadHeader(std::uint32_t& id, std::uint32_t& size) {
  std::uint8_t raw[8];
  if (stream_.Read(raw, sizeof raw) != sizeof raw) return false;
  id = Le32(raw);
  size = Le32(raw + 4);
  return true;
}

bool RiffIO::WriteU32(std::uint32_t v) {
  const std::uint8_t raw[4] = {static_cast<std::uint8_t>(v), static_cast<std::uint8_t>(v >> 8),
                               static_cast<std::uint8_t>(v >> 16),
                               static_cast<std::uint8_t>(v >> 24)};
  return stream_.Write(raw, 4) == 4;
}

bool RiffIO::FindRiff(std::uint32_t form, RiffChunk& out) {
  const std::uint64_t limit = stream_.size();
  // Every step moves forward by at least a header, so the walk ends with the file.
  while (stream_.Tell() + kHeaderBytes <= limit) {
    RiffChunk c;
    if (!ReadHeader(c.id, c.size)) return false;
    c.data_offset = stream_.Tell();
    if (c.id == Fourcc("RIFF")) {
      std::uint8_t raw[4];
      if (stream_.Read(raw, 4) != 4) return false;
      c.form = Le32(raw);
      if (c.form == form) {
        out = c;
        return true;
      }
    }
    if (!stream_.Seek(c.end() + (c.size & 1))) return false;
  }
  return false;
}

bool RiffIO::FindChunk(const RiffChunk& parent, std::uint32_t id, RiffChunk& out) {
  for (;;) {
    const std::uint64_t at = stream_.Tell();
    if (at + kHeaderBytes > parent.end() || at + kHeaderBytes > stream_.size()) return false;
    RiffChunk c;
    if (!ReadHeader(c.id, c.size)) return false;
    c.data_offset = at + kHeaderBytes;
    if (c.id == id) {
      if (id == Fourcc("RIFF") || id == Fourcc("LIST")) {
        std::uint8_t raw[4];
        if (stream_.Read(raw, 4) != 4) return false;
        c.form = Le32(raw);
      }
      out = c;
      return true;
    }
    if (!stream_.Seek(c.end() + (c.size & 1))) return false;
  }
}

bool RiffIO::Leave(const RiffChunk& chunk) {
  if (!chunk.created) return stream_.Seek(chunk.end() + (chunk.size & 1));
  const std::uint64_t here = stream_.Tell();
  if (here < chunk.data_offset || here - chunk.data_offset > UINT32_MAX) return false;
  const auto actual = static_cast<std::uint32_t>(here - chunk.data_offset);
  if (actual != chunk.size) {
    if (!stream_.Seek(chunk.data_offset - 4) || !WriteU32(actual) || !stream_.Seek(here))
      return false;
  }
  if (actual & 1) {
    const std::uint8_t pad = 0;
    if (stream_.Write(&pad, 1) != 1) return false;
  }
  return true;
}

bool RiffIO::CreateRiff(std::uint32_t form, RiffChunk& out) {
  RiffChunk c;
  c.id = Fourcc("RIFF");
  c.form = form;
  c.size = 4;
  c.created = true;
  if (!WriteU32(c.id) || !WriteU32(c.size)) return false;
  c.data_offset = stream_.Tell();
  if (!WriteU32(form)) return false;
  out = c;
  return true;
}

bool RiffIO::CreateChunk(std::uint32_t id, std::uint32_t size, RiffChunk& out) {
  RiffChunk c;
  c.id = id;
  c.size = size;
  c.created = true;
  if (!WriteU32(id) || !WriteU32(size)) return false;
  c.data_offset = stream_.Tell();
  out = c;
  return true;
}

} // namespace vntts
