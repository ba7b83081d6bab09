// SPDX-License-Identifier: MIT
#include "audio/wave_reading.h"

#include <algorithm>
#include <array>

#include "audio/wave_texts.h"

namespace vntts {

bool ReadWaveHeader(RiffIO& riff, std::string_view caption, Messages& messages, WaveHeader& out) {
  const auto fail = [&](std::string_view text) {
    messages.Report(text, caption, MessageIcon::kWarning);
    return false;
  };
  if (!riff.Stream().Seek(0) || !riff.FindRiff(Fourcc("WAVE"), out.riff))
    return fail(wave_text::kNotWave);
  if (!riff.FindChunk(out.riff, Fourcc("fmt "), out.fmt)) return fail(wave_text::kNoFmt);
  std::array<std::uint8_t, WaveFormatExtension::kChunkBytes> raw{};
  const std::size_t wanted = std::min<std::size_t>(out.fmt.size, raw.size());
  if (riff.Stream().Read(raw.data(), wanted) != wanted) return fail(wave_text::kFmtShortRead);
  out.format = ParseFormatChunk(raw.data(), wanted, out.extension);
  out.after_format = out.fmt.data_offset + out.fmt.size;
  return true;
}

bool FindDataChunk(RiffIO& riff, const WaveHeader& header, std::string_view caption,
                   Messages& messages, RiffChunk& data) {
  if (!riff.Leave(header.fmt) || !riff.FindChunk(header.riff, Fourcc("data"), data)) {
    messages.Report(wave_text::kNoData, caption, MessageIcon::kWarning);
    return false;
  }
  return true;
}

} // namespace vntts
