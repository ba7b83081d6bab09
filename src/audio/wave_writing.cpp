#include "audio/wave_writing.h"

#include "audio/byte_stream.h"
#include "audio/riff.h"
#include "audio/wave_texts.h"

namespace vntts {

int write_wave_file(const std::string& path, const WaveFormat& format,
                    std::span<const std::uint8_t> samples, std::span<const EventRecord> events,
                    Messages& messages, const WaveFormatExtension& extension) {
  const auto fail = [&](std::string_view text) {
    messages.report(text, wave_text::kSaveCaption, MessageIcon::Warning);
    return 1;
  };
  auto file = FileStream::open(path, "wb");
  if (!file) return fail(wave_text::kCannotCreate);
  RiffIO riff(*file);
  RiffChunk wave;
  if (!riff.create_riff(fourcc("WAVE"), wave)) return fail(wave_text::kRiffHeader);
  const std::vector<std::uint8_t> format_bytes = FormatChunkBytes(format, extension);
  RiffChunk fmt;
  if (!riff.create_chunk(fourcc("fmt "), static_cast<std::uint32_t>(format_bytes.size()), fmt))
    return fail(wave_text::kFmtHeader);
  if (file->write(format_bytes.data(), format_bytes.size()) != format_bytes.size() ||
      !riff.leave(fmt))
    return fail(wave_text::kFormatWrite);

  const auto bytes = static_cast<std::uint32_t>(samples.size());
  RiffChunk data;
  if (!riff.create_chunk(fourcc("data"), bytes, data)) return fail(wave_text::kDataHeader);
  if (bytes && file->write(samples.data(), bytes) != bytes) return fail(wave_text::kDataWrite);
  if (!riff.leave(data)) return fail(wave_text::kDataCloseFailed);
  if (!riff.leave(wave)) return fail(wave_text::kRiffCloseFailed);

  for (const auto& event : events) {
    const auto raw = event.to_bytes();
    if (file->write(raw.data(), raw.size()) != raw.size()) return fail(wave_text::kEventWrite);
  }
  // Data still in stdio's buffer can fail to land only now (a full disk).
  if (!file->close()) return fail(events.empty() ? wave_text::kDataWrite : wave_text::kEventWrite);
  return 0;
}

} // namespace vntts
