// SPDX-License-Identifier: MIT
// Null pointers, impossible ranges and files that are not WAV files: every export answers with
// its failure value and the process goes on.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "library_fixture.h"

namespace vntts::test {
namespace {
namespace fs = std::filesystem;

class BadArguments : public LibraryTest {
protected:
  void SetUp() override {
    LibraryTest::SetUp();
    std::string pattern = (fs::temp_directory_path() / "vntts-bad-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
  }
  void TearDown() override {
    LibraryTest::TearDown();
    std::error_code ec;
    fs::remove_all(folder_, ec);
  }
  std::string File(const std::string& name, const std::string& content) {
    const fs::path path = folder_ / name;
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
  }
  fs::path folder_;
};

TEST_F(BadArguments, GetBufOfWordWithoutBufferOrLength) {
  std::vector<char> buffer(VN_WORD_BUFFER_BYTES);
  uint32_t length = 77;
  EXPECT_EQ(GetBufOfWord("a", nullptr, &length), 0);
  EXPECT_EQ(GetBufOfWord(nullptr, buffer.data(), &length), 0);
  EXPECT_EQ(length, 0u);
  GetBufOfWord("a", buffer.data(), nullptr); // result depends on the voice; must not crash
  // One very long word is not tried cut by cut as two syllables: refused at once.
  std::string word;
  for (int i = 0; i < 32000; ++i)
    word += "ba";
  WithinTime(std::chrono::seconds(2),
             [&] { EXPECT_EQ(GetBufOfWord(word.c_str(), buffer.data(), &length), 0); });
}

TEST_F(BadArguments, FilesThatAreNotWaveFilesAreRefused) {
  const std::string cases[] = {
      File("empty.wav", ""),
      File("text.wav", "this is not a RIFF file at all"),
      File("short.wav", std::string("RIFF\x04\x00\x00\x00WAVE", 12)),
      File("huge-chunk.wav", std::string("RIFF\xff\xff\xff\x7fWAVEfmt \xff\xff\xff\x7f", 20)),
      folder_.string(), // a folder
      (folder_ / "missing.wav").string(),
  };
  for (const auto& path : cases) {
    EXPECT_EQ(LoadFileWave(path.c_str()), 0) << path;
    EXPECT_EQ(GetCountSample(), 0u) << path;
  }
}

// Paths that cannot be written, ranges that hold nothing, format codes outside the table and
// null range outputs: the failure value, nothing played, and written outputs only where given.
TEST_F(BadArguments, ImpossibleRequestsAnswerWithTheirFailureValue) {
  EXPECT_EQ(SaveFileWave(nullptr), 0);
  EXPECT_EQ(SaveFileWave(""), 0);
  EXPECT_EQ(SaveFileWave((folder_ / "no" / "such" / "folder.wav").c_str()), 0);
  for (const char* path : {"/nonexistent/vntts/take.wav", "", static_cast<const char*>(nullptr)})
    EXPECT_EQ(RecordToFile(path, 50), 0);
  const uint32_t ranges[][2] = {{0, 0}, {100, 0}, {0, 0xFFFFFFFFu}, {0xFFFFFFF0u, 0xFFFFFFFFu}};
  for (const auto& r : ranges)
    PlayWave(r[0], r[1]); // nothing loaded: returns at once whatever the range
  EXPECT_EQ(IsPlaying(), 0);
  for (uint32_t code : {0u, 7u, 12u, 19u, 24u, 31u, 36u, 0xFFFFFFFFu})
    EXPECT_EQ(SetVNAudioFormat(code), 0) << code;
  EXPECT_EQ(GetPitchRange(nullptr, nullptr), nullptr);
  uint32_t minimum = 9, maximum = 9;
  EXPECT_EQ(GetRateSpeechRange(nullptr, &maximum), nullptr);
  EXPECT_EQ(maximum, 5000u);
  EXPECT_EQ(GetVolumeRange(&minimum, &maximum), &minimum) << "the minimum's pointer";
  EXPECT_EQ(minimum, 0u);
  EXPECT_EQ(maximum, 65535u);
}

} // namespace
} // namespace vntts::test
