// SPDX-License-Identifier: MIT
#pragma once
// Appends sentence after sentence to one WAV file, as WaveBuffer::Append does for each, but
// keeps the file open and its append point known between them: the header is read once, and
// the file is cut only when something (an event trailer, a pad byte) follows the samples.
// After every call the file on disk is what WaveBuffer::Append would have left.
#include <cstdint>
#include <memory>
#include <string>

#include "audio/byte_stream.h"
#include "audio/wave_append.h"
#include "core/messages.h"

namespace vntts {

class WaveAppender {
public:
  WaveAppender(std::string path, Messages& messages)
      : path_(std::move(path)), messages_(messages) {}

  // Same rules, messages and results as WaveBuffer::Append.
  int Append(const std::uint8_t* bytes, std::uint32_t count, std::uint16_t channels,
             std::uint32_t samples_per_second, std::uint16_t bits_per_sample);
  // True once an append has succeeded and the file is held open for the next.
  bool IsOpen() const { return file_ != nullptr; }

private:
  struct Format {
    std::uint16_t channels = 0;
    std::uint32_t samples_per_second = 0;
    std::uint16_t bits_per_sample = 0;
    bool operator==(const Format&) const = default;
  };

  std::string path_;
  Messages& messages_;
  std::unique_ptr<FileStream> file_;
  Format format_;
  AppendPoint point_;
};

} // namespace vntts
