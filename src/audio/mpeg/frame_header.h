// SPDX-License-Identifier: MIT
#pragma once
// One MPEG audio frame header: the 32-bit word at the start of every frame, checked and
// expanded into the figures the decoder needs.
#include <cstddef>
#include <cstdint>

namespace vntts::mpeg {

enum class Mode : std::uint8_t { kStereo = 0, kJointStereo = 1, kDualChannel = 2, kMono = 3 };

struct FrameHeader {
  bool lsf = false;       // MPEG-2 lower sampling frequencies (or MPEG-2.5)
  bool mpeg25 = false;    // the MPEG-2.5 extension: 11025, 12000, 8000 Hz
  std::uint8_t layer = 0; // 1, 2 or 3
  bool has_crc = false;   // protection bit 0: a 16-bit CRC follows the header
  std::uint8_t bitrate_index = 0;
  std::uint8_t rate_index = 0;
  bool padding = false;
  Mode mode = Mode::kStereo;
  std::uint8_t mode_extension = 0;
  std::uint16_t kbps = 0; // 0 for free format
  std::uint32_t sample_rate = 0;
  std::uint8_t channels = 0;
  std::uint16_t samples = 0; // PCM samples per channel in this frame

  bool FreeFormat() const { return bitrate_index == 0; }
  // Bytes of the frame for a given bit rate (kbit/s), padding slot included.
  std::uint32_t BytesFor(std::uint32_t kbit_per_s) const;
  // Bytes of the frame at its own bit rate; 0 for free format.
  std::uint32_t Bytes() const { return FreeFormat() ? 0 : BytesFor(kbps); }
  // Bytes of a padding slot: 4 for Layer I, 1 otherwise.
  std::uint32_t SlotBytes() const { return layer == 1 ? 4 : 1; }
  // Layer III side information bytes after the header (and CRC).
  std::uint32_t SideInfoBytes() const;
  // Same stream: version, layer and sampling frequency agree.
  bool SameStream(const FrameHeader& other) const {
    return lsf == other.lsf && mpeg25 == other.mpeg25 && layer == other.layer &&
           rate_index == other.rate_index;
  }
};

// Reads the four bytes at p. Returns false for anything that is not a usable header:
// no sync, reserved version, reserved layer, bit-rate index 15, sampling index 3, or a layer
// other than III in MPEG-2.5.
bool ParseHeader(const std::uint8_t* p, FrameHeader& out);

// Bit rate in kbit/s for a version, layer (1..3) and index (0..14).
std::uint16_t BitrateKbps(bool lsf, int layer, int index);

// Sampling frequency for a version and index 0..2; 0 for index 3.
std::uint32_t SamplingFrequency(bool lsf, int index, bool mpeg25 = false);

} // namespace vntts::mpeg
