// SPDX-License-Identifier: MIT
// Our WAV files against other readers and writers: sox and ffprobe must read what we write
// with the right format and length, and we must read, play (or refuse) and save what sox and
// ffmpeg write (tests/data/wav_files.tsv) so that they read it back the same.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "audio/wave_buffer.h"
#include "audio/wave_device.h"
#include "support/tsv_table.h"
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

TEST_P(WrittenByUs, SoxAndFfprobeReadFormatAndLengthAlsoAfterAnAppend) {
  if (!have("sox") || !have("ffprobe")) GTEST_SKIP() << "sox or ffprobe missing";
  const Shape s = GetParam();
  WaveBuffer buffer(messages);
  buffer.SetFormat(WaveFormat::Pcm(s.channels, s.rate, s.bits));
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

  // Appended to (over the event trailer), the file reads with the longer length.
  ASSERT_EQ(WaveBuffer::Append(path, bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                               s.channels, s.rate, s.bits, messages),
            0);
  EXPECT_EQ(trim(run("sox --i -s " + path)), std::to_string(2 * s.frames));
}

INSTANTIATE_TEST_SUITE_P(Shapes, WrittenByUs, ::testing::ValuesIn(kShapes),
                         [](const auto& param_info) { return describe(param_info.param); });

// The format sox reports for a file: channels, rate, precision, length and encoding.
std::string sox_info(const std::string& path) {
  std::istringstream all(run("sox --i " + path));
  std::string info;
  for (std::string line; std::getline(all, line);)
    if (line.starts_with("Channels") || line.starts_with("Sample") ||
        line.starts_with("Precision") || line.starts_with("Duration"))
      info += line + "\n";
  return info;
}

std::string ffprobe_info(const std::string& path) {
  return run("ffprobe -v error -show_entries stream=codec_name,sample_rate,channels,duration_ts "
             "-of default=noprint_wrappers=1 " +
             path);
}

class MadeByTools : public ::testing::TestWithParam<test::TsvRow> {
protected:
  test::TempDir dir;
  RecordedMessages messages;
};

TEST_P(MadeByTools, LoadPlayOrRefuseAndSaveForOtherTools) {
  if (!have("sox") || !have("ffmpeg") || !have("ffprobe")) GTEST_SKIP() << "sox or ffmpeg missing";
  const test::TsvRow& row = GetParam();
  const auto made = (dir / "made.wav").string();
  ASSERT_EQ(::system(("cd " + dir.path().string() + " && OUT=made.wav sh -c '" + row[1] +
                      "' >/dev/null 2>&1")
                         .c_str()),
            0)
      << row[1];
  run("sox " + made + " -t raw " + (dir / "made.raw").string());
  const auto samples = test::read_file(dir / "made.raw");
  ASSERT_FALSE(samples.empty());

  WaveDevice device(messages, make_system_audio("null"));
  ASSERT_EQ(device.Load(made), 0) << (messages.entries.empty() ? "" : messages.entries[0].text);
  EXPECT_EQ(device.Format().format_tag, std::stoi(row[2]));
  EXPECT_EQ(std::vector<std::uint8_t>(device.data(), device.data() + device.DataLength()), samples);

  const bool plays = row[3] == "plays";
  EXPECT_EQ(device.Play(), plays ? 0u : 32u);
  std::vector<std::string> texts;
  for (const auto& e : messages.entries)
    texts.push_back(e.text);
  EXPECT_EQ(texts,
            plays ? std::vector<std::string>{}
                  : std::vector<std::string>{"Attempted to open with unsupported wave format!"});

  const auto saved = (dir / "saved.wav").string();
  ASSERT_EQ(device.Save(saved), 0);
  EXPECT_EQ(sox_info(saved), sox_info(made));
  run("sox " + saved + " -t raw " + (dir / "saved.raw").string());
  EXPECT_EQ(test::read_file(dir / "saved.raw"), samples);
  EXPECT_EQ(ffprobe_info(saved), ffprobe_info(made));
}

INSTANTIATE_TEST_SUITE_P(Files, MadeByTools, ::testing::ValuesIn(test::ReadTsv("wav_files")),
                         [](const auto& param) { return test::TsvName(param.param); });

} // namespace
} // namespace vntts
