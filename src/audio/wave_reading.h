// SPDX-License-Identifier: MIT
#pragma once
// The first steps that loading and appending share: the "WAVE" RIFF chunk, its "fmt " chunk
// read into a format record (the extensible form resolved to its plain tag, anything longer
// cut off), and the position just after the format bytes.
#include <string_view>

#include "audio/riff.h"
#include "audio/wave_format.h"
#include "core/messages.h"

namespace vntts {

struct WaveHeader {
  RiffChunk riff;
  RiffChunk fmt;
  WaveFormat format;
  WaveFormatExtension extension;
  std::uint64_t after_format = 0;
};

// False after reporting the failure under the caption.
bool ReadWaveHeader(RiffIO& riff, std::string_view caption, Messages& messages, WaveHeader& out);

// Leaves the "fmt " chunk and finds "data" in the RIFF chunk; false after "WAVE File has no
// 'data' chunk !" under the caption.
bool FindDataChunk(RiffIO& riff, const WaveHeader& header, std::string_view caption,
                   Messages& messages, RiffChunk& data);

} // namespace vntts
