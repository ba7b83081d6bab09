// SPDX-License-Identifier: MIT
// `vntts say` as a user runs it: the built program with its arguments.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "audio/wave_buffer.h"
#include "core/messages.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

const fs::path kProgram = VNTTS_BINARY_DIR "/bin/vntts";

fs::path Voice() {
  if (const char* env = std::getenv("VNTTS_DATA_DIR"); env && *env) return env;
  return VNTTS_BINARY_DIR "/bin/index";
}

int RunVntts(const std::string& args) {
  const std::string command = "VNTTS_AUDIO=null VNTTS_DATA_DIR='" + Voice().string() + "' '" +
                              kProgram.string() + "' " + args + " >/dev/null 2>&1";
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class SayCommand : public ::testing::Test {
protected:
  void SetUp() override {
    if (!fs::exists(kProgram)) GTEST_SKIP() << "the vntts program is not built";
  }
  bool HaveVoice() const { return fs::exists(Voice() / "main_dic.arr"); }
  std::string Out(const char* name) const { return (dir_ / name).string(); }
  std::uint32_t Frames(const std::string& path) {
    vntts::RecordedMessages m;
    vntts::WaveBuffer wav(m);
    return wav.Load(path) == 0 ? wav.SampleCount() : 0;
  }
  vntts::test::TempFolder dir_;
};

TEST_F(SayCommand, WritesReplacesAndAppendsWaveFiles) {
  if (!HaveVoice()) GTEST_SKIP() << "no default voice";
  const auto wav = Out("hello.wav");
  ASSERT_EQ(RunVntts("say -w '" + wav + "' 'Xin chào.'"), 0);
  const auto once = Frames(wav);
  EXPECT_GT(once, 22050u / 2);
  ASSERT_EQ(RunVntts("say -w '" + wav + "' 'Xin chào.'"), 0);
  EXPECT_EQ(Frames(wav), once) << "a second run replaces the file";
  ASSERT_EQ(RunVntts("say --append -w '" + wav + "' 'Xin chào.'"), 0);
  EXPECT_EQ(Frames(wav), 2 * once);
  // The short form, stdin, -f and the other encodings give the same speech.
  const auto shortform = Out("short.wav");
  ASSERT_EQ(RunVntts("Xin chào. -o '" + shortform + "'"), 0);
  EXPECT_EQ(Frames(shortform), once);
  dir_.Write("text.txt", "Xin chào.");
  const auto from_file = Out("file.wav");
  ASSERT_EQ(RunVntts("say -f '" + (dir_ / "text.txt").string() + "' -w '" + from_file + "'"), 0);
  EXPECT_EQ(Frames(from_file), once);
  const auto from_stdin = Out("stdin.wav");
  ASSERT_EQ(RunVntts("say -w '" + from_stdin + "' < '" + (dir_ / "text.txt").string() + "'"), 0);
  EXPECT_EQ(Frames(from_stdin), once);
  // "chào" in the internal encoding: c h a o + the grave mark byte.
  dir_.Write("vni.txt", "Xin chao\xF8.");
  const auto vni = Out("vni.wav");
  ASSERT_EQ(
      RunVntts("say --encoding vni -f '" + (dir_ / "vni.txt").string() + "' -w '" + vni + "'"), 0);
  EXPECT_EQ(Frames(vni), once);
  const auto mono = Out("mono.wav");
  ASSERT_EQ(RunVntts("say --format 22 --rate 0 -w '" + mono + "' 'Xin chào.'"), 0);
  EXPECT_GT(Frames(mono), once) << "the slowest rate adds silence";
}

TEST_F(SayCommand, PlaysAndPrintsEvents) {
  if (!HaveVoice()) GTEST_SKIP() << "no default voice";
  const auto log = Out("events.txt");
  const std::string command = "VNTTS_AUDIO=null VNTTS_DATA_DIR='" + Voice().string() + "' '" +
                              kProgram.string() + "' say --events 'Xin chào.' > '" + log + "'";
  ASSERT_EQ(std::system(command.c_str()), 0);
  std::ifstream in(log);
  std::string all((std::istreambuf_iterator<char>(in)), {});
  EXPECT_NE(all.find("Start input stream"), std::string::npos);
  EXPECT_NE(all.find("Word boundary"), std::string::npos);
  EXPECT_NE(all.find("\"chào\""), std::string::npos);
  EXPECT_NE(all.find("Sound end"), std::string::npos);
}

} // namespace
