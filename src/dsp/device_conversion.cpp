// SPDX-License-Identifier: MIT
#include "dsp/device_conversion.h"

#include <algorithm>
#include <bit>

#include "dsp/sentence_resampling.h"

namespace vntts {

std::vector<std::int16_t> UpsampleNeighbourMean(std::span<const std::int16_t> in) {
  std::vector<std::int16_t> out;
  if (in.empty()) return out;
  out.resize(2 * in.size() - 1);
  for (std::size_t i = 0; i + 1 < in.size(); ++i) {
    out[2 * i] = in[i];
    // The sum of two samples fits in int; shifting a negative sum right rounds down.
    out[2 * i + 1] = static_cast<std::int16_t>((in[i] + in[i + 1]) >> 1);
  }
  out.back() = in.back();
  return out;
}

int NeighbourMeanPasses(std::uint32_t rate) {
  int passes = 0;
  for (std::uint64_t r = kUnitSampleRate; r <= rate; r *= 2, ++passes)
    if (r == rate) return passes;
  return -1;
}

std::uint32_t MapFramePosition(std::uint32_t unit_frame, std::uint32_t rate) {
  const std::uint64_t scaled = static_cast<std::uint64_t>(unit_frame) * rate / kUnitSampleRate;
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(scaled, UINT32_MAX));
}

std::size_t FrameBytes(const OutputLayout& out) {
  return static_cast<std::size_t>(out.bits_per_sample / 8) * out.channels;
}

namespace {

std::vector<std::int16_t> ToRate(std::span<const std::int16_t> unit, std::uint32_t rate) {
  const int passes = NeighbourMeanPasses(rate);
  if (passes == 0) return {unit.begin(), unit.end()};
  if (passes > 0) {
    std::vector<std::int16_t> v = UpsampleNeighbourMean(unit);
    for (int p = 1; p < passes; ++p)
      v = UpsampleNeighbourMean(v);
    return v;
  }
  return ResampleSentence(unit, kUnitSampleRate, rate);
}

// Writes one sample in a little-endian container of `bytes` bytes: 8-bit is unsigned with its
// midpoint at 0x80, wider formats are signed with the 16 bits at the top. 8-bit samples are
// rounded to the nearest step (halves up): dropping the low byte would pull every sample down by
// half a step on average, an offset heard as a step wherever speech meets silence.
void PutSample(std::uint8_t* dst, std::int16_t s, std::size_t bytes) {
  if (bytes == 1) {
    const int rounded = std::min((s + 128) >> 8, 127); // [-128, 127]; the shift rounds down
    *dst = static_cast<std::uint8_t>(rounded + 128);
    return;
  }
  const auto u = static_cast<std::uint16_t>(s);
  for (std::size_t b = 0; b + 2 < bytes; ++b)
    dst[b] = 0;
  dst[bytes - 2] = static_cast<std::uint8_t>(u & 0xFF);
  dst[bytes - 1] = static_cast<std::uint8_t>(u >> 8);
}

} // namespace

std::vector<std::uint8_t> ConvertSentence(std::span<const std::int16_t> unit,
                                          std::size_t speech_frames, const OutputLayout& out) {
  const std::size_t frame_bytes = FrameBytes(out);
  if (frame_bytes == 0 || out.samples_per_second == 0) return {};
  speech_frames = std::min(speech_frames, unit.size());
  // The unit rate itself (the default) needs no copy of the samples.
  std::vector<std::int16_t> resampled;
  std::span<const std::int16_t> at_rate = unit;
  if (out.samples_per_second != kUnitSampleRate) {
    resampled = ToRate(unit, out.samples_per_second);
    at_rate = resampled;
  }
  const std::size_t sample_bytes = out.bits_per_sample / 8;

  std::vector<std::uint8_t> bytes;
  if (sample_bytes == 2 && out.channels == 1 && std::endian::native == std::endian::little) {
    // The samples already are the bytes: one copy, without clearing the block first.
    const auto* first = reinterpret_cast<const std::uint8_t*>(at_rate.data());
    bytes.assign(first, first + at_rate.size() * 2);
    return bytes;
  }
  bytes.resize(at_rate.size() * frame_bytes);
  std::uint8_t* dst = bytes.data();
  if (sample_bytes == 2 && out.channels == 1) {
    for (std::int16_t s : at_rate) {
      const auto u = static_cast<std::uint16_t>(s);
      *dst++ = static_cast<std::uint8_t>(u & 0xFF);
      *dst++ = static_cast<std::uint8_t>(u >> 8);
    }
  } else if (sample_bytes == 2 && out.channels == 2) {
    for (std::int16_t s : at_rate) {
      const auto u = static_cast<std::uint16_t>(s);
      dst[0] = dst[2] = static_cast<std::uint8_t>(u & 0xFF);
      dst[1] = dst[3] = static_cast<std::uint8_t>(u >> 8);
      dst += 4;
    }
  } else {
    for (std::int16_t s : at_rate)
      for (std::uint16_t c = 0; c < out.channels; ++c, dst += sample_bytes)
        PutSample(dst, s, sample_bytes);
  }

  if (sample_bytes == 1 && speech_frames < unit.size()) {
    const std::size_t pause_from = std::min<std::size_t>(
        MapFramePosition(static_cast<std::uint32_t>(speech_frames), out.samples_per_second),
        at_rate.size());
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(pause_from * frame_bytes), bytes.end(),
              std::uint8_t{0x7F});
  }
  return bytes;
}

} // namespace vntts
