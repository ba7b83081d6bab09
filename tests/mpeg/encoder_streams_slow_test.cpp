// SPDX-License-Identifier: MIT
// MPEG audio files as users have them (tests/data/mpeg_streams.tsv): made on the spot by LAME,
// ffmpeg and sox in every rate and mode, with ID3 tags, RIFF wrappers, CRCs, cut at the start
// and concatenated, decoded by us from memory and from the file and compared sample by sample
// with libmpg123, gapless trimming on and off.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>

#include "audio/mpeg/unit_decoder.h"
#include "mpeg_test_support.h"
#include "support/tsv_table.h"
#if defined(VNTTS_HAVE_MPG123)
#include "mpg123_reference.h"
#endif

namespace vntts::mpeg::testing {
namespace {

namespace fs = std::filesystem;

// Two seconds of a test signal: a rising tone, clicks (short blocks), noise bursts and a
// different tone on the right channel.
void write_signal(const std::string& path, int rate, int channels) {
  const int frames = 2 * rate;
  std::vector<std::int16_t> s(static_cast<std::size_t>(frames) * channels);
  std::uint32_t noise = 12345;
  for (int i = 0; i < frames; ++i) {
    const double t = static_cast<double>(i) / rate;
    const double sweep = 0.3 * std::sin(2 * M_PI * (100 * t + 0.25 * rate / 2 * t * t / 2));
    noise = noise * 1664525u + 1013904223u;
    const double n = ((noise >> 9) / 8388608.0 - 1.0) * ((i / (rate / 8)) % 3 == 1 ? 0.2 : 0.01);
    const double click = (i % (rate / 4)) < 20 ? 0.8 : 0.0;
    s[static_cast<std::size_t>(i) * channels] =
        static_cast<std::int16_t>(32767 * std::clamp(sweep + n + click, -1.0, 1.0));
    if (channels == 2)
      s[static_cast<std::size_t>(i) * 2 + 1] = static_cast<std::int16_t>(
          32767 * std::clamp(0.4 * std::sin(2 * M_PI * 440 * t) + n, -1.0, 1.0));
  }
  write_s16_wave(path, rate, channels, s);
}

struct Decoded {
  std::vector<std::int16_t> samples;
  std::uint32_t rate = 0;
  int channels = 0;
};

Decoded decode(UnitDecoder& d, bool gapless) {
  d.SetGapless(gapless);
  const auto pcm = d.DecodeAll();
  return {pcm_samples(pcm.get(), d.decoded_length()), d.output_format().samples_per_sec,
          d.output_format().channels};
}

#if defined(VNTTS_HAVE_MPG123)
// libmpg123's decodes of the listed files, joined in the first one's channel count (a stereo
// part averaged into mono, a mono part copied to both channels).
Decoded reference(const std::string& files, const fs::path& dir, bool gapless) {
  Decoded out;
  std::istringstream list(files);
  for (std::string name; list >> name;) {
    const auto bytes = read_file((dir / name.substr(1)).string()); // "$A" names dir/A
    const Mpg123Output part = mpg123_decode(bytes.data(), bytes.size(), gapless);
    if (out.channels == 0) {
      out.rate = static_cast<std::uint32_t>(part.rate);
      out.channels = part.channels;
    }
    if (part.channels == out.channels) {
      out.samples.insert(out.samples.end(), part.samples.begin(), part.samples.end());
    } else if (part.channels == 2) {
      for (std::size_t i = 0; i + 1 < part.samples.size(); i += 2)
        out.samples.push_back(
            static_cast<std::int16_t>((part.samples[i] + part.samples[i + 1]) / 2));
    } else {
      for (const auto s : part.samples)
        out.samples.insert(out.samples.end(), {s, s});
    }
  }
  return out;
}

void drop_leading_silence(Decoded& d) {
  const auto sound = std::find_if(d.samples.begin(), d.samples.end(), [](auto s) { return s; });
  d.samples.erase(d.samples.begin(), sound);
}

void expect_same(Decoded ours, Decoded ref, bool from_sound, const char* what) {
  if (from_sound) {
    drop_leading_silence(ours);
    drop_leading_silence(ref);
  }
  SCOPED_TRACE(what);
  EXPECT_EQ(ours.rate, ref.rate);
  EXPECT_EQ(ours.channels, ref.channels);
  EXPECT_EQ(ours.samples.size(), ref.samples.size());
  const Difference d = compare(ours.samples, ref.samples);
  std::printf("  %-8s %8zu samples  rms %.4f max %.0f LSB\n", what, ours.samples.size(), d.rms,
              d.max);
  EXPECT_LE(d.max, 2.0);
  EXPECT_GT(d.compared, std::size_t{ref.rate});
}
#endif

class EncoderStream : public ::testing::TestWithParam<test::TsvRow> {};

TEST_P(EncoderStream, MatchesLibmpg123) {
#if !defined(VNTTS_HAVE_MPG123)
  GTEST_SKIP() << "libmpg123 not available";
#else
  const test::TsvRow& row = GetParam();
  const fs::path dir = fs::temp_directory_path() /
                       ("vntts_mpeg_" + test::TsvName(row) + "_" + std::to_string(::getpid()));
  fs::create_directories(dir);
  struct Cleanup {
    fs::path dir;
    ~Cleanup() { fs::remove_all(dir); }
  } cleanup{dir};
  write_signal((dir / "IN").string(), std::stoi(row[1]), std::stoi(row[2]));
  const std::string make = "cd '" + dir.string() + "' && IN=IN OUT=OUT A=A B=B DIR=. sh -c '" +
                           row[3] + "' >/dev/null 2>&1";
  if (std::system(make.c_str()) != 0) GTEST_SKIP() << "could not make the file: " << row[3];
  const std::string file = (dir / "OUT").string();
  const auto bytes = read_file(file);
  ASSERT_FALSE(bytes.empty());

  for (const bool gapless : {true, false}) {
    const std::string& parts = gapless ? row[4] : row[5];
    if (parts == "-") continue;
    UnitDecoder from_memory;
    from_memory.SetStream(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    UnitDecoder from_file;
    ASSERT_EQ(from_file.OpenFile(file), 0);
    const Decoded ours = decode(from_file, gapless);
    std::printf("%s, gapless %s:\n", row[0].c_str(), gapless ? "on" : "off");
    expect_same(ours, reference(parts, dir, gapless), row[6] == "sound", "file");
    EXPECT_EQ(decode(from_memory, gapless).samples, ours.samples) << "memory and file differ";
    if (!gapless) continue;
    // The command streams the same samples out piece by piece.
    const fs::path program = fs::path(VNTTS_BINARY_DIR) / "bin" / "vntts";
    if (!fs::exists(program)) continue;
    const std::string raw = (dir / "decoded.raw").string();
    ASSERT_EQ(
        std::system(
            (program.string() + " decode '" + file + "' > '" + raw + "' 2>/dev/null").c_str()),
        0);
    const auto streamed = read_file(raw);
    EXPECT_EQ(streamed.size(), ours.samples.size() * 2);
    EXPECT_TRUE(streamed.size() == ours.samples.size() * 2 &&
                std::memcmp(streamed.data(), ours.samples.data(), streamed.size()) == 0)
        << "vntts decode differs";
  }
#endif
}

INSTANTIATE_TEST_SUITE_P(Files, EncoderStream, ::testing::ValuesIn(test::ReadTsv("mpeg_streams")),
                         [](const auto& param) { return test::TsvName(param.param); });

} // namespace
} // namespace vntts::mpeg::testing
