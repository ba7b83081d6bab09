#include "mp3_encoder.h"

#include <algorithm>
#include <lame/lame.h>
#include <memory>

namespace voicegen {
namespace {

constexpr int kGranule = 576;      // samples per MPEG-2 Layer III frame
constexpr int kDecoderDelay = 529; // the synthesis filter bank's delay in samples

struct LameDeleter {
  void operator()(lame_global_flags* gf) const { lame_close(gf); }
};

// Layer III bit rates in kbit/s, MPEG-1 then MPEG-2/2.5.
constexpr int kBitRates[2][16] = {
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0}};
constexpr int kRates[3][3] = {{44100, 48000, 32000}, {22050, 24000, 16000}, {11025, 12000, 8000}};

} // namespace

std::vector<std::size_t> FrameOffsets(const std::vector<std::uint8_t>& s) {
  std::vector<std::size_t> offsets;
  std::size_t pos = 0;
  while (pos + 4 <= s.size()) {
    if (s[pos] != 0xFF || (s[pos + 1] & 0xE0) != 0xE0) break;
    const int version = (s[pos + 1] >> 3) & 3; // 3 MPEG-1, 2 MPEG-2, 0 MPEG-2.5
    const int layer = (s[pos + 1] >> 1) & 3;   // 1 = Layer III
    const int rate_index = (s[pos + 2] >> 2) & 3;
    const int bit_index = s[pos + 2] >> 4;
    const int padding = (s[pos + 2] >> 1) & 1;
    if (version == 1 || layer != 1 || rate_index == 3 || bit_index == 0 || bit_index == 15) break;
    const int row = version == 3 ? 0 : version == 2 ? 1 : 2;
    const int rate = kRates[row][rate_index];
    const int kbps = kBitRates[version == 3 ? 0 : 1][bit_index];
    const int per_frame = version == 3 ? 144 : 72;
    const auto length = static_cast<std::size_t>(per_frame * kbps * 1000 / rate + padding);
    offsets.push_back(pos);
    pos += length;
  }
  offsets.push_back(std::min(pos, s.size()));
  return offsets;
}

std::vector<std::uint8_t> EncodeUnit(const std::vector<std::int16_t>& pcm,
                                     const EncoderSettings& settings) {
  std::unique_ptr<lame_global_flags, LameDeleter> gf(lame_init());
  if (!gf || pcm.empty()) return {};
  lame_set_in_samplerate(gf.get(), settings.sample_rate);
  lame_set_out_samplerate(gf.get(), settings.sample_rate);
  lame_set_num_channels(gf.get(), 1);
  lame_set_mode(gf.get(), MONO);
  lame_set_brate(gf.get(), settings.kbps);
  lame_set_quality(gf.get(), settings.quality);
  lame_set_bWriteVbrTag(gf.get(), 0);
  lame_set_disable_reservoir(gf.get(), 1);
  if (lame_init_params(gf.get()) < 0) return {};
  std::vector<std::uint8_t> out(pcm.size() * 5 / 4 + 7200 + 4 * 1152);
  const int n = lame_encode_buffer(gf.get(), pcm.data(), pcm.data(), static_cast<int>(pcm.size()),
                                   out.data(), static_cast<int>(out.size()));
  if (n < 0) return {};
  const int m = lame_encode_flush(gf.get(), out.data() + n, static_cast<int>(out.size()) - n);
  if (m < 0) return {};
  out.resize(static_cast<std::size_t>(n + m));

  // Frame k (from 0) decodes to samples [k*576, (k+1)*576); input sample i comes out at
  // i + encoder delay + decoder delay. Frame 0 holds only the look-ahead; keep the frames from
  // 1 up to the one holding the last input sample.
  const auto frames = FrameOffsets(out);
  const std::size_t count = frames.size() - 1;
  const long last_out =
      static_cast<long>(pcm.size()) - 1 + lame_get_encoder_delay(gf.get()) + kDecoderDelay;
  const std::size_t keep_end = std::min(count, static_cast<std::size_t>(last_out / kGranule) + 1);
  if (count < 2 || keep_end <= 1) return out;
  return {out.begin() + static_cast<std::ptrdiff_t>(frames[1]),
          out.begin() + static_cast<std::ptrdiff_t>(frames[keep_end])};
}

} // namespace voicegen
