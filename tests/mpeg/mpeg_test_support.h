// SPDX-License-Identifier: MIT
#pragma once
// Helpers shared by the decoder tests: reading files, driving the core frame by frame, and
// comparing PCM against references.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "audio/mpeg/frame_scanner.h"
#include "audio/mpeg/stream_decoder.h"
#include "audio/wave_writing.h"
#include "core/messages.h"

namespace vntts::mpeg::testing {

inline std::string compliance_dir() {
  return std::string(VNTTS_SHARED_DIR) + "/testdata/mp3-compliance/";
}

inline std::vector<std::uint8_t> read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Interleaved 16-bit samples as a WAV file, the input of the encoders the tests call.
inline void write_s16_wave(const std::string& path, int rate, int channels,
                           const std::vector<std::int16_t>& samples) {
  StderrMessages messages;
  WriteWaveFile(
      path,
      WaveFormat::Pcm(static_cast<std::uint16_t>(channels), static_cast<std::uint32_t>(rate), 16),
      {reinterpret_cast<const std::uint8_t*>(samples.data()),
       samples.size() * sizeof(std::int16_t)},
      {}, messages);
}

inline bool file_exists(const std::string& path) {
  return std::ifstream(path).good();
}

inline std::vector<std::int16_t> as_s16(const std::vector<std::uint8_t>& bytes) {
  std::vector<std::int16_t> v(bytes.size() / 2);
  if (!v.empty()) std::memcpy(v.data(), bytes.data(), v.size() * 2);
  return v;
}

// The samples of a PCM block of `bytes` bytes.
inline std::vector<std::int16_t> pcm_samples(const std::uint8_t* block, std::size_t bytes) {
  std::vector<std::int16_t> v(bytes / 2);
  if (!v.empty()) std::memcpy(v.data(), block, v.size() * 2);
  return v;
}

// 24-bit WAV samples in 16-bit LSB units (x / 256), interleaved as stored.
inline std::vector<double> read_wav24(const std::string& path) {
  const auto b = read_file(path);
  std::vector<double> out;
  std::size_t p = 12;
  while (p + 8 <= b.size()) {
    const std::uint32_t size =
        b[p + 4] | (b[p + 5] << 8) | (b[p + 6] << 16) | (std::uint32_t{b[p + 7]} << 24);
    if (std::memcmp(&b[p], "data", 4) == 0) {
      for (std::size_t i = p + 8; i + 3 <= p + 8 + size && i + 3 <= b.size(); i += 3) {
        std::int32_t v = b[i] | (b[i + 1] << 8) | (b[i + 2] << 16);
        if (v & 0x800000) v -= 0x1000000;
        out.push_back(v / 256.0);
      }
      break;
    }
    p += 8 + size + (size & 1);
  }
  return out;
}

// Decodes a whole stream with the core, each frame in its own channel count (as the ISO
// references are laid out).
struct CoreOutput {
  std::vector<std::int16_t> s16;
  std::vector<float> f32;
  int frames = 0;
  int dropped = 0;
  std::uint32_t crc_errors = 0;
};

inline CoreOutput decode_core(const std::vector<std::uint8_t>& data,
                              InstructionSet set = BestInstructionSet()) {
  CoreOutput out;
  auto core = std::make_unique<StreamDecoder>(set);
  FrameScanner scanner(data.data(), data.size());
  FrameSpan span;
  std::vector<std::int16_t> tmp(2304);
  while (scanner.Next(span)) {
    ++out.frames;
    const int n = core->Decode(data.data() + span.offset, span.length, span.header);
    if (n == 0) {
      ++out.dropped;
      continue;
    }
    const int ch = span.header.channels;
    core->kernels().to_s16(core->Channel(0), core->Channel(1), ch, ch, n, tmp.data());
    out.s16.insert(out.s16.end(), tmp.begin(), tmp.begin() + n * ch);
    for (int i = 0; i < n; ++i)
      for (int c = 0; c < ch; ++c)
        out.f32.push_back(core->Channel(c)[i]);
  }
  out.crc_errors = core->CrcErrors();
  return out;
}

struct Difference {
  double rms = 0;
  double max = 0;
  std::size_t compared = 0;
};

template <typename A, typename B> Difference compare(const A& a, const B& b) {
  Difference d;
  d.compared = std::min(a.size(), b.size());
  double sum = 0;
  for (std::size_t i = 0; i < d.compared; ++i) {
    const double e = static_cast<double>(a[i]) - static_cast<double>(b[i]);
    sum += e * e;
    d.max = std::max(d.max, std::abs(e));
  }
  d.rms = d.compared ? std::sqrt(sum / static_cast<double>(d.compared)) : 0;
  return d;
}

} // namespace vntts::mpeg::testing
