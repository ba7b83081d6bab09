// SPDX-License-Identifier: MIT
// A host that speaks UTF-8 gets word events in internal-text offsets; VNTextRangeToUTF8 takes
// them back to its own text (a token's span includes the quotes around it).
#include <filesystem>
#include <mutex>
#include <regex>
#include <string>
#include <vector>

#include "library_fixture.h"

namespace vntts::test {
namespace {

class TextOffsetExports : public LibraryTest {};

struct Heard {
  std::mutex mutex;
  std::vector<VNEvent> words;
};

void VNTTS_CALL OnEvent(uintptr_t user, VNEvent event) {
  auto* heard = reinterpret_cast<Heard*>(user);
  std::lock_guard lock(heard->mutex);
  if (event.kind == VN_EVENT_WORD_BOUNDARY) heard->words.push_back(event);
}

TEST_F(TextOffsetExports, VersionNeedsNoEngine) {
  EXPECT_TRUE(std::regex_match(VNGetVersion(), std::regex(R"(\d+\.\d+\.\d+)")));
  EXPECT_FALSE(EngineExisted());
}

TEST_F(TextOffsetExports, WordEventsOfUtf8SpeechMapBackToTheWordsOfTheText) {
  if (!std::filesystem::exists(VNTTS_BINARY_DIR "/bin/index/main_dic.dat"))
    GTEST_SKIP() << "no voice built";
  const std::string text = "Tôi có 2 con “mèo” ở Đà Lạt.";
  Heard heard;
  SpeakVNUTF8(text.c_str(), OnEvent, reinterpret_cast<uintptr_t>(&heard));
  ASSERT_EQ(VNWaitUntilDone(30000), 1);
  std::vector<std::string> words;
  for (const VNEvent& e : heard.words) {
    std::uint32_t start = 0, length = 0;
    ASSERT_EQ(VNTextRangeToUTF8(text.c_str(), e.text_start, e.text_length, &start, &length), 1);
    words.push_back(text.substr(start, length));
  }
  EXPECT_EQ(words, (std::vector<std::string>{"Tôi", "có", "2", "con", "“mèo”", "ở", "Đà", "Lạt"}));

  EXPECT_EQ(VNTextRangeToUTF8(nullptr, 0, 1, nullptr, nullptr), 0);
  EXPECT_EQ(VNTextRangeToUTF8("ạ", 0, 9, nullptr, nullptr), 1) << "null outputs are skipped";
}

} // namespace
} // namespace vntts::test
