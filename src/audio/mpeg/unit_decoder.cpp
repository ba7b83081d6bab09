#include "audio/mpeg/unit_decoder.h"

#include <cstring>
#include <new>

#include "audio/mpeg/frame_header.h"
#include "audio/mpeg/frame_scanner.h"
#include "audio/mpeg/mapped_file.h"
#include "audio/mpeg/stream_decoder.h"

namespace vntts {
namespace {

constexpr std::size_t kRecordBytes = 64;

// What the frame table holds for each frame (the rest of its 64 bytes stays zero).
struct FrameRecord {
  std::uint32_t offset;
  std::uint32_t length;
  std::uint8_t header[4];
  std::uint16_t samples;
  std::uint8_t is_tag; // the first frame carries a "Xing", "Info" or "VBRI" header, no audio
};
static_assert(sizeof(FrameRecord) <= kRecordBytes);

// What the decode table holds for each frame after DecodeAll.
struct DecodeRecord {
  std::uint32_t samples; // per channel; 0 when the frame was dropped or skipped
};
static_assert(sizeof(DecodeRecord) <= kRecordBytes);

std::uint32_t big_endian(const std::uint8_t* p) {
  return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) |
         p[3];
}

bool starts_with(const std::uint8_t* data, std::size_t size, std::size_t at, const char* text) {
  const std::size_t n = std::strlen(text);
  return at + n <= size && std::memcmp(data + at, text, n) == 0;
}

// Offset of the VBR header in a frame: after the header, the CRC and (Layer III) the side
// information.
std::size_t vbr_header_offset(const std::uint8_t* p) {
  const bool lsf = (p[1] & 0x08) == 0;
  const bool mono = (p[3] >> 6) == 3;
  const bool crc = (p[1] & 1) == 0;
  const bool layer3 = ((p[1] >> 1) & 3) == 1;
  std::size_t offset = 4 + (crc ? 2 : 0);
  if (layer3) offset += lsf ? (mono ? 9 : 17) : (mono ? 17 : 32);
  return offset;
}

} // namespace

UnitDecoder::UnitDecoder() = default;
UnitDecoder::~UnitDecoder() = default;

void UnitDecoder::Reset() {
  owned_stream_.reset();
  file_.reset();
  stream_ = nullptr;
  stream_length_ = 0;
  stream_offset_ = 0;
  format_ = {};
  version_flag_ = 0;
  bit_rate_ = 0;
  frame_length_ = 0;
  vbr_ = {};
  error_ = mpeg::kNoError;
  frame_count_ = 0;
  frame_table_.reset();
  decode_table_.reset();
  decoded_length_ = 0;
}

std::int32_t UnitDecoder::SetStream(const std::uint8_t* bytes, std::uint32_t length) {
  Reset();
  if (bytes && length) {
    owned_stream_ = std::make_unique_for_overwrite<std::uint8_t[]>(length);
    std::memcpy(owned_stream_.get(), bytes, length);
    stream_ = owned_stream_.get();
    stream_length_ = length;
  }
  Parse();
  return error_;
}

int UnitDecoder::OpenFile(const std::string& path) {
  Reset();
  auto file = std::make_unique<mpeg::MappedFile>();
  if (!file->open(path)) return 1;
  const std::uint8_t* data = file->data();
  const std::size_t size = file->size();
  std::size_t start = 0;
  if (starts_with(data, size, 0, "RIFF")) {
    if (starts_with(data, size, 8, "WAVEfmt")) {
      if (starts_with(data, size, 50, "fact")) start = 70;
      if (starts_with(data, size, 52, "fact")) start = 72;
      if (starts_with(data, size, 50, "data")) start = 58;
    }
    if (starts_with(data, size, 8, "RMP3") && starts_with(data, size, 12, "data")) start = 16;
  }
  if (start > size) start = size;
  std::size_t length = size - start;
  if (size >= 128 && starts_with(data, size, size - 128, "TAG"))
    length = size - 128 > start ? size - 128 - start : 0;
  if (length > UINT32_MAX) length = UINT32_MAX;
  file_ = std::move(file);
  stream_ = length ? data + start : nullptr;
  stream_length_ = static_cast<std::uint32_t>(length);
  stream_offset_ = static_cast<std::uint32_t>(start);
  Parse();
  return 0;
}

void UnitDecoder::Parse() {
  if (stream_length_ >= 4) {
    const std::uint8_t* b = stream_;
    const bool lsf = (b[1] & 0x08) == 0;
    version_flag_ = lsf ? 1 : 0;
    // MPEG-2.5 (bits 4 and 3 of b1 both 0) has its own, halved, rates.
    const bool mpeg25 = (b[1] & 0x18) == 0;
    const std::uint32_t rate = mpeg::sampling_frequency(lsf, (b[2] >> 2) & 3, mpeg25);
    bit_rate_ = mpeg::bitrate_kbps(lsf, 3, b[2] >> 4);
    const std::uint16_t channels = (b[3] >> 6) == 3 ? 1 : 2;
    format_.format_tag = 1;
    format_.channels = channels;
    format_.samples_per_sec = rate;
    format_.bits_per_sample = 16;
    format_.block_align = static_cast<std::uint16_t>(2 * channels);
    format_.avg_bytes_per_sec = 2u * channels * rate;
    frame_length_ = rate ? std::uint32_t{bit_rate_} * 125u * 1152u / rate : 0;
  }
  ReadVbrHeader();

  // Count the frames, then record where each lies.
  std::uint32_t count = 0;
  {
    mpeg::FrameScanner scanner(stream_, stream_length_);
    mpeg::FrameSpan span;
    while (scanner.next(span))
      ++count;
  }
  if (count == 0) return;
  try {
    frame_table_ = std::make_unique<std::uint8_t[]>(std::size_t{count} * kRecordBytes);
    decode_table_ = std::make_unique<std::uint8_t[]>(std::size_t{count} * kRecordBytes);
  } catch (const std::bad_alloc&) {
    // Too many frames to keep track of: the stream is treated as holding none.
    frame_table_.reset();
    decode_table_.reset();
    return;
  }
  frame_count_ = count;
  mpeg::FrameScanner scanner(stream_, stream_length_);
  mpeg::FrameSpan span;
  for (std::uint32_t i = 0; i < count && scanner.next(span); ++i) {
    FrameRecord r{};
    r.offset = span.offset;
    r.length = span.length;
    std::memcpy(r.header, stream_ + span.offset, 4);
    r.samples = span.header.samples;
    if (i == 0) {
      const std::size_t at = span.offset + vbr_header_offset(stream_ + span.offset);
      const std::uint8_t* f = stream_;
      const std::size_t end = span.offset + span.length;
      r.is_tag = starts_with(f, end, at, "Xing") || starts_with(f, end, at, "Info") ||
                 starts_with(f, end, span.offset + 36, "VBRI");
    }
    std::memcpy(frame_table_.get() + std::size_t{i} * kRecordBytes, &r, sizeof r);
  }
}

void UnitDecoder::ReadVbrHeader() {
  if (stream_length_ < 156) {
    error_ = mpeg::kStreamTooShort;
    return;
  }
  const std::uint8_t* tag = stream_ + vbr_header_offset(stream_);
  const bool lsf = version_flag_ != 0;
  if (std::memcmp(tag, "Xing", 4) == 0) {
    const std::uint32_t flags = big_endian(tag + 4);
    if ((flags & 3) == 0) {
      error_ = mpeg::kXingWithoutCounts;
      return;
    }
    vbr_.frames = big_endian(tag + 8);
    vbr_.bytes = big_endian(tag + 12);
    vbr_.min_kbps = mpeg::bitrate_kbps(lsf, 3, 1);
    vbr_.max_kbps = mpeg::bitrate_kbps(lsf, 3, 14);
  } else if (std::memcmp(tag, "VBRI", 4) == 0) {
    vbr_.bytes = big_endian(tag + 10);
    vbr_.frames = big_endian(tag + 14);
  }
}

std::unique_ptr<std::uint8_t[]> UnitDecoder::DecodeAll() {
  decoded_length_ = 0;
  const int out_channels = format_.channels;
  std::size_t total = 0;
  for (std::uint32_t i = 0; i < frame_count_; ++i) {
    FrameRecord r;
    std::memcpy(&r, frame_table_.get() + std::size_t{i} * kRecordBytes, sizeof r);
    total += r.samples;
  }
  const std::size_t capacity = total * static_cast<std::size_t>(out_channels) * 2;
  if (capacity == 0 || capacity > UINT32_MAX)
    return std::make_unique<std::uint8_t[]>(1); // nothing to decode, or more than fits
  std::unique_ptr<std::uint8_t[]> pcm;
  std::unique_ptr<mpeg::StreamDecoder> core;
  try {
    pcm = std::make_unique_for_overwrite<std::uint8_t[]>(capacity);
    core = std::make_unique<mpeg::StreamDecoder>();
  } catch (const std::bad_alloc&) {
    return std::make_unique<std::uint8_t[]>(1);
  }
  auto* out = reinterpret_cast<std::int16_t*>(pcm.get());
  std::size_t written = 0; // samples per channel
  for (std::uint32_t i = 0; i < frame_count_; ++i) {
    FrameRecord r;
    std::memcpy(&r, frame_table_.get() + std::size_t{i} * kRecordBytes, sizeof r);
    DecodeRecord d{};
    const bool in_range =
        r.offset >= play_start_ && (play_end_ == 0 || r.offset + r.length <= play_end_);
    mpeg::FrameHeader h;
    if (!r.is_tag && in_range && mpeg::parse_header(r.header, h)) {
      const int n = core->decode(stream_ + r.offset, r.length, h);
      if (n > 0 && written + static_cast<std::size_t>(n) <= total) {
        mpeg::to_s16(core->channel(0), core->channel(1), h.channels, out_channels,
                     static_cast<std::size_t>(n), out + written * out_channels);
        written += static_cast<std::size_t>(n);
        d.samples = static_cast<std::uint32_t>(n);
      }
    }
    std::memcpy(decode_table_.get() + std::size_t{i} * kRecordBytes, &d, sizeof d);
  }
  decoded_length_ = static_cast<std::uint32_t>(written * out_channels * 2);
  return pcm;
}

} // namespace vntts
