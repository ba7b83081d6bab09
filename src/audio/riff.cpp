#include "audio/riff.h"

namespace vntts {
namespace {
constexpr std::uint64_t kHeaderBytes = 8;
std::uint32_t le32(const std::uint8_t* p) {
  return p[0] | p[1] << 8 | p[2] << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}
} // namespace

bool RiffIO::read_header(std::uint32_t& id, std::uint32_t& size) {
  std::uint8_t raw[8];
  if (stream_.read(raw, sizeof raw) != sizeof raw) return false;
  id = le32(raw);
  size = le32(raw + 4);
  return true;
}

bool RiffIO::write_u32(std::uint32_t v) {
  const std::uint8_t raw[4] = {static_cast<std::uint8_t>(v), static_cast<std::uint8_t>(v >> 8),
                               static_cast<std::uint8_t>(v >> 16),
                               static_cast<std::uint8_t>(v >> 24)};
  return stream_.write(raw, 4) == 4;
}

bool RiffIO::find_riff(std::uint32_t form, RiffChunk& out) {
  const std::uint64_t limit = stream_.size();
  // Every step moves forward by at least a header, so the walk ends with the file.
  while (stream_.tell() + kHeaderBytes <= limit) {
    RiffChunk c;
    if (!read_header(c.id, c.size)) return false;
    c.data_offset = stream_.tell();
    if (c.id == fourcc("RIFF")) {
      std::uint8_t raw[4];
      if (stream_.read(raw, 4) != 4) return false;
      c.form = le32(raw);
      if (c.form == form) {
        out = c;
        return true;
      }
    }
    if (!stream_.seek(c.end() + (c.size & 1))) return false;
  }
  return false;
}

bool RiffIO::find_chunk(const RiffChunk& parent, std::uint32_t id, RiffChunk& out) {
  for (;;) {
    const std::uint64_t at = stream_.tell();
    if (at + kHeaderBytes > parent.end() || at + kHeaderBytes > stream_.size()) return false;
    RiffChunk c;
    if (!read_header(c.id, c.size)) return false;
    c.data_offset = at + kHeaderBytes;
    if (c.id == id) {
      if (id == fourcc("RIFF") || id == fourcc("LIST")) {
        std::uint8_t raw[4];
        if (stream_.read(raw, 4) != 4) return false;
        c.form = le32(raw);
      }
      out = c;
      return true;
    }
    if (!stream_.seek(c.end() + (c.size & 1))) return false;
  }
}

bool RiffIO::leave(const RiffChunk& chunk) {
  if (!chunk.created) return stream_.seek(chunk.end() + (chunk.size & 1));
  const std::uint64_t here = stream_.tell();
  if (here < chunk.data_offset || here - chunk.data_offset > UINT32_MAX) return false;
  const auto actual = static_cast<std::uint32_t>(here - chunk.data_offset);
  if (actual != chunk.size) {
    if (!stream_.seek(chunk.data_offset - 4) || !write_u32(actual) || !stream_.seek(here))
      return false;
  }
  if (actual & 1) {
    const std::uint8_t pad = 0;
    if (stream_.write(&pad, 1) != 1) return false;
  }
  return true;
}

bool RiffIO::create_riff(std::uint32_t form, RiffChunk& out) {
  RiffChunk c;
  c.id = fourcc("RIFF");
  c.form = form;
  c.size = 4;
  c.created = true;
  if (!write_u32(c.id) || !write_u32(c.size)) return false;
  c.data_offset = stream_.tell();
  if (!write_u32(form)) return false;
  out = c;
  return true;
}

bool RiffIO::create_chunk(std::uint32_t id, std::uint32_t size, RiffChunk& out) {
  RiffChunk c;
  c.id = id;
  c.size = size;
  c.created = true;
  if (!write_u32(id) || !write_u32(size)) return false;
  c.data_offset = stream_.tell();
  out = c;
  return true;
}

} // namespace vntts
