#pragma once
// Writes a RIFF WAVE file: a 16-byte "fmt " chunk (the 40-byte extensible form for more than
// two channels or 16 bits), the "data" chunk and, after the RIFF chunk, the event records.
// Failures are reported under "Save File Error".
#include <span>
#include <string>

#include "audio/event_record.h"
#include "audio/wave_format.h"
#include "core/messages.h"

namespace vntts {

// 0 on success, 1 after a message.
int write_wave_file(const std::string& path, const WaveFormat& format,
                    std::span<const std::uint8_t> samples, std::span<const EventRecord> events,
                    Messages& messages, const WaveFormatExtension& extension = {});

} // namespace vntts
