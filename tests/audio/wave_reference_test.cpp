// Our WAV files against other readers and writers: sox and ffprobe must read what we write
// with the right format and length, and we must read what sox writes with the same samples.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "audio/wave_buffer.h"
#include "wave_bytes.h"

namespace vntts {
namespace {

std::string run(const std::string& command) {
  std::string out;
  if (FILE* p = ::popen((command + " 2>/dev/null").c_str(), "r")) {
    char buf[4096];
    std::size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, p)) > 0)
      out.append(buf, n);
    ::pclose(p);
  }
  return out;
}

bool have(const char* tool) {
  return ::system((std::string("command -v ") + tool + " >/dev/null 2>&1").c_str()) == 0;
}

std::string trim(std::string s) {
  while (!s.empty() && (s.back() == '\n' || s.back() == ' '))
    s.pop_back();
  return s;
}

struct Shape {
  std::uint16_t channels;
  std::uint32_t rate;
  std::uint16_t bits;
  std::uint32_t frames;
};

std::string describe(const Shape& s) {
  std::ostringstream o;
  o << s.channels << "ch_" << s.rate << "_" << s.bits << "bit_" << s.frames;
  return o.str();
}

void PrintTo(const Shape& s, std::ostream* os) {
  *os << describe(s);
}

const Shape kShapes[] = {{1, 11025, 8, 1001},  {2, 22050, 8, 777}, {1, 22050, 16, 22050},
                         {2, 44100, 16, 4411}, {1, 8000, 16, 1},   {2, 11025, 8, 3}};

class WrittenByUs : public ::testing::TestWithParam<Shape> {
protected:
  test::TempDir dir;
  RecordedMessages messages;
};

TEST_P(WrittenByUs, SoxAndFfprobeReadFormatAndLength) {
  if (!have("sox") || !have("ffprobe")) GTEST_SKIP() << "sox or ffprobe missing";
  const Shape s = GetParam();
  WaveBuffer buffer(messages);
  buffer.SetFormat(WaveFormat::pcm(s.channels, s.rate, s.bits));
  std::vector<std::uint8_t> bytes(std::size_t{s.frames} * buffer.FrameBytes());
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<std::uint8_t>(i * 13);
  buffer.AssignSamples(bytes);
  buffer.AddEvent({3, 1, 2, 3, {}});
  buffer.AddEvent({4, 0, 0, 0, {1, 2, 0, 0, 0}});
  const auto path = (dir / "ours.wav").string();
  ASSERT_EQ(buffer.Save(path), 0);

  EXPECT_EQ(trim(run("sox --i -r " + path)), std::to_string(s.rate));
  EXPECT_EQ(trim(run("sox --i -c " + path)), std::to_string(s.channels));
  EXPECT_EQ(trim(run("sox --i -b " + path)), std::to_string(s.bits));
  EXPECT_EQ(trim(run("sox --i -s " + path)), std::to_string(s.frames));
  // The samples sox decodes are ours, event trailer or not.
  const auto raw = (dir / "back.raw").string();
  run("sox " + path + " -t raw " + raw);
  EXPECT_EQ(test::read_file(raw), bytes);

  const std::string probe =
      run("ffprobe -v error -show_entries stream=sample_rate,channels,bits_per_sample,duration_ts "
          "-of default=noprint_wrappers=1 " +
          path);
  EXPECT_NE(probe.find("sample_rate=" + std::to_string(s.rate)), std::string::npos) << probe;
  EXPECT_NE(probe.find("channels=" + std::to_string(s.channels)), std::string::npos) << probe;
  EXPECT_NE(probe.find("bits_per_sample=" + std::to_string(s.bits)), std::string::npos) << probe;
  EXPECT_NE(probe.find("duration_ts=" + std::to_string(s.frames)), std::string::npos) << probe;
}

TEST_P(WrittenByUs, AppendedFilesStillReadWithTheLongerLength) {
  if (!have("sox")) GTEST_SKIP() << "sox missing";
  const Shape s = GetParam();
  WaveBuffer buffer(messages);
  buffer.SetFormat(WaveFormat::pcm(s.channels, s.rate, s.bits));
  std::vector<std::uint8_t> bytes(std::size_t{s.frames} * buffer.FrameBytes(), 0x40);
  buffer.AssignSamples(bytes);
  const auto path = (dir / "grown.wav").string();
  ASSERT_EQ(buffer.Save(path), 0);
  // Whole frames only; an odd-sized chunk would move the rest by its pad byte.
  if (bytes.size() % 2) GTEST_SKIP() << "odd data is not appended to";
  ASSERT_EQ(WaveBuffer::Append(path, bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                               s.channels, s.rate, s.bits, messages),
            0);
  EXPECT_EQ(trim(run("sox --i -s " + path)), std::to_string(2 * s.frames));
}

INSTANTIATE_TEST_SUITE_P(Shapes, WrittenByUs, ::testing::ValuesIn(kShapes),
                         [](const auto& param_info) { return describe(param_info.param); });

struct SoxFile {
  const char* name;
  const char* options; // sox output options
  double seconds;
  const char* comment;
  WaveFormat format;
};

void PrintTo(const SoxFile& f, std::ostream* os) {
  *os << f.name;
}

class WrittenBySox : public ::testing::TestWithParam<SoxFile> {
protected:
  test::TempDir dir;
  RecordedMessages messages;
};

TEST_P(WrittenBySox, LoadsTheSameSamples) {
  if (!have("sox")) GTEST_SKIP() << "sox missing";
  const auto& f = GetParam();
  const auto wav = (dir / "sox.wav").string();
  const auto raw = (dir / "sox.raw").string();
  const auto synth = [&](const std::string& out) {
    run("sox -n " + std::string(f.options) + " " + out + " synth " + std::to_string(f.seconds) +
        " sine 300-900 vol 0.8");
  };
  if (f.comment) {
    // sox writes no LIST chunk of its own; ffmpeg adds one (INFO with the comment) around
    // the same samples.
    if (!have("ffmpeg")) GTEST_SKIP() << "ffmpeg missing";
    const auto plain = (dir / "plain.wav").string();
    synth(plain);
    const char* codec = f.format.bits_per_sample == 8 ? "pcm_u8" : "pcm_s16le";
    run(std::string("ffmpeg -v error -y -i ") + plain + " -c:a " + codec + " -metadata comment=\"" +
        f.comment + "\" " + wav);
  } else {
    synth(wav);
  }
  run("sox " + wav + " -t raw " + raw);
  const auto expected = test::read_file(raw);
  ASSERT_FALSE(expected.empty());
  const auto file = test::read_file(wav);
  const std::string text(file.begin(), file.end());
  if (f.comment) {
    ASSERT_NE(text.find("LIST"), std::string::npos) << "ffmpeg wrote no LIST chunk";
  }

  WaveBuffer buffer(messages);
  ASSERT_EQ(buffer.Load(wav), 0) << (messages.entries.empty() ? "" : messages.entries[0].text);
  EXPECT_EQ(buffer.channels(), f.format.channels);
  EXPECT_EQ(buffer.sample_rate(), f.format.samples_per_second);
  EXPECT_EQ(buffer.bits(), f.format.bits_per_sample);
  EXPECT_EQ(std::vector<std::uint8_t>(buffer.data(), buffer.data() + buffer.data_length()),
            expected);
  EXPECT_EQ(buffer.SampleCount(), expected.size() / f.format.frame_bytes());
}

INSTANTIATE_TEST_SUITE_P(
    Files, WrittenBySox,
    ::testing::Values(
        SoxFile{"mono8_odd", "-r 11025 -c 1 -b 8", 0.0123, nullptr, WaveFormat::pcm(1, 11025, 8)},
        SoxFile{"stereo8", "-r 22050 -c 2 -b 8", 0.25, nullptr, WaveFormat::pcm(2, 22050, 8)},
        SoxFile{"mono16", "-r 22050 -c 1 -b 16", 0.5, nullptr, WaveFormat::pcm(1, 22050, 16)},
        SoxFile{"stereo16", "-r 44100 -c 2 -b 16", 0.3, nullptr, WaveFormat::pcm(2, 44100, 16)},
        SoxFile{"mono8_list_odd", "-r 8000 -c 1 -b 8", 0.0101, "xin chao",
                WaveFormat::pcm(1, 8000, 8)},
        SoxFile{"stereo16_list", "-r 22050 -c 2 -b 16", 0.2, "vntts",
                WaveFormat::pcm(2, 22050, 16)}),
    [](const auto& param_info) { return std::string(param_info.param.name); });

} // namespace
} // namespace vntts
