// SPDX-License-Identifier: MIT
#pragma once
// LAME to make MP3 files and libmpg123 to decode them: the references the archive's own
// decoding is held against. Only built when both libraries are present.
#ifdef VNTTS_HAVE_REFERENCE_CODECS
#include <lame/lame.h>
#include <mpg123.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace vntts::testing {

struct Pcm {
  std::vector<std::int16_t> samples; // interleaved
  long rate = 0;
  int channels = 0;
};

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

// Decodes a whole file with libmpg123, with its gapless trimming on (its default, and ours).
inline Pcm Mpg123Decode(const std::string& path) {
  Pcm pcm;
  mpg123_handle* mh = mpg123_new(nullptr, nullptr);
  if (!mh) return pcm;
  mpg123_param(mh, MPG123_ADD_FLAGS, MPG123_GAPLESS, 0.0);
  if (mpg123_open(mh, path.c_str()) == MPG123_OK) {
    int encoding = 0;
    mpg123_getformat(mh, &pcm.rate, &pcm.channels, &encoding);
    mpg123_format_none(mh);
    mpg123_format(mh, pcm.rate, pcm.channels, MPG123_ENC_SIGNED_16);
    std::vector<unsigned char> buffer(16384);
    while (true) {
      std::size_t done = 0;
      const int err = mpg123_read(mh, buffer.data(), buffer.size(), &done);
      const auto* s = reinterpret_cast<const std::int16_t*>(buffer.data());
      pcm.samples.insert(pcm.samples.end(), s, s + done / 2);
      if (err != MPG123_OK && err != MPG123_NEW_FORMAT) break;
    }
    mpg123_close(mh);
  }
  mpg123_delete(mh);
  return pcm;
}

// Decodes a stream held in memory with libmpg123 (gapless trimming on), as 16-bit PCM.
inline Pcm Mpg123DecodeBytes(const std::uint8_t* bytes, std::size_t size) {
  Pcm pcm;
  mpg123_handle* mh = mpg123_new(nullptr, nullptr);
  if (!mh) return pcm;
  mpg123_param(mh, MPG123_ADD_FLAGS, MPG123_GAPLESS, 0.0);
  mpg123_format_none(mh);
  for (long rate : {8000L, 11025L, 12000L, 16000L, 22050L, 24000L, 32000L, 44100L, 48000L})
    mpg123_format(mh, rate, MPG123_MONO | MPG123_STEREO, MPG123_ENC_SIGNED_16);
  if (mpg123_open_feed(mh) == MPG123_OK) {
    std::vector<unsigned char> out(1 << 16);
    std::size_t done = 0;
    int err = mpg123_decode(mh, bytes, size, out.data(), out.size(), &done);
    while (true) {
      if (err == MPG123_NEW_FORMAT) {
        int encoding = 0;
        mpg123_getformat(mh, &pcm.rate, &pcm.channels, &encoding);
      }
      const auto* s = reinterpret_cast<const std::int16_t*>(out.data());
      pcm.samples.insert(pcm.samples.end(), s, s + done / 2);
      if (err != MPG123_OK && err != MPG123_NEW_FORMAT) break;
      err = mpg123_decode(mh, nullptr, 0, out.data(), out.size(), &done);
    }
  }
  mpg123_delete(mh);
  return pcm;
}

} // namespace vntts::testing
#endif
