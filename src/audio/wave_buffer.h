// SPDX-License-Identifier: MIT
#pragma once
// The engine's in-memory wave: a PCM format record, one contiguous block of samples and the
// speech events that belong to them, loaded from and saved to RIFF WAVE files whose event
// records follow the RIFF chunk.
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "audio/event_record.h"
#include "audio/wave_format.h"
#include "core/messages.h"

namespace vntts {

class ByteStream;

class WaveBuffer {
public:
  // The end sample that means "up to the last sample".
  static constexpr std::uint32_t kToEnd = 0xFFFFFFFF;

  explicit WaveBuffer(Messages& messages);
  virtual ~WaveBuffer() = default;
  WaveBuffer(const WaveBuffer&) = delete;
  WaveBuffer& operator=(const WaveBuffer&) = delete;

  // 0 on success, 1 after telling the user what went wrong.
  int Load(const std::string& path);
  // The same reading rules over bytes in memory (the name is remembered as the file name).
  int LoadFromMemory(std::span<const std::uint8_t> bytes, const std::string& name = {});
  // Writes frames [first_sample, end_sample) and the event trailer; kToEnd (or any end past
  // the last sample) means the last sample; a first sample past the end writes no frames.
  int Save(const std::string& path, std::uint32_t first_sample = 0,
           std::uint32_t end_sample = kToEnd);

  // Frames held; shows "Invalid format file!" and gives 0 when the format has no frame size.
  std::uint32_t SampleCount() const;
  std::uint32_t FrameBytes() const { return format_.FrameBytes(); }
  // Only for an empty buffer and a positive size: a zeroed block of that many bytes.
  // False when nothing was allocated (after a message when memory ran out).
  bool Allocate(std::uint32_t size);
  void Release();

  const WaveFormat& Format() const { return format_; }
  // Also forgets the extension of a loaded file.
  void SetFormat(const WaveFormat& format);
  // What a loaded extensible "fmt " chunk said beyond the record, written back by Save.
  const WaveFormatExtension& Extension() const { return extension_; }
  std::uint16_t Channels() const { return channels_; }
  std::uint32_t SampleRate() const { return sample_rate_; }
  std::uint16_t Bits() const { return bits_; }

  std::uint8_t* data() { return samples_.empty() ? nullptr : samples_.data(); }
  const std::uint8_t* data() const { return samples_.empty() ? nullptr : samples_.data(); }
  std::uint32_t DataLength() const { return static_cast<std::uint32_t>(samples_.size()); }
  // Replaces the samples with a copy of these bytes (the engine's finished sentence).
  void AssignSamples(std::span<const std::uint8_t> bytes);

  const std::vector<EventRecord>& Events() const { return events_; }
  // Inserts before the first event at the same or a later position, so that the newest of
  // several events at one position fires first. Returns the number of events.
  virtual std::size_t AddEvent(const EventRecord& event);
  virtual void RemoveAllEvents();

  const std::string& FileName() const { return file_name_; }

  // Adds raw samples to the end of an existing PCM WAV file's "data" chunk when the file has
  // the same channels, rate and bits. Touches no buffer. 0 on success, 1 after a message; a
  // refused append leaves the file untouched, and one cut short at any point leaves a file
  // that loads with all its old samples.
  static int Append(const std::string& path, const std::uint8_t* bytes, std::uint32_t count,
                    std::uint16_t channels, std::uint32_t samples_per_second,
                    std::uint16_t bits_per_sample, Messages& messages);
  // The same on an open stream (flushed, not closed).
  static int AppendTo(ByteStream& file, const std::uint8_t* bytes, std::uint32_t count,
                      std::uint16_t channels, std::uint32_t samples_per_second,
                      std::uint16_t bits_per_sample, Messages& messages);

protected:
  Messages& messages() const { return messages_; }

private:
  int LoadFrom(ByteStream& stream);

  Messages& messages_;
  WaveFormat format_;
  WaveFormatExtension extension_;
  std::uint16_t channels_ = 0;
  std::uint32_t sample_rate_ = 0;
  std::uint16_t bits_ = 0;
  std::vector<std::uint8_t> samples_;
  std::vector<EventRecord> events_;
  std::string file_name_;
};

} // namespace vntts
