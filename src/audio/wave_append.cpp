// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>

#include "audio/byte_stream.h"
#include "audio/riff.h"
#include "audio/wave_append.h"
#include "audio/wave_buffer.h"
#include "audio/wave_reading.h"
#include "audio/wave_texts.h"

namespace vntts {

int WaveBuffer::Append(const std::string& path, const std::uint8_t* bytes, std::uint32_t count,
                       std::uint16_t channels, std::uint32_t samples_per_second,
                       std::uint16_t bits_per_sample, Messages& messages) {
  auto file = FileStream::Open(path, "r+b");
  if (!file) {
    messages.Report(wave_text::kCouldNotOpen, wave_text::kAppendCaption, MessageIcon::kWarning);
    return 1;
  }
  const int result =
      AppendTo(*file, bytes, count, channels, samples_per_second, bits_per_sample, messages);
  if (result == 0 && !file->Close()) {
    messages.Report(wave_text::kDataShortRead, wave_text::kAppendCaption, MessageIcon::kWarning);
    return 1;
  }
  return result;
}

int WaveBuffer::AppendTo(ByteStream& file, const std::uint8_t* bytes, std::uint32_t count,
                         std::uint16_t channels, std::uint32_t samples_per_second,
                         std::uint16_t bits_per_sample, Messages& messages) {
  AppendPoint point;
  if (!FindAppendPoint(file, channels, samples_per_second, bits_per_sample, messages, point))
    return 1;
  return WriteAppend(file, point, bytes, count, messages);
}

bool FindAppendPoint(ByteStream& file, std::uint16_t channels, std::uint32_t samples_per_second,
                     std::uint16_t bits_per_sample, Messages& messages, AppendPoint& point) {
  constexpr auto kCaption = wave_text::kAppendCaption;
  const auto fail = [&](std::string_view text, std::string_view box_caption) {
    messages.Report(text, box_caption, MessageIcon::kWarning);
    return false;
  };
  RiffIO riff(file);
  WaveHeader header;
  if (!ReadWaveHeader(riff, kCaption, messages, header)) return false;
  // PCM samples added to A-law or float ones would play as noise.
  if (header.format.format_tag != WaveFormat::kPcmTag ||
      header.format.bits_per_sample != bits_per_sample || header.format.channels != channels ||
      header.format.samples_per_second != samples_per_second)
    return fail(wave_text::kNoMatchFormat, kCaption);
  RiffChunk data;
  if (!FindDataChunk(riff, header, kCaption, messages, data)) return false;
  // Every refusal comes before the first byte is written, so a refused append leaves the
  // file exactly as it was.
  if (data.size == 0) return fail(wave_text::kEmptyData, wave_text::kOpenCaption);
  // An earlier append cut short leaves a chunk that claims more than the file holds: go on
  // from the samples really there rather than leave a hole.
  const std::uint64_t size = file.size();
  point.data_offset = data.data_offset;
  point.samples = static_cast<std::uint32_t>(
      std::min<std::uint64_t>(data.size, size > data.data_offset ? size - data.data_offset : 0));
  point.file_size = size;
  return true;
}

int WriteAppend(ByteStream& file, AppendPoint& point, const std::uint8_t* bytes,
                std::uint32_t count, Messages& messages) {
  constexpr auto kCaption = wave_text::kAppendCaption;
  const auto fail = [&](std::string_view text) {
    messages.Report(text, kCaption, MessageIcon::kWarning);
    return 1;
  };
  const std::uint32_t old = point.samples;
  if (UINT32_MAX - old < count) return fail(wave_text::kDataHeader);

  // A writer killed at any point must leave a file that loads with all its old samples. The
  // event trailer and pad byte after the old samples go first: the new samples replace them,
  // and nothing left of them may be read as events. Then the grown size, which the reader
  // takes as far as the file goes (the RIFF size is left as it was, which marks the file as
  // grown), then the samples. A single byte goes before the size instead: its chunk could
  // still look whole to the reader, and one stray byte is never read as an event.
  const std::uint64_t end_of_old = point.data_offset + old;
  RiffIO riff(file);
  RiffChunk grown;
  const auto write_size = [&] {
    return file.Seek(point.data_offset - 8) &&
           riff.CreateChunk(Fourcc("data"), old + count, grown) && file.Flush();
  };
  const auto write_samples = [&] {
    return file.Seek(end_of_old) && (count == 0 || file.Write(bytes, count) == count) &&
           file.Flush();
  };
  // Nothing to cut when the file ends with the old samples (the usual case of a file this
  // writer grew a moment ago): the kernel's truncate is not free.
  if (point.file_size > end_of_old && !file.Truncate(end_of_old))
    return fail(wave_text::kDataHeader);
  point.file_size = std::min(point.file_size, end_of_old);
  if (count == 1 ? !write_samples() : !write_size()) return fail(wave_text::kDataHeader);
  if (count == 1 ? !write_size() : !write_samples()) return fail(wave_text::kDataShortRead);
  point.samples = old + count;
  point.file_size = end_of_old + count;
  const std::uint8_t pad = 0;
  if ((old + count) % 2 == 1) {
    if (file.Write(&pad, 1) != 1 || !file.Flush()) return fail(wave_text::kDataShortRead);
    ++point.file_size;
  }
  return 0;
}

} // namespace vntts
