// SPDX-License-Identifier: MIT
#include "mp3_encoder.h"

#include <lame/lame.h>

#include <algorithm>
#include <memory>

namespace voicegen {
namespace {

struct LameDeleter {
  void operator()(lame_global_flags* gf) const { lame_close(gf); }
};

} // namespace

std::vector<std::uint8_t> EncodeUnit(const std::vector<std::int16_t>& pcm,
                                     const EncoderSettings& settings) {
  std::unique_ptr<lame_global_flags, LameDeleter> gf(lame_init());
  if (!gf || pcm.empty()) return {};
  lame_set_in_samplerate(gf.get(), settings.sample_rate);
  lame_set_out_samplerate(gf.get(), settings.sample_rate);
  lame_set_num_channels(gf.get(), 1);
  lame_set_mode(gf.get(), MONO);
  lame_set_brate(gf.get(), settings.kbps);
  lame_set_lowpassfreq(gf.get(), settings.lowpass_hz);
  lame_set_quality(gf.get(), settings.quality);
  lame_set_bWriteVbrTag(gf.get(), 1); // the Info frame with delay and padding
  lame_set_write_id3tag_automatic(gf.get(), 0);
  if (lame_init_params(gf.get()) < 0) return {};

  std::vector<std::uint8_t> out(pcm.size() * 5 / 4 + 7200 + 4 * 1152);
  const int n = lame_encode_buffer(gf.get(), pcm.data(), pcm.data(), static_cast<int>(pcm.size()),
                                   out.data(), static_cast<int>(out.size()));
  if (n < 0) return {};
  const int m = lame_encode_flush(gf.get(), out.data() + n, static_cast<int>(out.size()) - n);
  if (m < 0) return {};
  out.resize(static_cast<std::size_t>(n + m));

  // The stream starts with a placeholder of the tag frame; the real one is known only now.
  std::uint8_t tag[2880];
  const std::size_t tag_size = lame_get_lametag_frame(gf.get(), tag, sizeof tag);
  if (tag_size == 0 || tag_size > out.size()) return {};
  std::copy(tag, tag + tag_size, out.begin());
  return out;
}

} // namespace voicegen
