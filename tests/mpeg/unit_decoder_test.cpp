// SPDX-License-Identifier: MIT
// The decoder object as the unit archive and the preview player use it: the output format
// taken from the first header, the VBR header rules, the wrapper and tag handling of the file
// entry, and the whole-stream decode.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

#include "audio/mpeg/frame_scanner.h"
#include "audio/mpeg/unit_decoder.h"
#include "mpeg_test_support.h"

namespace vntts::mpeg::testing {
namespace {

namespace fs = std::filesystem;

std::vector<std::uint8_t> compliance(const char* name) {
  return read_file(compliance_dir() + name);
}

#define REQUIRE_COMPLIANCE()                                                                       \
  if (!file_exists(compliance_dir() + "l3-si.bit")) GTEST_SKIP() << "compliance streams not found"

class TempFile {
public:
  explicit TempFile(const std::vector<std::uint8_t>& bytes) {
    path_ = (fs::temp_directory_path() /
             ("vntts_mpeg_" + std::to_string(::getpid()) + "_" + std::to_string(counter_++)))
                .string();
    std::ofstream(path_, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
  }
  ~TempFile() { std::remove(path_.c_str()); }
  const std::string& path() const { return path_; }

private:
  static inline int counter_ = 0;
  std::string path_;
};

std::vector<std::int16_t> decode_all(UnitDecoder& d) {
  const auto pcm = d.DecodeAll();
  return pcm_samples(pcm.get(), d.decoded_length());
}

// A first frame header followed by zeros: MPEG-1 Layer III 128 kbit/s 44.1 kHz stereo, no CRC.
std::vector<std::uint8_t> header_frame(std::size_t size, std::uint8_t b1 = 0xFB,
                                       std::uint8_t b2 = 0x90, std::uint8_t b3 = 0x00) {
  std::vector<std::uint8_t> v(size, 0);
  v[0] = 0xFF;
  v[1] = b1;
  v[2] = b2;
  v[3] = b3;
  return v;
}

void put_be32(std::vector<std::uint8_t>& v, std::size_t at, std::uint32_t x) {
  v[at] = x >> 24;
  v[at + 1] = (x >> 16) & 0xFF;
  v[at + 2] = (x >> 8) & 0xFF;
  v[at + 3] = x & 0xFF;
}

TEST(UnitDecoderFormat, FollowsTheFirstHeader) {
  REQUIRE_COMPLIANCE();
  struct Case {
    const char* file;
    std::uint16_t channels;
    std::uint32_t rate;
    std::uint16_t align;
    std::uint32_t bytes_per_sec;
    std::uint16_t version;
  };
  const Case cases[] = {
      {"l3-si.bit", 1, 44100, 2, 88200, 0},      // mono MPEG-1 44100
      {"M2L3_noise.bit", 2, 22050, 4, 88200, 1}, // stereo MPEG-2 22050
      {"M2L3_compl24.bit", 1, 24000, 2, 48000, 1}, {"l3-he_48khz.bit", 1, 48000, 2, 96000, 0},
      {"l2-fl10.bit", 2, 32000, 4, 128000, 0},
  };
  for (const auto& c : cases) {
    const auto bytes = compliance(c.file);
    UnitDecoder d;
    d.SetStream(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    const PcmFormat& f = d.output_format();
    EXPECT_EQ(f.format_tag, 1) << c.file;
    EXPECT_EQ(f.channels, c.channels) << c.file;
    EXPECT_EQ(f.samples_per_sec, c.rate) << c.file;
    EXPECT_EQ(f.block_align, c.align) << c.file;
    EXPECT_EQ(f.avg_bytes_per_sec, c.bytes_per_sec) << c.file;
    EXPECT_EQ(f.bits_per_sample, 16) << c.file;
    EXPECT_EQ(d.VersionFlag(), c.version) << c.file;
  }
}

TEST(UnitDecoderFormat, NominalFrameLengthAndBitRate) {
  const struct {
    std::uint8_t b1, b2;
    std::uint16_t kbps;
    std::uint32_t length;
    std::size_t whole; // bytes of the one frame the stream holds
  } cases[] = {
      {0xFB, 0x90, 128, 417, 417}, // MPEG-1 44.1 kHz: 128 * 125 * 1152 / 44100
      {0xFB, 0xE4, 320, 960, 960}, // MPEG-1 48 kHz 320
      {0xF3, 0x80, 64, 417, 208},  // MPEG-2 22.05 kHz 64: the formula counts 1152 samples
      {0xFB, 0x08, 0, 0, 200},     // free format, 32 kHz: no frame can be measured
  };
  for (const auto& c : cases) {
    auto v = header_frame(c.whole, c.b1, c.b2);
    UnitDecoder d;
    d.SetStream(v.data(), static_cast<std::uint32_t>(v.size()));
    EXPECT_EQ(d.BitRate(), c.kbps);
    EXPECT_EQ(d.FrameLength(), c.length);
  }
}

TEST(UnitDecoderFormat, InvalidFirstHeaderGivesAnUnusableFormatWithoutFault) {
  auto v = header_frame(300, 0xFB, 0x9C); // sampling index 3
  UnitDecoder d;
  d.SetStream(v.data(), static_cast<std::uint32_t>(v.size()));
  EXPECT_EQ(d.output_format().samples_per_sec, 0u);
  EXPECT_EQ(d.FrameLength(), 0u);
  d.DecodeAll();
  EXPECT_EQ(d.decoded_length(), 0u);

  auto w = header_frame(300, 0xFB, 0xF0); // bit-rate index 15
  d.SetStream(w.data(), static_cast<std::uint32_t>(w.size()));
  d.DecodeAll();
  EXPECT_EQ(d.decoded_length(), 0u);
}

TEST(UnitDecoderVbr, XingAndVbriRules) {
  // MPEG-1 stereo without CRC: the tag sits after 4 + 32 bytes.
  auto xing = header_frame(417);
  std::memcpy(&xing[36], "Xing", 4);
  put_be32(xing, 40, 2); // bytes only
  put_be32(xing, 44, 1234);
  put_be32(xing, 48, 99999);
  UnitDecoder d;
  EXPECT_EQ(d.SetStream(xing.data(), static_cast<std::uint32_t>(xing.size())), kNoError);
  EXPECT_EQ(d.vbr_info().frames, 1234u); // taken whatever the flags say
  EXPECT_EQ(d.vbr_info().bytes, 99999u);
  EXPECT_EQ(d.vbr_info().min_kbps, 32);
  EXPECT_EQ(d.vbr_info().max_kbps, 320);

  put_be32(xing, 40, 0); // neither count flagged
  EXPECT_EQ(d.SetStream(xing.data(), static_cast<std::uint32_t>(xing.size())), kXingWithoutCounts);
  EXPECT_EQ(d.Error(), kXingWithoutCounts);
  EXPECT_EQ(d.vbr_info().frames, 0u);

  auto vbri = header_frame(417);
  std::memcpy(&vbri[36], "VBRI", 4);
  put_be32(vbri, 46, 5555); // bytes at +10
  put_be32(vbri, 50, 77);   // frames at +14
  EXPECT_EQ(d.SetStream(vbri.data(), static_cast<std::uint32_t>(vbri.size())), kNoError);
  EXPECT_EQ(d.vbr_info().bytes, 5555u);
  EXPECT_EQ(d.vbr_info().frames, 77u);

  // MPEG-2 mono: the tag follows 4 + 9 bytes; with a CRC, 2 more.
  auto lsf = header_frame(208, 0xF3, 0x80, 0xC0);
  std::memcpy(&lsf[13], "Xing", 4);
  put_be32(lsf, 17, 3);
  put_be32(lsf, 21, 10);
  EXPECT_EQ(d.SetStream(lsf.data(), static_cast<std::uint32_t>(lsf.size())), kNoError);
  EXPECT_EQ(d.vbr_info().frames, 10u);
  EXPECT_EQ(d.vbr_info().max_kbps, 160);

  auto cbr = header_frame(417);
  EXPECT_EQ(d.SetStream(cbr.data(), static_cast<std::uint32_t>(cbr.size())), kNoError);
  EXPECT_EQ(d.vbr_info().frames, 0u);
  EXPECT_EQ(d.vbr_info().bytes, 0u);

  auto small = header_frame(155);
  std::memcpy(&small[36], "Xing", 4);
  put_be32(small, 40, 3);
  put_be32(small, 44, 10);
  EXPECT_EQ(d.SetStream(small.data(), static_cast<std::uint32_t>(small.size())), kStreamTooShort);
  EXPECT_EQ(d.vbr_info().frames, 0u);
}

TEST(UnitDecoderDecode, WholeStreamMatchesTheCoreAndCountsFrames) {
  REQUIRE_COMPLIANCE();
  const auto bytes = compliance("l3-si.bit");
  UnitDecoder d;
  d.SetStream(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  EXPECT_EQ(d.FrameCount(), 118u);
  const auto pcm = decode_all(d);
  EXPECT_EQ(d.decoded_length(), 118u * 1152 * 2);
  const auto core = decode_core(bytes);
  EXPECT_EQ(pcm, core.s16);
}

TEST(UnitDecoderDecode, JunkBeforeTheFirstFrameAndShortReservoir) {
  REQUIRE_COMPLIANCE();
  // 215 junk bytes, then frames whose first two need data from before the stream: dropped.
  const auto bytes = compliance("l3-sin1k0db.bit");
  UnitDecoder d;
  d.SetStream(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  const auto pcm = decode_all(d);
  const auto ref = as_s16(compliance("l3-sin1k0db.pcm"));
  // The format comes from the junk at byte 0; the stream is stereo and the junk says so too.
  ASSERT_EQ(d.output_format().channels, 2);
  EXPECT_EQ(pcm.size(), ref.size());
  EXPECT_LE(compare(pcm, ref).max, 1.0);
}

TEST(UnitDecoderDecode, PlayRangeStartsAtTheFirstFrameInside) {
  REQUIRE_COMPLIANCE();
  const auto bytes = compliance("l3-sin1k0db.bit");
  UnitDecoder d;
  d.SetStream(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  d.SetPlayRange(633, 0);
  const auto pcm = decode_all(d);
  const auto ref = as_s16(compliance("l3-sin1k0db_ofs633.pcm"));
  EXPECT_EQ(pcm.size(), ref.size());
  EXPECT_LE(compare(pcm, ref).max, 1.0);
}

TEST(UnitDecoderDecode, ChannelChangesFollowTheFirstHeader) {
  REQUIRE_COMPLIANCE();
  // Mono first, then stereo frames: everything comes out mono.
  const auto bytes = compliance("l3-he_mode.bit");
  UnitDecoder d;
  d.SetStream(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  ASSERT_EQ(d.output_format().channels, 1);
  d.DecodeAll();
  EXPECT_EQ(d.decoded_length(), 128u * 1152 * 2);
}

TEST(UnitDecoderDecode, SamplingFrequencyChangeEndsTheStream) {
  REQUIRE_COMPLIANCE();
  const auto bytes = compliance("l3-nonstandard-he_44_48khz.bit");
  UnitDecoder d;
  d.SetStream(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  const auto pcm = decode_all(d);
  const auto ref = as_s16(compliance("l3-nonstandard-he_44_48khz.pcm"));
  // The reference lacks the last 44.1 kHz frame, like the other ISO Layer III references.
  EXPECT_EQ(pcm.size(), ref.size() + 1152);
  EXPECT_LE(compare(pcm, ref).max, 1.0);
}

TEST(UnitDecoderDecode, EmptyTruncatedAndTagOnlyInputs) {
  UnitDecoder d;
  EXPECT_EQ(d.SetStream(nullptr, 100), kStreamTooShort);
  auto pcm = d.DecodeAll();
  EXPECT_NE(pcm, nullptr);
  EXPECT_EQ(d.decoded_length(), 0u);
  EXPECT_EQ(d.FrameCount(), 0u);

  const std::uint8_t one = 0xFF;
  d.SetStream(&one, 1);
  d.DecodeAll();
  EXPECT_EQ(d.decoded_length(), 0u);

  if (!file_exists(compliance_dir() + "l3-si.bit")) return;
  // A frame cut off by the end of the data is not decoded.
  auto bytes = compliance("l3-si.bit");
  bytes.resize(1000);
  d.SetStream(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  const auto whole = d.FrameCount();
  d.DecodeAll();
  EXPECT_EQ(d.decoded_length(), whole * 1152u * 2);
  EXPECT_LT(whole * 208u, 1000u + 208u);

  // A Xing tag frame carries no audio.
  const auto tagged = compliance("l3-nonstandard-vbrtag-only.bit");
  d.SetStream(tagged.data(), static_cast<std::uint32_t>(tagged.size()));
  d.DecodeAll();
  EXPECT_EQ(d.decoded_length(), 0u);
}

// The unit archive reuses one decoder for unit after unit. The second stream starts inside
// another (its first frame reaches back into a reservoir it does not have, so it is dropped)
// and follows a stream of other audio, so that any reservoir, overlap, scale factor or
// synthesis history left over from the first would change its output.
TEST(UnitDecoderReuse, SecondStreamDecodesAsOnAFreshDecoder) {
  REQUIRE_COMPLIANCE();
  const auto first = compliance("l3-compl.bit");
  const auto whole = compliance("l3-he_mode.bit");
  FrameScanner scanner(whole.data(), whole.size());
  FrameSpan span;
  for (int i = 0; i < 6; ++i)
    ASSERT_TRUE(scanner.Next(span));
  const std::vector<std::uint8_t> second(whole.begin() + span.offset, whole.end());

  UnitDecoder fresh;
  fresh.SetStream(second.data(), static_cast<std::uint32_t>(second.size()));
  const auto expected = decode_all(fresh);
  ASSERT_FALSE(expected.empty());

  UnitDecoder reused;
  reused.UseStream(first.data(), static_cast<std::uint32_t>(first.size()));
  ASSERT_NE(decode_all(reused).size(), 0u);
  reused.UseStream(second.data(), static_cast<std::uint32_t>(second.size()));
  std::vector<std::int16_t> samples;
  ASSERT_TRUE(reused.DecodeInto(samples));
  EXPECT_EQ(samples, expected);
  reused.UseStream(first.data(), static_cast<std::uint32_t>(first.size()));
  ASSERT_TRUE(reused.DecodeInto(samples));
  reused.SetStream(second.data(), static_cast<std::uint32_t>(second.size()));
  EXPECT_EQ(decode_all(reused), expected);
}

TEST(UnitDecoderFile, WrappersAndTags) {
  REQUIRE_COMPLIANCE();
  const auto stream = compliance("l3-si.bit");
  UnitDecoder reference;
  reference.SetStream(stream.data(), static_cast<std::uint32_t>(stream.size()));
  const auto expected = decode_all(reference);

  // "RIFF" .. "RMP3" "data": the stream starts at byte 16.
  std::vector<std::uint8_t> rmp3 = {'R', 'I', 'F', 'F', 0,   0,   0,   0,
                                    'R', 'M', 'P', '3', 'd', 'a', 't', 'a'};
  rmp3.insert(rmp3.end(), stream.begin(), stream.end());
  // RIFF WAVE with the format chunk and then "data" at 50 (58), "fact" at 50 (70) or 52 (72).
  auto wave = [&](std::size_t tag_at, const char* tag, std::size_t start) {
    std::vector<std::uint8_t> v(start, 0);
    std::memcpy(v.data(), "RIFF", 4);
    std::memcpy(v.data() + 8, "WAVEfmt ", 8);
    std::memcpy(v.data() + tag_at, tag, 4);
    v.insert(v.end(), stream.begin(), stream.end());
    return v;
  };
  struct Case {
    std::vector<std::uint8_t> bytes;
    std::uint32_t offset;
  };
  const Case cases[] = {
      {stream, 0},
      {rmp3, 16},
      {wave(50, "data", 58), 58},
      {wave(50, "fact", 70), 70},
      {wave(52, "fact", 72), 72},
  };
  for (const auto& c : cases) {
    TempFile file(c.bytes);
    UnitDecoder d;
    ASSERT_EQ(d.OpenFile(file.path()), 0);
    EXPECT_EQ(d.StreamOffset(), c.offset);
    EXPECT_EQ(d.StreamLength(), stream.size());
    EXPECT_EQ(decode_all(d), expected);
  }
}

TEST(UnitDecoderFile, Id3v1TagIsLeftOutOfFilesOnly) {
  REQUIRE_COMPLIANCE();
  auto bytes = compliance("l3-si.bit");
  const std::size_t stream_size = bytes.size();
  std::vector<std::uint8_t> tag(128, ' ');
  std::memcpy(tag.data(), "TAG", 3);
  bytes.insert(bytes.end(), tag.begin(), tag.end());

  TempFile file(bytes);
  UnitDecoder from_file;
  ASSERT_EQ(from_file.OpenFile(file.path()), 0);
  EXPECT_EQ(from_file.StreamLength(), stream_size);

  UnitDecoder from_memory;
  from_memory.SetStream(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  EXPECT_EQ(from_memory.StreamLength(), bytes.size());
  // Both decode the same audio: the tag bytes are not taken for frames.
  EXPECT_EQ(decode_all(from_file), decode_all(from_memory));
}

TEST(UnitDecoderFile, FailuresReturnOne) {
  UnitDecoder d;
  EXPECT_EQ(d.OpenFile("/nonexistent/vntts/unit.mp3"), 1);
  EXPECT_EQ(d.OpenFile(fs::temp_directory_path().string()), 1);
  // A FIFO would never end (and opening it waits for a writer): refused at once.
  const std::string fifo =
      (fs::temp_directory_path() / ("vntts_fifo_" + std::to_string(::getpid()))).string();
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  EXPECT_EQ(d.OpenFile(fifo), 1);
  std::remove(fifo.c_str());
  TempFile empty(std::vector<std::uint8_t>{});
  EXPECT_EQ(d.OpenFile(empty.path()), 0);
  d.DecodeAll();
  EXPECT_EQ(d.decoded_length(), 0u);
}

} // namespace
} // namespace vntts::mpeg::testing
