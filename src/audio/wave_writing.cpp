// SPDX-License-Identifier: MIT
#include "audio/wave_writing.h"

#include "audio/byte_stream.h"
#include "audio/riff.h"
#include "audio/wave_texts.h"

namespace vntts {

int WriteWaveFile(const std::string& path, const WaveFormat& format,
                  std::span<const std::uint8_t> samples, std::span<const EventRecord> events,
                  Messages& messages, const WaveFormatExtension& extension) {
  WaveFileWriter writer(messages);
  const bool ok =
      writer.Open(path, format, extension, static_cast<std::uint32_t>(samples.size())) &&
      writer.Write(samples) && writer.Finish(events);
  return ok ? 0 : 1;
}

WaveFileWriter::WaveFileWriter(Messages& messages) : messages_(messages) {}
WaveFileWriter::~WaveFileWriter() = default;

bool WaveFileWriter::Fail(std::string_view text) {
  messages_.Report(text, wave_text::kSaveCaption, MessageIcon::kWarning);
  riff_.reset();
  file_.reset();
  return false;
}

bool WaveFileWriter::Open(const std::string& path, const WaveFormat& format,
                          const WaveFormatExtension& extension, std::uint32_t expected_bytes) {
  file_ = FileStream::Open(path, "wb");
  if (!file_) return Fail(wave_text::kCannotCreate);
  riff_ = std::make_unique<RiffIO>(*file_);
  wave_ = std::make_unique<RiffChunk>();
  data_ = std::make_unique<RiffChunk>();
  if (!riff_->CreateRiff(Fourcc("WAVE"), *wave_)) return Fail(wave_text::kRiffHeader);
  const std::vector<std::uint8_t> format_bytes = FormatChunkBytes(format, extension);
  RiffChunk fmt;
  if (!riff_->CreateChunk(Fourcc("fmt "), static_cast<std::uint32_t>(format_bytes.size()), fmt))
    return Fail(wave_text::kFmtHeader);
  if (file_->Write(format_bytes.data(), format_bytes.size()) != format_bytes.size() ||
      !riff_->Leave(fmt))
    return Fail(wave_text::kFormatWrite);
  if (!riff_->CreateChunk(Fourcc("data"), expected_bytes, *data_))
    return Fail(wave_text::kDataHeader);
  return true;
}

bool WaveFileWriter::Write(std::span<const std::uint8_t> samples) {
  if (!file_) return false;
  if (!samples.empty() && file_->Write(samples.data(), samples.size()) != samples.size())
    return Fail(wave_text::kDataWrite);
  return true;
}

bool WaveFileWriter::Finish(std::span<const EventRecord> events) {
  if (!file_) return false;
  if (!riff_->Leave(*data_)) return Fail(wave_text::kDataCloseFailed);
  if (!riff_->Leave(*wave_)) return Fail(wave_text::kRiffCloseFailed);
  for (const auto& event : events) {
    const auto raw = event.ToBytes();
    if (file_->Write(raw.data(), raw.size()) != raw.size()) return Fail(wave_text::kEventWrite);
  }
  // Data still in stdio's buffer can fail to land only now (a full disk).
  const bool closed = file_->Close();
  riff_.reset();
  file_.reset();
  if (!closed) return Fail(events.empty() ? wave_text::kDataWrite : wave_text::kEventWrite);
  return true;
}

} // namespace vntts
