// SPDX-License-Identifier: MIT
#include "audio/mpeg/vbr_tag.h"

#include <cstring>

namespace vntts::mpeg {
namespace {

std::uint32_t BigEndian(const std::uint8_t* p) {
  return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) |
         p[3];
}

bool TextAt(const std::uint8_t* frame, std::size_t length, std::size_t at, const char* text) {
  return at + 4 <= length && std::memcmp(frame + at, text, 4) == 0;
}

bool ZeroBetween(const std::uint8_t* frame, std::size_t from, std::size_t to) {
  for (std::size_t i = from; i < to; ++i)
    if (frame[i] != 0) return false;
  return true;
}

// The encoder extension after a "Xing"/"Info" tag: a nine-byte encoder name, then at byte 21
// twelve bits of delay and twelve of padding.
void ReadEncoderExtension(const std::uint8_t* frame, std::size_t length, std::size_t tag,
                          std::uint32_t flags, VbrTag& out) {
  std::size_t at = tag + 8;
  if (flags & 1) at += 4;   // frames
  if (flags & 2) at += 4;   // bytes
  if (flags & 4) at += 100; // seek table
  if (flags & 8) at += 4;   // quality
  if (at + 24 > length) return;
  const std::uint8_t* e = frame + at;
  if (std::memcmp(e, "LAME", 4) != 0 && std::memcmp(e, "Lavf", 4) != 0 &&
      std::memcmp(e, "Lavc", 4) != 0)
    return;
  out.has_gapless = true;
  out.delay = static_cast<std::uint16_t>(e[21] << 4 | e[22] >> 4);
  out.padding = static_cast<std::uint16_t>((e[22] & 0x0F) << 8 | e[23]);
}

} // namespace

std::size_t VbrTagOffset(const FrameHeader& h) {
  return 4 + (h.has_crc ? 2 : 0) + (h.layer == 3 ? h.SideInfoBytes() : 0);
}

bool FindVbrTag(const std::uint8_t* frame, std::size_t length, const FrameHeader& h, bool strict,
                VbrTag& out) {
  out = {};
  const std::size_t spec_place = VbrTagOffset(h);
  const std::size_t places[2] = {spec_place, h.has_crc ? spec_place - 2 : spec_place};
  const std::size_t side_info_start = 4 + (h.has_crc ? 2 : 0);
  for (const std::size_t at : places) {
    if (!TextAt(frame, length, at, "Xing") && !TextAt(frame, length, at, "Info")) continue;
    if (strict && !ZeroBetween(frame, side_info_start, at)) continue;
    if (at + 8 > length) return true;
    const std::uint32_t flags = BigEndian(frame + at + 4);
    if ((flags & 1) && at + 12 <= length) {
      out.has_frames = true;
      out.frames = BigEndian(frame + at + 8);
    }
    ReadEncoderExtension(frame, length, at, flags, out);
    return true;
  }
  if (TextAt(frame, length, 36, "VBRI") && (!strict || ZeroBetween(frame, side_info_start, 36))) {
    if (36 + 18 <= length) {
      out.has_frames = true;
      out.frames = BigEndian(frame + 36 + 14);
    }
    return true;
  }
  return false;
}

} // namespace vntts::mpeg
