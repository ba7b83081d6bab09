// The three text forms reach the engine as the same internal text: the word events of a spoken
// sentence carry offsets into the converted text, not into the bytes the host passed. Needs a
// voice (skipped without one) and plays through the null output in real time.
#include <dlfcn.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include "library_fixture.h"

namespace vntts::test {
namespace {
namespace fs = std::filesystem;

fs::path DataFolderInUse() {
  if (const char* env = std::getenv("VNTTS_DATA_DIR"); env && *env) return env;
  Dl_info info{};
  dladdr(reinterpret_cast<const void*>(&ReleaseLib), &info);
  return fs::path(info.dli_fname ? info.dli_fname : "").parent_path() / "index";
}

struct WordSpan {
  uint32_t start, length;
  bool operator==(const WordSpan&) const = default;
};

struct Listener {
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<WordSpan> words;
  bool sound_ended = false;

  static void VNTTS_CALL Notify(uintptr_t user, VNEvent event) {
    auto* self = reinterpret_cast<Listener*>(user);
    std::lock_guard lock(self->mutex);
    if (event.kind == VN_EVENT_WORD_BOUNDARY)
      self->words.push_back({event.text_start, event.text_length});
    if (event.kind == VN_EVENT_SOUND_END) self->sound_ended = true;
    self->changed.notify_all();
  }
  bool WaitForSoundEnd() {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, std::chrono::seconds(20), [&] { return sound_ended; });
  }
};

class TextForms : public LibraryTest {
protected:
  void SetUp() override {
    LibraryTest::SetUp();
    if (!fs::exists(DataFolderInUse() / "main_dic.dat"))
      GTEST_SKIP() << "no voice in " << DataFolderInUse();
  }
};

// "Đà Nẵng": internal text D1 61 F8 20 ..., so the second word starts at byte 4; in UTF-8 it
// would start at 6 and in code page 1258 at 3.
TEST_F(TextForms, WordOffsetsAreThoseOfTheInternalText) {
  const std::vector<WordSpan> expected{{0, 3}, {4, 5}};
  struct Form {
    const char* name;
    void (*speak)(VNNotifyProc, uintptr_t);
  };
  const Form forms[] = {
      {"internal",
       [](VNNotifyProc n, uintptr_t u) { SpeakVN("\xD1\x61\xF8 N\x61\xFC\x6Eg.", n, u); }},
      {"UTF-8", [](VNNotifyProc n, uintptr_t u) { SpeakVNUTF8("Đà Nẵng.", n, u); }},
      {"Windows 95VN",
       [](VNNotifyProc n, uintptr_t u) { SpeakVNASCII("\xD0\xE0 N\xE3\xDEng.", n, u); }},
  };
  for (const auto& form : forms) {
    Listener listener;
    form.speak(&Listener::Notify, reinterpret_cast<uintptr_t>(&listener));
    ASSERT_TRUE(listener.WaitForSoundEnd()) << form.name;
    StopSpeak();
    std::lock_guard lock(listener.mutex);
    EXPECT_EQ(listener.words, expected) << form.name;
  }
}

} // namespace
} // namespace vntts::test
