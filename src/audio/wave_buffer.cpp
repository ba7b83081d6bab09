// SPDX-License-Identifier: MIT
#include "audio/wave_buffer.h"

#include <algorithm>
#include <new>

#include "audio/byte_stream.h"
#include "audio/riff.h"
#include "audio/wave_reading.h"
#include "audio/wave_texts.h"
#include "audio/wave_writing.h"
#include "core/allocation.h"

namespace vntts {

WaveBuffer::WaveBuffer(Messages& messages) : messages_(messages) {
  SetFormat(WaveFormat::Pcm(2, 22050, 16));
}

void WaveBuffer::SetFormat(const WaveFormat& format) {
  format_ = format;
  extension_ = {};
  channels_ = format.channels;
  sample_rate_ = format.samples_per_second;
  bits_ = format.bits_per_sample;
}

int WaveBuffer::Load(const std::string& path) {
  file_name_ = path;
  auto file = FileStream::Open(path, "rb");
  if (!file) {
    messages_.Report(wave_text::kCouldNotOpen, wave_text::kOpenCaption, MessageIcon::kWarning);
    return 1;
  }
  return LoadFrom(*file);
}

int WaveBuffer::LoadFromMemory(std::span<const std::uint8_t> bytes, const std::string& name) {
  file_name_ = name;
  MemoryStream stream(bytes);
  return LoadFrom(stream);
}

int WaveBuffer::LoadFrom(ByteStream& stream) {
  constexpr auto kCaption = wave_text::kOpenCaption;
  const auto fail = [&](std::string_view text) {
    messages_.Report(text, kCaption, MessageIcon::kWarning);
    return 1;
  };
  RiffIO riff(stream);
  WaveHeader header;
  if (!ReadWaveHeader(riff, kCaption, messages_, header)) return 1;
  // A format without a frame size cannot describe any sample; refuse it before the buffer
  // changes rather than hand out a wave nobody can count.
  if (header.format.FrameBytes() == 0) return fail(wave_text::kInvalidFormat);
  RiffChunk data;
  if (!FindDataChunk(riff, header, kCaption, messages_, data)) return 1;
  if (data.size == 0) return fail(wave_text::kEmptyData);

  Release();
  // A chunk that claims more than the file holds is a short read; the buffer keeps what was
  // there instead of reserving the claimed size. Only a file grown by Append (whose RIFF size
  // is left as it was) and cut short while growing is read as far as it goes, in whole frames.
  const std::uint64_t here = stream.Tell();
  const std::uint64_t available = stream.size() > here ? stream.size() - here : 0;
  std::uint32_t wanted = data.size;
  if (data.size > available && header.riff.end() < data.end())
    wanted = static_cast<std::uint32_t>(available - available % header.format.FrameBytes());
  const auto to_read = static_cast<std::uint32_t>(std::min<std::uint64_t>(wanted, available));
  if (to_read > 0 && !Allocate(to_read)) return 1;
  const std::size_t got = to_read ? stream.Read(samples_.data(), to_read) : 0;
  if (got != wanted || got == 0) {
    samples_.resize(got);
    return fail(wave_text::kDataShortRead);
  }

  // Events follow the samples and the pad byte of an odd-sized chunk; a short last record
  // ends the list quietly.
  events_.clear();
  if (wanted == data.size && (data.size % 2 == 0 || stream.Seek(data.end() + 1))) {
    std::uint8_t record[EventRecord::kBytes];
    while (stream.Read(record, sizeof record) == sizeof record)
      events_.push_back(EventRecord::FromBytes(record));
  }

  SetFormat(header.format);
  extension_ = header.extension;
  return 0;
}

int WaveBuffer::Save(const std::string& path, std::uint32_t first_sample,
                     std::uint32_t end_sample) {
  file_name_ = path;
  const std::uint32_t frame = FrameBytes();
  const std::uint32_t count = frame ? DataLength() / frame : 0;
  const std::uint32_t end = std::min(end_sample, count);
  const std::uint32_t first = std::min(first_sample, end);
  const std::span<const std::uint8_t> range(samples_.data() + std::size_t{first} * frame,
                                            std::size_t{end - first} * frame);
  if (WriteWaveFile(path, format_, range, events_, messages_, extension_) != 0) return 1;
  messages_.Report(wave_text::kComplete, "", MessageIcon::kInformation);
  return 0;
}

std::uint32_t WaveBuffer::SampleCount() const {
  const std::uint32_t frame = FrameBytes();
  if (frame < 1) {
    messages_.Report(wave_text::kInvalidFormat, "", MessageIcon::kInformation);
    return 0;
  }
  return DataLength() / frame;
}

bool WaveBuffer::Allocate(std::uint32_t size) {
  if (!samples_.empty() || size == 0) return false;
  try {
    if (AllocationFailureRequested("wave buffer")) throw std::bad_alloc();
    samples_.assign(size, 0);
  } catch (const std::bad_alloc&) {
    samples_.clear();
    messages_.Report(wave_text::kNoMemory, "", MessageIcon::kError);
    return false;
  }
  return true;
}

void WaveBuffer::Release() {
  samples_.clear();
  samples_.shrink_to_fit();
}

void WaveBuffer::AssignSamples(std::span<const std::uint8_t> bytes) {
  samples_.assign(bytes.begin(), bytes.end());
}

std::size_t WaveBuffer::AddEvent(const EventRecord& event) {
  const auto at = std::find_if(events_.begin(), events_.end(),
                               [&](const EventRecord& e) { return e.position >= event.position; });
  events_.insert(at, event);
  return events_.size();
}

void WaveBuffer::RemoveAllEvents() {
  events_.clear();
  events_.shrink_to_fit();
}

} // namespace vntts
