#include <cstdint>

#include "audio/byte_stream.h"
#include "audio/riff.h"
#include "audio/wave_buffer.h"
#include "audio/wave_reading.h"
#include "audio/wave_texts.h"

namespace vntts {

int WaveBuffer::Append(const std::string& path, const std::uint8_t* bytes, std::uint32_t count,
                       std::uint16_t channels, std::uint32_t samples_per_second,
                       std::uint16_t bits_per_sample, Messages& messages) {
  constexpr auto caption = wave_text::kAppendCaption;
  const auto fail = [&](std::string_view text, std::string_view box_caption) {
    messages.report(text, box_caption, MessageIcon::Warning);
    return 1;
  };
  auto file = FileStream::open(path, "r+b");
  if (!file) return fail(wave_text::kCouldNotOpen, caption);
  RiffIO riff(*file);
  WaveHeader header;
  if (!read_wave_header(riff, caption, messages, header)) return 1;
  if (header.format.bits_per_sample != bits_per_sample || header.format.channels != channels ||
      header.format.samples_per_second != samples_per_second)
    return fail(wave_text::kNoMatchFormat, caption);
  RiffChunk data;
  if (!find_data_chunk(riff, header, caption, messages, data)) return 1;
  // Every refusal comes before the first byte is written, so a refused append leaves the
  // file exactly as it was.
  if (data.size == 0) return fail(wave_text::kEmptyData, wave_text::kOpenCaption);
  if (UINT32_MAX - data.size < count) return fail(wave_text::kDataHeader, caption);

  // The new header goes where the "data" header really stands; for the layout Save writes
  // that is right after the format bytes. The RIFF size is left as it was, and samples
  // appended over an event trailer replace it.
  RiffChunk grown;
  if (!file->seek(data.data_offset - 8) ||
      !riff.create_chunk(fourcc("data"), data.size + count, grown))
    return fail(wave_text::kDataHeader, caption);
  if (!file->seek(grown.data_offset + data.size) || file->tell() == 0) return 0;
  if (count && file->write(bytes, count) != count) return fail(wave_text::kDataShortRead, caption);
  if (!file->close()) return fail(wave_text::kDataShortRead, caption);
  return 0;
}

} // namespace vntts
