// SPDX-License-Identifier: MIT
#include "unit_encoding.h"

#include <algorithm>
#include <cmath>

#include "audio/mpeg/unit_decoder.h"

namespace voicegen {
namespace {

std::vector<std::int16_t> Decode(const std::vector<std::uint8_t>& mp3) {
  vntts::UnitDecoder decoder;
  decoder.SetStream(mp3.data(), static_cast<std::uint32_t>(mp3.size()));
  const auto block = decoder.DecodeAll();
  const auto* samples = reinterpret_cast<const std::int16_t*>(block.get());
  return {samples, samples + decoder.decoded_length() / 2};
}

double Mean(const std::vector<std::int16_t>& pcm) {
  double sum = 0;
  for (auto s : pcm)
    sum += s;
  return pcm.empty() ? 0 : sum / static_cast<double>(pcm.size());
}

// How far an encoding misses the checks; 0 when it passes.
double Miss(const EncodedUnit& e, const CheckSettings& check) {
  return std::max(0.0, e.tail_dbfs - check.tail_dbfs) +
         std::max(0.0, std::abs(e.offset) - check.max_offset);
}

} // namespace

double TailLevelDbfs(const std::vector<std::int16_t>& pcm, int sample_rate) {
  const auto block = static_cast<std::size_t>(sample_rate / 1000);
  std::size_t end = pcm.size();
  while (end > 0 && pcm[end - 1] == 0)
    --end;
  if (end == 0) return -200;
  const std::size_t begin = end > block ? end - block : 0;
  double sum = 0;
  for (std::size_t i = begin; i < end; ++i)
    sum += static_cast<double>(pcm[i]) * pcm[i];
  const double rms = std::sqrt(sum / static_cast<double>(end - begin)) / 32768.0;
  return rms > 0 ? 20 * std::log10(rms) : -200;
}

EncodedUnit EncodeChecked(const ShapedUnit& unit, const EncoderSettings& encoder,
                          const CheckSettings& check) {
  EncodedUnit best;
  std::size_t silence = unit.silence;
  const auto step = static_cast<std::size_t>(check.step_ms * check.sample_rate / 1000);
  const std::size_t longest =
      silence + static_cast<std::size_t>(check.most_added_ms * check.sample_rate / 1000);
  for (int attempt = 1; attempt <= check.attempts; ++attempt) {
    // Each try moves the sound one sample later: every granule then holds other samples and
    // the codec's noise is drawn anew, where correcting the sound by the offset just measured
    // would only add the next draw to the last one.
    const auto shift = static_cast<std::size_t>(attempt - 1);
    std::vector<std::int16_t> pcm(shift + unit.sound.size() + silence, 0);
    std::copy(unit.sound.begin(), unit.sound.end(),
              pcm.begin() + static_cast<std::ptrdiff_t>(shift));
    EncodedUnit e;
    e.mp3 = EncodeUnit(pcm, encoder);
    e.samples = pcm.size();
    e.attempts = attempt;
    if (e.mp3.empty()) {
      e.error = "LAME could not encode it";
      return e;
    }
    const auto decoded = Decode(e.mp3);
    if (decoded.size() != pcm.size()) {
      // The archive's units rely on gapless decoding: without it every unit would start with
      // the codec's delay.
      e.mp3.clear();
      e.error = "our decoder does not give back the samples encoded (no gapless decoding)";
      return e;
    }
    e.tail_dbfs = TailLevelDbfs(decoded, check.sample_rate);
    e.offset = Mean(decoded);
    e.passed = Miss(e, check) == 0;
    if (best.mp3.empty() || Miss(e, check) < Miss(best, check)) best = e;
    best.attempts = attempt;
    if (e.passed) break;
    if (e.tail_dbfs >= check.tail_dbfs) silence = std::min(silence + step, longest);
  }
  return best;
}

} // namespace voicegen
