// SPDX-License-Identifier: MIT
#include "audio/mpeg/frame_header.h"

namespace vntts::mpeg {
namespace {

// kbit/s by [lsf][layer - 1][index].
constexpr std::uint16_t kBitrates[2][3][15] = {
    {{0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
     {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
     {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}},
    {{0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
     {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
     {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}},
};

constexpr std::uint32_t kRates[3][4] = {
    {44100, 48000, 32000, 0}, {22050, 24000, 16000, 0}, {11025, 12000, 8000, 0}};

} // namespace

std::uint16_t BitrateKbps(bool lsf, int layer, int index) {
  if (layer < 1 || layer > 3 || index < 0 || index > 14) return 0;
  return kBitrates[lsf ? 1 : 0][layer - 1][index];
}

std::uint32_t SamplingFrequency(bool lsf, int index, bool mpeg25) {
  return (index < 0 || index > 3) ? 0 : kRates[mpeg25 ? 2 : lsf ? 1 : 0][index];
}

std::uint32_t FrameHeader::BytesFor(std::uint32_t kbit_per_s) const {
  if (sample_rate == 0) return 0;
  const std::uint32_t pad = padding ? 1 : 0;
  if (layer == 1) return (12 * 1000 * kbit_per_s / sample_rate + pad) * 4;
  const std::uint32_t factor = (layer == 3 && lsf) ? 72 : 144;
  return factor * 1000 * kbit_per_s / sample_rate + pad;
}

std::uint32_t FrameHeader::SideInfoBytes() const {
  if (lsf) return channels == 1 ? 9 : 17;
  return channels == 1 ? 17 : 32;
}

bool ParseHeader(const std::uint8_t* p, FrameHeader& h) {
  if (p[0] != 0xFF || (p[1] & 0xE0) != 0xE0) return false;
  const int version = (p[1] >> 3) & 3; // 3 = MPEG-1, 2 = MPEG-2, 0 = MPEG-2.5, 1 reserved
  const int layer_bits = (p[1] >> 1) & 3;
  const int bitrate_index = p[2] >> 4;
  const int rate_index = (p[2] >> 2) & 3;
  if (version == 1 || layer_bits == 0 || bitrate_index == 15 || rate_index == 3 ||
      (version == 0 && layer_bits != 1))
    return false;
  h.lsf = version != 3;
  h.mpeg25 = version == 0;
  h.layer = static_cast<std::uint8_t>(4 - layer_bits);
  h.has_crc = (p[1] & 1) == 0;
  h.bitrate_index = static_cast<std::uint8_t>(bitrate_index);
  h.rate_index = static_cast<std::uint8_t>(rate_index);
  h.padding = (p[2] & 2) != 0;
  h.mode = static_cast<Mode>(p[3] >> 6);
  h.mode_extension = (p[3] >> 4) & 3;
  h.kbps = BitrateKbps(h.lsf, h.layer, bitrate_index);
  h.sample_rate = SamplingFrequency(h.lsf, rate_index, h.mpeg25);
  h.channels = h.mode == Mode::kMono ? 1 : 2;
  h.samples = h.layer == 1 ? 384 : (h.layer == 3 && h.lsf) ? 576 : 1152;
  return true;
}

} // namespace vntts::mpeg
