// SPDX-License-Identifier: MIT
#include "audio/mpeg/unit_decoder.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "audio/mpeg/frame_header.h"
#include "audio/mpeg/frame_scanner.h"
#include "audio/mpeg/mapped_file.h"
#include "audio/mpeg/stream_decoder.h"
#include "audio/mpeg/vbr_tag.h"

namespace vntts {
namespace mpeg {

// What the frame table holds for each frame (the rest of its 64 bytes stays zero).
struct FrameRecord {
  std::uint32_t offset;
  std::uint32_t length;
  std::uint8_t header[4];
  std::uint16_t samples;
  std::uint8_t is_tag;      // a "Xing", "Info" or "VBRI" frame: no audio, a stream starts after it
  std::uint8_t has_gapless; // the tag gave the encoder delay and padding
  std::uint16_t delay;
  std::uint16_t padding;
  std::uint32_t tag_frames; // audio frames the tag announces; 0 when it does not say
};
static_assert(sizeof(FrameRecord) <= 64);

} // namespace mpeg

namespace {

using mpeg::FrameRecord;
constexpr std::size_t kRecordBytes = 64;

// What the decode table holds for each frame after DecodeAll.
struct DecodeRecord {
  std::uint32_t samples; // per channel; 0 when the frame was dropped, skipped or trimmed away
};
static_assert(sizeof(DecodeRecord) <= kRecordBytes);

std::uint32_t BigEndian(const std::uint8_t* p) {
  return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) |
         p[3];
}

std::uint32_t LittleEndian(const std::uint8_t* p) {
  return p[0] | p[1] << 8 | p[2] << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

bool StartsWith(const std::uint8_t* data, std::size_t size, std::size_t at, const char* text) {
  const std::size_t n = std::strlen(text);
  return at + n <= size && std::memcmp(data + at, text, n) == 0;
}

// The "data" chunk of a RIFF file, found by walking its chunks: what ffmpeg writes around MP3
// (format, fact and LIST chunks of any size before the data) as well as the classic layouts.
bool FindRiffData(const std::uint8_t* data, std::size_t size, std::size_t& start,
                  std::size_t& length) {
  if (!StartsWith(data, size, 8, "WAVE")) return false;
  for (std::size_t p = 12; p + 8 <= size;) {
    const std::size_t bytes = LittleEndian(data + p + 4);
    if (StartsWith(data, size, p, "data")) {
      start = p + 8;
      length = std::min(bytes, size - start);
      return true;
    }
    p += 8 + bytes + (bytes & 1);
  }
  return false;
}

// Where the decoded samples of one frame fall in the stream of its tag frame, and which of
// them gapless decoding keeps: those from the encoder delay to the end less the padding, all
// shifted by the decoder's own delay.
struct GaplessWindow {
  bool active = false;
  std::uint64_t begin = 0; // first sample kept, counted from the stream's first decoded sample
  std::uint64_t end = 0;   // one past the last
  std::uint64_t position = 0;

  void Start(const FrameRecord& tag, std::uint64_t audio_frames) {
    active = tag.has_gapless != 0;
    position = 0;
    if (!active) return;
    const std::uint64_t frames = tag.tag_frames ? tag.tag_frames : audio_frames;
    const std::uint64_t total = frames * tag.samples;
    begin = tag.delay + std::uint64_t{mpeg::kDecoderDelay};
    end = total > tag.padding ? total - tag.padding + mpeg::kDecoderDelay : 0;
  }
  // The part [lo, hi) of a frame's n samples that is kept.
  void Keep(std::uint32_t n, std::uint32_t& lo, std::uint32_t& hi) const {
    lo = 0;
    hi = n;
    if (!active) return;
    const auto clamp = [&](std::uint64_t at) {
      return static_cast<std::uint32_t>(at <= position ? 0
                                                       : std::min<std::uint64_t>(at - position, n));
    };
    lo = clamp(begin);
    hi = std::max(lo, clamp(end));
  }
};

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

std::int32_t UnitDecoder::UseStream(const std::uint8_t* bytes, std::uint32_t length) {
  Reset();
  if (bytes && length) {
    stream_ = bytes;
    stream_length_ = length;
  }
  Parse();
  return error_;
}

int UnitDecoder::OpenFile(const std::string& path) {
  Reset();
  auto file = std::make_unique<mpeg::MappedFile>();
  if (!file->Open(path)) return 1;
  const std::uint8_t* data = file->data();
  const std::size_t size = file->size();
  std::size_t start = 0;
  std::size_t length = size;
  if (StartsWith(data, size, 0, "RIFF")) {
    if (StartsWith(data, size, 8, "WAVEfmt")) {
      if (StartsWith(data, size, 50, "fact")) start = 70;
      if (StartsWith(data, size, 52, "fact")) start = 72;
      if (StartsWith(data, size, 50, "data")) start = 58;
    }
    if (StartsWith(data, size, 8, "RMP3") && StartsWith(data, size, 12, "data")) start = 16;
    if (start > size) start = size;
    length = size - start;
    // A well-formed wrapper says where its data lies, whatever chunks come before it.
    FindRiffData(data, size, start, length);
  }
  if (size >= 128 && StartsWith(data, size, size - 128, "TAG") && size - 128 < start + length)
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
  // One walk over the frames; the spans are kept (in a list reused from stream to stream)
  // until they are recorded.
  spans_.clear();
  try {
    mpeg::FrameScanner scanner(stream_, stream_length_);
    mpeg::FrameSpan span;
    while (scanner.Next(span) && spans_.size() < UINT32_MAX)
      spans_.push_back(span);
  } catch (const std::bad_alloc&) {
    // Too many frames to keep track of: the stream is treated as holding none.
    spans_.clear();
    return;
  }
  const auto count = static_cast<std::uint32_t>(spans_.size());
  const mpeg::FrameSpan first = count ? spans_.front() : mpeg::FrameSpan{};
  if (count == 0) {
    if (stream_length_ < 156) error_ = mpeg::kStreamTooShort;
    return;
  }
  const mpeg::FrameHeader& h = first.header;
  version_flag_ = h.lsf ? 1 : 0;
  bit_rate_ = mpeg::BitrateKbps(h.lsf, 3, h.bitrate_index);
  format_.format_tag = 1;
  format_.channels = h.channels;
  format_.samples_per_sec = h.sample_rate;
  format_.bits_per_sample = 16;
  format_.block_align = static_cast<std::uint16_t>(2 * h.channels);
  format_.avg_bytes_per_sec = 2u * h.channels * h.sample_rate;
  frame_length_ = std::uint32_t{bit_rate_} * 125u * 1152u / h.sample_rate;
  ReadVbrHeader(first);

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
  for (std::uint32_t i = 0; i < count; ++i) {
    const mpeg::FrameSpan& span = spans_[i];
    FrameRecord r{};
    r.offset = span.offset;
    r.length = span.length;
    std::memcpy(r.header, stream_ + span.offset, 4);
    r.samples = span.header.samples;
    mpeg::VbrTag tag;
    if (mpeg::FindVbrTag(stream_ + span.offset, span.length, span.header, i > 0, tag)) {
      r.is_tag = 1;
      r.has_gapless = tag.has_gapless ? 1 : 0;
      r.delay = tag.delay;
      r.padding = tag.padding;
      r.tag_frames = tag.has_frames ? tag.frames : 0;
    }
    std::memcpy(frame_table_.get() + std::size_t{i} * kRecordBytes, &r, sizeof r);
  }
}

void UnitDecoder::ReadVbrHeader(const mpeg::FrameSpan& first) {
  if (stream_length_ - first.offset < 156) {
    error_ = mpeg::kStreamTooShort;
    return;
  }
  const std::uint8_t* frame = stream_ + first.offset;
  std::size_t at = mpeg::VbrTagOffset(first.header);
  // LAME writes the tag of a frame with a CRC where it would stand without one.
  if (first.header.has_crc && std::memcmp(frame + at - 2, "Xing", 4) == 0) at -= 2;
  const std::uint8_t* tag = frame + at;
  const bool lsf = version_flag_ != 0;
  if (std::memcmp(tag, "Xing", 4) == 0) {
    const std::uint32_t flags = BigEndian(tag + 4);
    if ((flags & 3) == 0) {
      error_ = mpeg::kXingWithoutCounts;
      return;
    }
    vbr_.frames = BigEndian(tag + 8);
    vbr_.bytes = BigEndian(tag + 12);
    vbr_.min_kbps = mpeg::BitrateKbps(lsf, 3, 1);
    vbr_.max_kbps = mpeg::BitrateKbps(lsf, 3, 14);
  } else if (std::memcmp(tag, "VBRI", 4) == 0) {
    vbr_.bytes = BigEndian(tag + 10);
    vbr_.frames = BigEndian(tag + 14);
  }
}

mpeg::FrameRecord UnitDecoder::Record(std::uint32_t i) const {
  FrameRecord r;
  std::memcpy(&r, frame_table_.get() + std::size_t{i} * kRecordBytes, sizeof r);
  return r;
}

std::size_t UnitDecoder::SamplesPerChannel() const {
  std::size_t total = 0;
  for (std::uint32_t i = 0; i < frame_count_; ++i)
    total += Record(i).samples;
  return total;
}

template <class Sink> std::size_t UnitDecoder::DecodeFrames(mpeg::StreamDecoder& core, Sink& sink) {
  const int out_channels = format_.channels;
  std::size_t written = 0; // samples per channel
  GaplessWindow window;
  for (std::uint32_t i = 0; i < frame_count_; ++i) {
    const FrameRecord r = Record(i);
    DecodeRecord d{};
    if (r.is_tag) {
      // A stream starts after its tag frame; its audio frames run to the next tag frame.
      std::uint64_t audio_frames = 0;
      for (std::uint32_t k = i + 1; k < frame_count_ && !Record(k).is_tag; ++k)
        ++audio_frames;
      window.Start(r, audio_frames);
      window.active = window.active && gapless_;
      std::memcpy(decode_table_.get() + std::size_t{i} * kRecordBytes, &d, sizeof d);
      continue;
    }
    const bool in_range =
        r.offset >= play_start_ && (play_end_ == 0 || r.offset + r.length <= play_end_);
    mpeg::FrameHeader h;
    if (in_range && mpeg::ParseHeader(r.header, h)) {
      const int n = core.Decode(stream_ + r.offset, r.length, h);
      std::uint32_t lo = 0;
      std::uint32_t hi = 0;
      if (n > 0) window.Keep(static_cast<std::uint32_t>(n), lo, hi);
      if (hi > lo) {
        std::int16_t* out = sink.Room(hi - lo);
        if (!out) break;
        core.kernels().to_s16(core.Channel(0) + lo, core.Channel(1) + lo, h.channels, out_channels,
                              hi - lo, out);
        sink.Took(hi - lo);
        written += hi - lo;
        d.samples = hi - lo;
      }
    }
    window.position += r.samples;
    std::memcpy(decode_table_.get() + std::size_t{i} * kRecordBytes, &d, sizeof d);
  }
  return written;
}

void UnitDecoder::SetInstructionSet(mpeg::InstructionSet set) {
  // The kept decoder runs on the old set's kernels: the next stream gets a new one.
  if (set != instruction_set_) core_.reset();
  instruction_set_ = set;
}

mpeg::StreamDecoder* UnitDecoder::FreshCore() {
  if (core_) {
    core_->Reset();
    return core_.get();
  }
  try {
    core_ = std::make_unique<mpeg::StreamDecoder>(instruction_set_);
  } catch (const std::bad_alloc&) {
    core_.reset();
  }
  return core_.get();
}

std::uint32_t UnitDecoder::DecodeWhole(std::int16_t* out, std::size_t total) {
  mpeg::StreamDecoder* core = FreshCore();
  if (!core) return 0;
  // Every frame straight into its place in the block.
  struct Block {
    std::int16_t* out;
    std::size_t total, channels, used = 0;
    std::int16_t* Room(std::size_t n) {
      return used + n <= total ? out + used * channels : nullptr;
    }
    void Took(std::size_t n) { used += n; }
  } block{out, total, format_.channels};
  return static_cast<std::uint32_t>(DecodeFrames(*core, block) * format_.channels * 2);
}

std::unique_ptr<std::uint8_t[]> UnitDecoder::DecodeAll() {
  decoded_length_ = 0;
  const std::size_t total = SamplesPerChannel();
  const std::size_t capacity = total * format_.channels * 2;
  if (capacity == 0 || capacity > UINT32_MAX)
    return std::make_unique<std::uint8_t[]>(1); // nothing to decode, or more than fits
  std::unique_ptr<std::uint8_t[]> pcm;
  try {
    pcm = std::make_unique_for_overwrite<std::uint8_t[]>(capacity);
  } catch (const std::bad_alloc&) {
    return std::make_unique<std::uint8_t[]>(1);
  }
  decoded_length_ = DecodeWhole(reinterpret_cast<std::int16_t*>(pcm.get()), total);
  return pcm;
}

bool UnitDecoder::DecodeInto(std::vector<std::int16_t>& samples) {
  decoded_length_ = 0;
  const std::size_t total = SamplesPerChannel();
  const std::size_t values = total * format_.channels;
  if (values == 0 || values * 2 > UINT32_MAX) {
    samples.clear();
    return false;
  }
  try {
    // Only samples beyond what the vector held are cleared first; all are overwritten.
    samples.resize(values);
  } catch (const std::bad_alloc&) {
    samples.clear();
    return false;
  }
  decoded_length_ = DecodeWhole(samples.data(), total);
  samples.resize(decoded_length_ / 2);
  return decoded_length_ != 0;
}

bool UnitDecoder::DecodeTo(const PieceSink& sink) {
  decoded_length_ = 0;
  const std::size_t channels = format_.channels;
  if (frame_count_ == 0 || channels == 0) return true;
  mpeg::StreamDecoder* core = FreshCore();
  std::vector<std::int16_t> buffer;
  try {
    buffer.resize(kPieceSamples * channels);
  } catch (const std::bad_alloc&) {
    return false;
  }
  if (!core) return false;
  // Frames gather in one small buffer that goes to the sink whenever the next would not fit.
  struct Pieces {
    const PieceSink& sink;
    std::vector<std::int16_t>& buffer;
    std::size_t channels, used = 0;
    bool stopped = false;
    bool Flush() {
      if (used && !sink(std::span<const std::int16_t>(buffer.data(), used * channels)))
        stopped = true;
      used = 0;
      return !stopped;
    }
    std::int16_t* Room(std::size_t n) {
      if ((used + n) * channels > buffer.size() && !Flush()) return nullptr;
      return buffer.data() + used * channels;
    }
    void Took(std::size_t n) { used += n; }
  } pieces{sink, buffer, channels};
  const std::size_t samples = DecodeFrames(*core, pieces);
  if (!pieces.stopped) pieces.Flush();
  decoded_length_ = static_cast<std::uint32_t>(
      std::min<std::uint64_t>(std::uint64_t{samples} * channels * 2, UINT32_MAX));
  return !pieces.stopped;
}

} // namespace vntts
