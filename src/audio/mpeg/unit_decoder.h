// SPDX-License-Identifier: MIT
#pragma once
// Decodes one MPEG audio stream (Layer I, II or III; MPEG-1 or the MPEG-2 lower sampling
// frequencies) held whole in memory, or found inside a file, to interleaved signed 16-bit PCM.
//
// Typical use:
//   UnitDecoder d;
//   d.SetStream(bytes, length);
//   std::unique_ptr<std::uint8_t[]> pcm = d.DecodeAll();
//   copy d.decoded_length() bytes out of pcm (format: d.output_format()).
// The speech-unit archive instead keeps a few decoders and reuses each for one unit after
// another (UseStream, DecodeInto): the decoding state is set back to its initial values for
// every stream, so a reused decoder gives exactly what a fresh one gives, without allocating
// and clearing its large state again for every syllable.
//
// The first frame the scanner accepts (after any ID3v2 tag) fixes the output format; every
// later frame must have its version, layer and sampling frequency (the stream ends where a run
// of frames in another one begins) and is delivered in its channel count, so the PCM always
// matches output_format(). Tag frames ("Xing", "Info", "VBRI") give no audio, and by default
// the encoder delay and padding they announce are trimmed (gapless decoding).
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "audio/mpeg/kernels.h"

namespace vntts {

namespace mpeg {

// The PCM wave format record of the decoder's output.
struct PcmFormat {
  std::uint16_t format_tag = 0; // 1 = PCM once a stream is set
  std::uint16_t channels = 0;
  std::uint32_t samples_per_sec = 0;
  std::uint32_t avg_bytes_per_sec = 0;
  std::uint16_t block_align = 0;
  std::uint16_t bits_per_sample = 0;
};

// Frame and byte counts of a "Xing" or "VBRI" header in the first frame; all zero without one.
struct VbrInfo {
  std::uint32_t frames = 0;
  std::uint32_t bytes = 0;
  std::uint16_t min_kbps = 0; // bit-rate range noted for a "Xing" stream
  std::uint16_t max_kbps = 0;
};

// Parser error numbers (error()).
inline constexpr std::int32_t kNoError = 0;
inline constexpr std::int32_t kXingWithoutCounts = 4; // "Xing" flags word without bits 0 and 1
inline constexpr std::int32_t kStreamTooShort = 5;    // fewer than 156 bytes: no VBR header read

class MappedFile;
struct FrameSpan;
class StreamDecoder;
struct FrameRecord;

} // namespace mpeg

class UnitDecoder {
public:
  UnitDecoder();
  ~UnitDecoder();
  UnitDecoder(const UnitDecoder&) = delete;
  UnitDecoder& operator=(const UnitDecoder&) = delete;

  // Takes its own copy of `length` bytes and parses the stream. Returns the parser's error
  // number (kNoError, kXingWithoutCounts or kStreamTooShort); none of them is fatal.
  // A null pointer is taken as an empty stream.
  std::int32_t SetStream(const std::uint8_t* bytes, std::uint32_t length);

  // Like SetStream but reads the caller's bytes in place, without a copy: they must stay
  // valid and unchanged until the next SetStream, UseStream or OpenFile.
  std::int32_t UseStream(const std::uint8_t* bytes, std::uint32_t length);

  // Maps the file read-only, finds the stream inside a RIFF wrapper if there is one, leaves a
  // trailing 128-byte "TAG" block out, and parses. Returns 0 on success, 1 when the file
  // cannot be opened or mapped.
  int OpenFile(const std::string& path);

  // Decodes the whole stream (or the play range) and returns a new PCM block owned by the
  // caller; its size in bytes is decoded_length(). Never null: an empty stream gives an empty
  // block and a decoded length of 0.
  std::unique_ptr<std::uint8_t[]> DecodeAll();

  // Decodes like DecodeAll straight into `samples` (interleaved, in output_format()), reusing
  // its storage. False when there is nothing to decode or memory ran out (samples is then
  // empty); decoded_length() gives the bytes either way.
  bool DecodeInto(std::vector<std::int16_t>& samples);

  // Decodes like DecodeAll but hands the PCM to `sink` in pieces of at most kPieceSamples
  // sample frames as it goes, so that memory stays small however long the stream is. The sink
  // answers whether to go on. Returns false when the sink stopped it (or memory ran out);
  // decoded_length() then counts what the sink was given.
  using PieceSink = std::function<bool(std::span<const std::int16_t>)>;
  static constexpr std::size_t kPieceSamples = 16384;
  bool DecodeTo(const PieceSink& sink);

  // Bytes of PCM produced by the last DecodeAll or DecodeTo.
  std::uint32_t decoded_length() const { return decoded_length_; }

  const mpeg::PcmFormat& output_format() const { return format_; }
  // 1 for the MPEG-2 lower sampling frequencies, 0 for MPEG-1.
  std::uint16_t VersionFlag() const { return version_flag_; }
  // Kilobits per second of the first frame (0 for free format or an invalid header).
  std::uint16_t BitRate() const { return bit_rate_; }
  // Nominal bytes per frame of the first frame, without the padding byte.
  std::uint32_t FrameLength() const { return frame_length_; }
  const mpeg::VbrInfo& vbr_info() const { return vbr_; }
  // Frames the parser counted in the stream.
  std::uint32_t FrameCount() const { return frame_count_; }
  std::int32_t Error() const { return error_; }
  std::uint32_t StreamLength() const { return stream_length_; }
  // Offset of the stream inside the file (OpenFile), 0 for SetStream.
  std::uint32_t StreamOffset() const { return stream_offset_; }

  // Gapless decoding (the default) trims the encoder delay and padding that a LAME or ffmpeg
  // tag frame announces, for each tag frame of concatenated streams; off, every frame's
  // samples come out as decoded. Takes effect at the next DecodeAll.
  void SetGapless(bool on) { gapless_ = on; }
  bool Gapless() const { return gapless_; }

  // The instruction set the decoding runs on; the best this processor runs by default (tests
  // and benchmarks choose the others).
  void SetInstructionSet(mpeg::InstructionSet set);

  // Byte positions inside the stream: decoding starts at the first frame at or after `start`
  // and stops before `end`. Both 0 (the default) decode the whole stream.
  void SetPlayRange(std::uint32_t start, std::uint32_t end) {
    play_start_ = start;
    play_end_ = end;
  }

private:
  void Reset();
  void Parse();
  // The frame decoder, set back to its initial state; made once and kept for later streams.
  // Null when memory ran out.
  mpeg::StreamDecoder* FreshCore();
  // Decodes every frame into `out`, which has room for SamplesPerChannel() sample frames;
  // returns the bytes written.
  std::uint32_t DecodeWhole(std::int16_t* out, std::size_t total);
  void ReadVbrHeader(const mpeg::FrameSpan& first);
  mpeg::FrameRecord Record(std::uint32_t i) const;
  std::size_t SamplesPerChannel() const;
  // Decodes every frame in order into the places sink.Room(samples) gives (null stops),
  // telling sink.Took(samples); returns the samples per channel produced.
  template <class Sink> std::size_t DecodeFrames(mpeg::StreamDecoder& core, Sink& sink);

  std::unique_ptr<std::uint8_t[]> owned_stream_;
  std::unique_ptr<mpeg::MappedFile> file_;
  std::unique_ptr<mpeg::StreamDecoder> core_;
  const std::uint8_t* stream_ = nullptr;
  std::uint32_t stream_length_ = 0;
  std::uint32_t stream_offset_ = 0;
  mpeg::PcmFormat format_;
  std::uint16_t version_flag_ = 0;
  std::uint16_t bit_rate_ = 0;
  std::uint32_t frame_length_ = 0;
  mpeg::VbrInfo vbr_;
  std::int32_t error_ = mpeg::kNoError;
  std::uint32_t frame_count_ = 0;
  std::vector<mpeg::FrameSpan> spans_;
  std::unique_ptr<std::uint8_t[]> frame_table_;  // 64 bytes per frame: where each frame lies
  std::unique_ptr<std::uint8_t[]> decode_table_; // 64 bytes per frame: what decoding made of it
  std::uint32_t decoded_length_ = 0;
  std::uint32_t play_start_ = 0;
  std::uint32_t play_end_ = 0;
  bool gapless_ = true;
  mpeg::InstructionSet instruction_set_ = mpeg::BestInstructionSet();
};

} // namespace vntts
