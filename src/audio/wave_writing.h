// SPDX-License-Identifier: MIT
#pragma once
// Writes a RIFF WAVE file: a 16-byte "fmt " chunk (the 40-byte extensible form for more than
// two channels or 16 bits), the "data" chunk and, after the RIFF chunk, the event records.
// Failures are reported under "Save File Error".
#include <memory>
#include <span>
#include <string>

#include "audio/event_record.h"
#include "audio/wave_format.h"
#include "core/messages.h"

namespace vntts {

class FileStream;
class RiffIO;
struct RiffChunk;

// 0 on success, 1 after a message.
int WriteWaveFile(const std::string& path, const WaveFormat& format,
                  std::span<const std::uint8_t> samples, std::span<const EventRecord> events,
                  Messages& messages, const WaveFormatExtension& extension = {});

// The same file written piece by piece, for samples that are made while they are written: the
// header when opened, samples as they come, the chunk sizes and the event records at the end.
// Each step returns false after its message; nothing more is written after a failure.
class WaveFileWriter {
public:
  explicit WaveFileWriter(Messages& messages);
  ~WaveFileWriter();
  WaveFileWriter(const WaveFileWriter&) = delete;
  WaveFileWriter& operator=(const WaveFileWriter&) = delete;

  // `expected_bytes` goes into the "data" header until Finish writes the real size.
  bool Open(const std::string& path, const WaveFormat& format,
            const WaveFormatExtension& extension = {}, std::uint32_t expected_bytes = 0);
  bool Write(std::span<const std::uint8_t> samples);
  bool Finish(std::span<const EventRecord> events = {});

private:
  bool Fail(std::string_view text);

  Messages& messages_;
  std::unique_ptr<FileStream> file_;
  std::unique_ptr<RiffIO> riff_;
  std::unique_ptr<RiffChunk> wave_;
  std::unique_ptr<RiffChunk> data_;
};

} // namespace vntts
