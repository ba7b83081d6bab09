// SPDX-License-Identifier: MIT
#pragma once
// LAME to make MP3 files (libmpg123, shared with the decoder's tests, decodes them): the
// references the archive's own decoding is held against. Only built when both are present.
#ifdef VNTTS_HAVE_REFERENCE_CODECS
#include <lame/lame.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "mpeg/mpg123_reference.h"

namespace vntts::testing {

using mpeg::testing::mpg123_decode;

// A speech-like test signal: a gliding tone with a slow loudness envelope.
inline std::vector<std::int16_t> Glide(int rate, int channels, double seconds, double f0) {
  const auto frames = static_cast<std::size_t>(rate * seconds);
  std::vector<std::int16_t> pcm(frames * static_cast<std::size_t>(channels));
  double phase = 0;
  for (std::size_t i = 0; i < frames; ++i) {
    const double t = static_cast<double>(i) / rate;
    phase += 2 * M_PI * (f0 + 150 * t / seconds) / rate;
    const double env = std::sin(M_PI * t / seconds);
    for (int c = 0; c < channels; ++c)
      pcm[i * static_cast<std::size_t>(channels) + static_cast<std::size_t>(c)] =
          static_cast<std::int16_t>(9000 * env * std::sin(phase + c * 0.5));
  }
  return pcm;
}

inline std::vector<std::uint8_t> LameEncode(const std::vector<std::int16_t>& pcm, int rate,
                                            int channels, int kbps) {
  lame_global_flags* gf = lame_init();
  lame_set_in_samplerate(gf, rate);
  lame_set_out_samplerate(gf, rate);
  lame_set_num_channels(gf, channels);
  lame_set_mode(gf, channels == 1 ? MONO : JOINT_STEREO);
  lame_set_brate(gf, kbps);
  lame_set_bWriteVbrTag(gf, 0);
  lame_init_params(gf);
  const int frames = static_cast<int>(pcm.size()) / channels;
  std::vector<std::uint8_t> out(static_cast<std::size_t>(frames) * 5 / 4 + 7200);
  std::vector<std::int16_t> left(static_cast<std::size_t>(frames)), right(left.size());
  for (int i = 0; i < frames; ++i) {
    left[static_cast<std::size_t>(i)] = pcm[static_cast<std::size_t>(i * channels)];
    right[static_cast<std::size_t>(i)] = pcm[static_cast<std::size_t>(i * channels + channels - 1)];
  }
  int n = lame_encode_buffer(gf, left.data(), right.data(), frames, out.data(),
                             static_cast<int>(out.size()));
  n += lame_encode_flush(gf, out.data() + n, static_cast<int>(out.size()) - n);
  lame_close(gf);
  out.resize(static_cast<std::size_t>(n));
  return out;
}

} // namespace vntts::testing
#endif
