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
  if (!std::filesystem::exists(VoiceFolder() / "main_dic.dat"))
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

// The three text forms reach the engine as the same internal text, so word events carry offsets
// into it: in "Đà Nẵng" (internal D1 61 F8 20 ...) the second word starts at byte 4, where UTF-8
// would put it at 6 and code page 1258 at 3.
TEST_F(TextOffsetExports, WordOffsetsOfEveryTextFormAreThoseOfTheInternalText) {
  if (!std::filesystem::exists(VoiceFolder() / "main_dic.dat"))
    GTEST_SKIP() << "no voice built";
  using Speak = void (*)(VNNotifyProc, uintptr_t);
  const std::pair<const char*, Speak> forms[] = {
      {"internal",
       [](VNNotifyProc n, uintptr_t u) { SpeakVN("\xD1\x61\xF8 N\x61\xFC\x6Eg.", n, u); }},
      {"UTF-8", [](VNNotifyProc n, uintptr_t u) { SpeakVNUTF8("Đà Nẵng.", n, u); }},
      {"Windows 95VN",
       [](VNNotifyProc n, uintptr_t u) { SpeakVNASCII("\xD0\xE0 N\xE3\xDEng.", n, u); }},
  };
  for (const auto& [name, speak] : forms) {
    Heard heard;
    speak(OnEvent, reinterpret_cast<uintptr_t>(&heard));
    ASSERT_EQ(VNWaitUntilDone(30000), 1) << name;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> spans;
    for (const VNEvent& e : heard.words)
      spans.emplace_back(e.text_start, e.text_length);
    EXPECT_EQ(spans, (decltype(spans){{0, 3}, {4, 5}})) << name;
  }
}

} // namespace
} // namespace vntts::test
