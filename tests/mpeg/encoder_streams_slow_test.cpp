// Streams made on the spot by Debian's LAME and ffmpeg (CBR and VBR with a Xing header, 8 to
// 320 kbit/s, every sampling frequency, mono, stereo, joint stereo, and Layer II from
// ffmpeg's mp2 encoder, and the MPEG-2.5 rates that LAME picks for the lowest bit rates),
// decoded by us and by libmpg123: the PCM must agree within 2 LSB.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <string>

#include "audio/mpeg/unit_decoder.h"
#include "mpeg_test_support.h"
#if defined(VNTTS_HAVE_MPG123)
#include "mpg123_reference.h"
#endif

namespace vntts::mpeg::testing {
namespace {

namespace fs = std::filesystem;

struct EncoderCase {
  const char* label;
  int rate;
  int channels;
  const char* command; // %1$s = input WAV, %2$s = output file
};

constexpr EncoderCase kCases[] = {
    {"lame_16k_mono_8", 16000, 1, "lame --quiet -b 8 -m m --resample 16 '%s' '%s'"},
    {"lame_22k_mono_32", 22050, 1, "lame --quiet -b 32 -m m '%s' '%s'"},
    {"lame_22k_mono_vbr", 22050, 1, "lame --quiet -V 5 -m m '%s' '%s'"},
    {"lame_22k_joint_24", 22050, 2, "lame --quiet -b 24 -m j --resample 22.05 '%s' '%s'"},
    {"lame_mpeg25_8k_mono_8", 8000, 1, "lame --quiet -b 8 -m m --resample 8 '%s' '%s'"},
    {"lame_mpeg25_11k_joint_16", 11025, 2, "lame --quiet -b 16 -m j --resample 11.025 '%s' '%s'"},
    {"lame_mpeg25_12k_mono_vbr", 12000, 1, "lame --quiet -V 7 -m m --resample 12 '%s' '%s'"},
    {"lame_24k_joint_64", 24000, 2, "lame --quiet -b 64 -m j '%s' '%s'"},
    {"lame_24k_stereo_160", 24000, 2, "lame --quiet -b 160 -m s '%s' '%s'"},
    {"lame_32k_mono_32", 32000, 1, "lame --quiet -b 32 -m m '%s' '%s'"},
    {"lame_32k_joint_96", 32000, 2, "lame --quiet -b 96 -m j '%s' '%s'"},
    {"lame_44k_joint_128", 44100, 2, "lame --quiet -b 128 -m j '%s' '%s'"},
    {"lame_44k_forced_ms_128", 44100, 2, "lame --quiet -b 128 -m f '%s' '%s'"},
    {"lame_44k_joint_vbr", 44100, 2, "lame --quiet -V 2 -m j '%s' '%s'"},
    {"lame_44k_stereo_192", 44100, 2, "lame --quiet -b 192 -m s '%s' '%s'"},
    {"lame_48k_mono_64", 48000, 1, "lame --quiet -b 64 -m m '%s' '%s'"},
    {"lame_48k_stereo_320", 48000, 2, "lame --quiet -b 320 -m s '%s' '%s'"},
    {"ffmpeg_mp2_48k_stereo_192", 48000, 2,
     "ffmpeg -nostdin -v error -y -i '%s' -c:a mp2 -b:a 192k -f mp2 '%s'"},
    {"ffmpeg_mp2_44k_mono_96", 44100, 1,
     "ffmpeg -nostdin -v error -y -i '%s' -c:a mp2 -b:a 96k -f mp2 '%s'"},
    {"ffmpeg_mp2_32k_stereo_64", 32000, 2,
     "ffmpeg -nostdin -v error -y -i '%s' -c:a mp2 -b:a 64k -f mp2 '%s'"},
    {"ffmpeg_mp2_22k_stereo_64", 22050, 2,
     "ffmpeg -nostdin -v error -y -i '%s' -c:a mp2 -b:a 64k -f mp2 '%s'"},
    {"ffmpeg_mp2_16k_mono_32", 16000, 1,
     "ffmpeg -nostdin -v error -y -i '%s' -c:a mp2 -b:a 32k -f mp2 '%s'"},
};

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
  vntts::mpeg::testing::write_s16_wave(path, rate, channels, s);
}

class EncoderStream : public ::testing::TestWithParam<EncoderCase> {};

TEST_P(EncoderStream, MatchesLibmpg123) {
#if !defined(VNTTS_HAVE_MPG123)
  GTEST_SKIP() << "libmpg123 not available";
#else
  const EncoderCase& c = GetParam();
  const fs::path dir = fs::temp_directory_path() / ("vntts_mpeg_enc_" + std::to_string(::getpid()));
  fs::create_directories(dir);
  const std::string wav = (dir / (std::string(c.label) + ".wav")).string();
  const std::string coded = (dir / (std::string(c.label) + ".mpa")).string();
  write_signal(wav, c.rate, c.channels);
  char command[512];
  std::snprintf(command, sizeof command, c.command, wav.c_str(), coded.c_str());
  const std::string quiet = std::string(command) + " >/dev/null 2>&1";
  if (std::system(quiet.c_str()) != 0) {
    fs::remove_all(dir);
    GTEST_SKIP() << "encoder not available: " << command;
  }
  const auto bytes = read_file(coded);
  fs::remove_all(dir);
  ASSERT_FALSE(bytes.empty());

  UnitDecoder ours;
  ours.SetStream(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  const auto pcm = ours.DecodeAll();
  const std::vector<std::int16_t> mine = pcm_samples(pcm.get(), ours.decoded_length());
  const Mpg123Output ref = mpg123_decode(bytes.data(), bytes.size());

  EXPECT_EQ(ours.output_format().samples_per_sec, static_cast<std::uint32_t>(ref.rate));
  EXPECT_EQ(ours.output_format().channels, ref.channels);
  EXPECT_EQ(mine.size(), ref.samples.size());
  const Difference d = compare(mine, ref.samples);
  std::printf("%-28s %6zu bytes  %8zu samples  rms %.4f max %.0f LSB\n", c.label, bytes.size(),
              mine.size(), d.rms, d.max);
  EXPECT_LE(d.max, 2.0);
  EXPECT_GT(d.compared, static_cast<std::size_t>(c.rate));
#endif
}

INSTANTIATE_TEST_SUITE_P(Encoders, EncoderStream, ::testing::ValuesIn(kCases),
                         [](const auto& param_info) {
                           return std::string(param_info.param.label);
                         });

} // namespace
} // namespace vntts::mpeg::testing
