// SPDX-License-Identifier: MIT
#pragma once
// Layer III frame decoding: side information, the bit reservoir, scale factors, Huffman
// decoding, requantisation, stereo processing and the hybrid filter bank, handing each
// granule's subband samples to the polyphase filter. Works on memory only and keeps all of
// its state in fixed arrays.
#include <cstddef>
#include <cstdint>

#include "audio/mpeg/bit_reader.h"
#include "audio/mpeg/frame_header.h"
#include "audio/mpeg/kernels.h"
#include "audio/mpeg/polyphase.h"

namespace vntts::mpeg {

struct GranuleInfo {
  std::uint16_t part2_3_length = 0;
  std::uint16_t big_values = 0;
  std::uint16_t global_gain = 0;
  std::uint16_t scalefac_compress = 0;
  bool window_switching = false;
  std::uint8_t block_type = 0;
  bool mixed = false;
  std::uint8_t table_select[3] = {};
  std::uint8_t subblock_gain[3] = {};
  std::uint16_t region1_start = 0;
  std::uint16_t region2_start = 0;
  bool preflag = false;
  bool scalefac_scale = false;
  bool count1_table_b = false;

  bool ShortBlocks() const { return window_switching && block_type == 2; }
};

struct SideInfo {
  std::uint16_t main_data_begin = 0;
  std::uint8_t scfsi[2] = {};
  GranuleInfo gr[2][2];
};

struct ScaleFactors {
  std::uint8_t l[22] = {};
  std::uint8_t s[13][3] = {};
  // LSF intensity stereo: the value that marks an illegal position in each band.
  std::uint8_t l_illegal[22] = {};
  std::uint8_t s_illegal[13] = {};
};

// Reads the side information that follows the header (and CRC). False when it does not fit.
bool ReadSideInfo(const FrameHeader& h, BitReader& br, SideInfo& si);

class Layer3Decoder {
public:
  explicit Layer3Decoder(const Kernels& kernels) : kernels_(&kernels) {}
  void Reset();
  // `frame` is the whole frame, header included, followed by kBitReaderPadding readable bytes.
  // On success writes h.samples values per channel to pcm[0] (and pcm[1] for two channels).
  // Returns false, writing nothing, when the frame's main data begins before the data held
  // (the frame is dropped) or its side information does not fit.
  bool Decode(const FrameHeader& h, const std::uint8_t* frame, std::size_t length, Polyphase& synth,
              float* const pcm[2]);

  static constexpr std::size_t kMaxFrameBytes = 4096;

private:
  void StoreMainData(const std::uint8_t* data, std::size_t bytes, std::size_t keep);
  void ReadScalefactors(const FrameHeader& h, BitReader& br, int gr, int ch);
  void ReadLsfScalefactors(const FrameHeader& h, BitReader& br, int ch);
  // Huffman decoding and requantisation in one pass; returns one past the last nonzero line.
  int DecodeSpectrum(const FrameHeader& h, BitReader& br, const GranuleInfo& g,
                     const ScaleFactors& sf, std::size_t part3_end, float* xr);
  void Stereo(const FrameHeader& h, const GranuleInfo& g, int nonzero_right);
  void Reorder(const FrameHeader& h, const GranuleInfo& g, float* x);
  void Hybrid(const GranuleInfo& g, int ch, int nonzero, float* slots);

  const Kernels* kernels_;
  SideInfo si_;
  ScaleFactors sf_[2];
  alignas(32) float xr_[2][576] = {};
  alignas(32) float overlap_[2][576] = {}; // time-major: [i * 32 + subband]
  alignas(32) float slots_[18 * 32] = {};
  int nonzero_[2] = {0, 0};
  std::size_t reservoir_bytes_ = 0;
  std::uint8_t reservoir_[512 + kMaxFrameBytes + 4096] = {};
};

} // namespace vntts::mpeg
