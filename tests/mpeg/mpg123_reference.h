// SPDX-License-Identifier: MIT
#pragma once
// libmpg123 as a reference decoder for tests and benchmarks only: decodes a stream held in
// memory to interleaved signed 16-bit samples, with its gapless trimming on (its default, and
// ours) or off (every frame's samples, as our raw mode gives them).
#include <mpg123.h>

#include <cstdint>
#include <vector>

namespace vntts::mpeg::testing {

struct Mpg123Output {
  std::vector<std::int16_t> samples;
  long rate = 0;
  int channels = 0;
};

inline void mpg123_setup(mpg123_handle* mh, bool gapless = true) {
  mpg123_param(mh, MPG123_ADD_FLAGS, MPG123_QUIET, 0);
  mpg123_param(mh, gapless ? MPG123_ADD_FLAGS : MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0);
  mpg123_format_none(mh);
  for (const long rate : {8000L, 11025L, 12000L, 16000L, 22050L, 24000L, 32000L, 44100L, 48000L})
    mpg123_format(mh, rate, MPG123_MONO | MPG123_STEREO, MPG123_ENC_SIGNED_16);
}

// Decodes with an existing handle (opened and closed here).
inline void mpg123_decode_with(mpg123_handle* mh, const std::uint8_t* data, std::size_t size,
                               Mpg123Output& out) {
  out.samples.clear();
  mpg123_open_feed(mh);
  mpg123_feed(mh, data, size);
  unsigned char buffer[16384];
  for (;;) {
    std::size_t done = 0;
    const int rc = mpg123_read(mh, buffer, sizeof buffer, &done);
    const auto* s = reinterpret_cast<const std::int16_t*>(buffer);
    out.samples.insert(out.samples.end(), s, s + done / 2);
    if (rc == MPG123_NEW_FORMAT) {
      int encoding = 0;
      mpg123_getformat(mh, &out.rate, &out.channels, &encoding);
      continue;
    }
    if (rc != MPG123_OK) break;
  }
  mpg123_close(mh);
}

// Decodes into `block` straight from libmpg123, keeping the block's memory from call to call
// (it only grows for a longer stream): libmpg123 at its cheapest, for benchmarks. Returns the
// bytes decoded.
inline std::size_t mpg123_decode_into(mpg123_handle* mh, const std::uint8_t* data, std::size_t size,
                                      std::vector<std::int16_t>& block) {
  mpg123_open_feed(mh);
  mpg123_feed(mh, data, size);
  std::size_t used = 0; // bytes
  for (;;) {
    if (block.size() * 2 < used + 65536) block.resize(block.size() * 2 + 65536);
    std::size_t done = 0;
    const int rc = mpg123_read(mh, reinterpret_cast<unsigned char*>(block.data()) + used,
                               block.size() * 2 - used, &done);
    used += done;
    if (rc != MPG123_OK && rc != MPG123_NEW_FORMAT) break;
  }
  mpg123_close(mh);
  return used;
}

inline Mpg123Output mpg123_decode(const std::uint8_t* data, std::size_t size, bool gapless = true) {
  static const int init = mpg123_init(); // required once by older library versions
  (void)init;
  Mpg123Output out;
  mpg123_handle* mh = mpg123_new(nullptr, nullptr);
  if (!mh) return out;
  mpg123_setup(mh, gapless);
  mpg123_decode_with(mh, data, size, out);
  mpg123_delete(mh);
  return out;
}

} // namespace vntts::mpeg::testing
