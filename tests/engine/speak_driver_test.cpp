// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <random>

#include "core/messages.h"
#include "engine/speak_driver.h"
#include "fake_speech.h"

namespace vntts {
namespace {

using namespace std::chrono_literals;
using testing::FakeDevice;
using testing::TableUnits;

constexpr auto kKindWord = static_cast<std::uint32_t>(EventKind::kWordBoundary);
constexpr auto kKindStart = static_cast<std::uint32_t>(EventKind::kStartInputStream);
constexpr auto kKindSentence = static_cast<std::uint32_t>(EventKind::kSentenceBoundary);

class SpeakDriverTest : public ::testing::Test {
protected:
  SpeakDriverTest() {
    for (const char* w : {"xin", "chao", "ban", "ba", "ca", "to", "mot", "hai"})
      units.Add(w, 3000, 1000); // 6000 bytes: no padding step applies
    units.Add("a", 1500, 500);  // 3000 bytes: padded to 3400
  }
  ~SpeakDriverTest() override { driver.reset(); }

  void Make(const DefinitionLookup* with_definitions = nullptr,
            const AutoCorrectLookup* with_auto_correct = nullptr) {
    driver = std::make_unique<SpeakDriver>(
        SpeakDriver::Parts{messages,
                           renderer,
                           device,
                           {with_definitions, with_auto_correct, &renderer},
                           &phrases,
                           [this](std::chrono::milliseconds ms) { waits.push_back(ms); },
                           decode_ahead});
  }
  std::vector<EventRecord> Fired(std::uint32_t kind) {
    std::lock_guard lock(device.mutex);
    std::vector<EventRecord> out;
    for (const auto& e : device.fired)
      if (e.kind == kind) out.push_back(e);
    return out;
  }

  TableUnits units;
  WordRenderer renderer{units};
  FakeDevice device;
  MemoryPhrases phrases;
  MemoryDefinitions definitions;
  MemoryAutoCorrect auto_correct;
  RecordedMessages messages;
  std::vector<std::chrono::milliseconds> waits;
  bool decode_ahead = true;
  std::unique_ptr<SpeakDriver> driver;
};

// The events carry offsets into the text plus the text base the call gave (here 100); a run
// of marks pauses once, as its strongest mark.
TEST_F(SpeakDriverTest, SpeaksSentenceBySentenceWithWordEventsInTextOrder) {
  std::vector<std::uint32_t> kinds;
  device.on_event = [&](const EventRecord& e) { kinds.push_back(e.kind); };
  Make();
  const std::string text = "Xin chao ban... Ba ca?!?! to";
  driver->Speak(text, nullptr, 100);
  ASSERT_TRUE(driver->WaitUntilIdle(10s));
  EXPECT_FALSE(driver->Busy());
  ASSERT_EQ(device.played.size(), 3u);
  ASSERT_GE(kinds.size(), 3u);
  EXPECT_EQ(kinds[0], kKindStart);
  EXPECT_EQ(kinds[1], static_cast<std::uint32_t>(EventKind::kSoundStart));
  EXPECT_EQ(kinds[2], kKindSentence) << "the sentence boundary fires first";

  std::string heard;
  for (const auto& e : Fired(kKindWord))
    heard += text.substr(e.text_start - 100, e.text_length) + "|";
  EXPECT_EQ(heard, "Xin|chao|ban|Ba|ca|to|");
  heard.clear();
  for (const auto& e : Fired(kKindSentence))
    heard += text.substr(e.params[0] - 100, e.params[1]) + "|";
  EXPECT_EQ(heard, "Xin chao ban...|Ba ca?!?!|to|");

  // Sentence 1: three 6000-byte words with no gap at the default rate, then the '.' pause of
  // 10 x 4000 bytes; 2 channels double the bytes.
  EXPECT_EQ(device.played[0].bytes.size(), 2u * (3 * 6000 + 40000));
  EXPECT_EQ(device.played[1].bytes.size(), 2u * (2 * 6000 + 50000));
  EXPECT_EQ(device.played[2].bytes.size(), 2u * 6000);
  EXPECT_EQ(device.played[0].events[2].position, 3000u);
  EXPECT_EQ(device.refreshes, 1);
  EXPECT_TRUE(waits.empty());
}

// Without a notification function no event is even prepared.
TEST_F(SpeakDriverTest, EmptyTextLeavesTheEngineIdle) {
  device.on_event = [](const EventRecord&) {};
  Make();
  driver->Speak("");
  ASSERT_TRUE(driver->WaitUntilIdle(5s));
  EXPECT_FALSE(driver->Busy());
  EXPECT_EQ(driver->IsPlaying(), 0);
  EXPECT_TRUE(device.played.empty());
  ASSERT_EQ(device.fired.size(), 1u) << "only the start of the input stream";
  EXPECT_EQ(device.fired[0].kind, kKindStart);

  device.on_event = nullptr;
  driver->Speak("ba.");
  ASSERT_TRUE(driver->WaitUntilIdle(5s));
  EXPECT_EQ(device.played.size(), 1u);
  EXPECT_EQ(Fired(kKindStart).size(), 1u);
}

TEST_F(SpeakDriverTest, WordGapShrinksWithPhrasesAndSlownessHalves) {
  units.Add("con", 1500, 500); // 3000 bytes
  units.Add("trai", 1500, 500);
  phrases.entries.insert("con trai");
  Make();
  // The slowest rate: "con" forms a known phrase with the next word of the text, so its gap is
  // max(400, 10000) + 10000 - 5000 and the slowness stays; "trai" is followed by the full stop:
  // (10000 + 10000) * 0.5, and the slowness halves.
  driver->set_slowness(5000);
  driver->Speak("con trai.");
  ASSERT_TRUE(driver->WaitUntilIdle(5s));
  ASSERT_EQ(device.played.size(), 1u);
  EXPECT_EQ(device.played[0].bytes.size(), 2u * (3000 + 15000 + 3000 + 10000 + 40000));
  EXPECT_EQ(driver->slowness(), 2500u);

  // Along words without phrases the slowness halves word by word.
  driver->set_slowness(5000);
  driver->Speak("a a a.");
  ASSERT_TRUE(driver->WaitUntilIdle(5s));
  EXPECT_EQ(device.played[1].bytes.size(), 2u * (3 * 3000 + 10000 + 5000 + 2500 + 40000));
  EXPECT_EQ(driver->slowness(), 625u);

  // A text that ends on a known pair: the last gap and the slowness shrink to 0.5 %.
  driver->set_slowness(5000);
  driver->Speak("con trai");
  ASSERT_TRUE(driver->WaitUntilIdle(5s));
  EXPECT_EQ(device.played[2].bytes.size(), 2u * (3000 + 15000 + 3000 + 100));
  EXPECT_EQ(driver->slowness(), 25u);
}

TEST_F(SpeakDriverTest, SpeakWhilePausedResumesAndIgnoresTheNewText) {
  Make();
  device.Hold();
  driver->Speak("ba.");
  ASSERT_TRUE(device.WaitUntilPlaying());
  EXPECT_EQ(driver->Pause(), 1);
  EXPECT_EQ(driver->PauseResume(), 1) << "toggles back to playing";
  EXPECT_EQ(driver->Pause(), 1);
  driver->Speak("ca ca ca.");
  EXPECT_EQ(device.resumes, 2);
  device.Release();
  ASSERT_TRUE(driver->WaitUntilIdle(5s));
  EXPECT_EQ(device.played.size(), 1u) << "the new text was not spoken";
  EXPECT_TRUE(waits.empty());
  EXPECT_EQ(driver->Resume(), 0) << "nothing plays any more";
  EXPECT_EQ(driver->Pause(), 0);
  EXPECT_EQ(driver->PauseResume(), 0);
}

TEST_F(SpeakDriverTest, SpeakOverPlayingSpeechStopsAndWaitsASecond) {
  Make();
  device.Hold();
  driver->Speak("ba. ca.");
  // Held, the first sentence is still in the device when the next speak call looks (between
  // two sentences nothing would be playing and there would be nothing to wait for).
  ASSERT_TRUE(device.WaitUntilPlaying());
  driver->Speak("to.");
  EXPECT_EQ(waits, std::vector<std::chrono::milliseconds>{1000ms});
  device.Release();
  ASSERT_TRUE(driver->WaitUntilIdle(5s));
  ASSERT_GE(device.played.size(), 2u);
  EXPECT_EQ(device.played.back().events.back().text_start, 0u);

  // SpeakEx stops without the wait and keeps the first output it is offered.
  device.Hold();
  driver->SpeakEx("ba.", 42);
  ASSERT_TRUE(device.WaitUntilPlaying());
  device.Release();
  driver->SpeakEx("ca.", 43);
  ASSERT_TRUE(driver->WaitUntilIdle(5s));
  EXPECT_EQ(waits.size(), 1u);
  EXPECT_EQ(device.output, 42u);
}

TEST_F(SpeakDriverTest, StopDuringALongTextEndsCleanlyWithBoundedQueue) {
  Make();
  std::string text;
  for (int i = 0; i < 20000; ++i)
    text += "xin chao ban ";
  device.Hold();
  driver->Speak(text);
  ASSERT_TRUE(device.WaitUntilPlaying());
  EXPECT_EQ(driver->IsPlaying(), 1);
  EXPECT_EQ(driver->Stop(), 1);
  ASSERT_TRUE(driver->WaitUntilIdle(5s));
  EXPECT_FALSE(driver->Busy());
  EXPECT_EQ(driver->IsPlaying(), 0);
  // One endless sentence is played in pieces of bounded size.
  ASSERT_EQ(device.played.size(), 1u);
  EXPECT_LE(device.played[0].bytes.size(), 2 * (SpeakDriver::kMaxSentenceBytes + 6000));
  EXPECT_EQ(driver->Stop(), 1) << "stopping an idle engine is harmless";
}

// Stop returns only once the producer has noticed: no word of the stopped speech is still
// being rendered then, so the host may change what the renderer reads.
TEST_F(SpeakDriverTest, StopReturnsOnceTheProducerHasLetGo) {
  decode_ahead = false; // only the producer renders
  units.fetch_delay = 20ms;
  Make();
  std::string text;
  for (int i = 0; i < 200; ++i)
    text += "xin chao ban ";
  driver->Speak(text);
  for (int i = 0; i < 5; ++i) {
    while (units.fetching == 0)
      std::this_thread::yield();
    driver->Stop();
    EXPECT_EQ(units.fetching, 0) << "round " << i;
    driver->Speak(text);
  }
  driver->Stop();
}

TEST_F(SpeakDriverTest, ACallbackThatStopsDoesNotDeadlock) {
  std::atomic<int> words{0};
  device.on_event = [&](const EventRecord& e) {
    if (e.kind == kKindWord && ++words == 2) driver->Stop();
  };
  Make();
  driver->Speak("xin chao ban. ba ca to. mot hai.");
  ASSERT_TRUE(driver->WaitUntilIdle(10s));
  EXPECT_EQ(device.played.size(), 1u);
  EXPECT_FALSE(driver->Busy());
}

// A worker thread that cannot be created (the thread limit reached) or a buffer that cannot be
// had is said once; nothing waits for it: not Stop, not the idle wait, not the destructor.
// Without look-ahead decoders speech is only slower.
TEST_F(SpeakDriverTest, AWorkerThatCannotStartIsSaidAndNothingWaitsForIt) {
  const std::pair<const char*, const char*> failures[] = {
      {"producer-thread", "Cannot start a speech thread: "},
      {"consumer-thread", "Cannot start a speech thread: "},
      {"decoder-thread", "Cannot start a speech thread: "},
      {"token-buffer", "MakeBufForToken"},
      {"sentence-buffer", "Out off memory !"}};
  for (const auto& [role, message] : failures) {
    SCOPED_TRACE(role);
    messages.entries.clear();
    device.played.clear();
    Make();
    setenv("VNTTS_FAIL_ALLOCATION", role, 1);
    driver->Speak("ba ca.");
    const auto before = std::chrono::steady_clock::now();
    EXPECT_TRUE(driver->WaitUntilIdle(5s));
    EXPECT_EQ(driver->Stop(), 1);
    unsetenv("VNTTS_FAIL_ALLOCATION");
    ASSERT_EQ(messages.entries.size(), 1u);
    EXPECT_EQ(messages.entries[0].text.rfind(message, 0), 0u);
    driver->Speak("ba ca.");
    ASSERT_TRUE(driver->WaitUntilIdle(5s)) << "the next speech tries again";
    if (std::string_view(role) == "decoder-thread")
      EXPECT_GE(device.played.size(), 1u) << "speech went on without look-ahead";
    else
      EXPECT_EQ(device.played.size(), 1u) << "only the second speech could start";
    driver.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - before, 3s);
  }
}

TEST_F(SpeakDriverTest, BadInputNeverCrashes) {
  device.keep_sentences = false;
  Make();
  std::mt19937 rng(7);
  std::string garbage(1 << 16, '\0');
  for (auto& c : garbage)
    c = static_cast<char>(rng());
  const std::string inputs[] = {garbage,
                                std::string(100000, '.'),
                                "?!?!,,;;::...",
                                "supercalifragilistic qwrtzxcv",
                                std::string(5000, 'z'),
                                std::string("ba\0ca", 5)};
  for (const auto& text : inputs) {
    driver->Speak(text);
    ASSERT_TRUE(driver->WaitUntilIdle(60s));
    EXPECT_FALSE(driver->Busy());
  }
  EXPECT_TRUE(messages.entries.empty());
}

// An entry whose replacement repeats its own word is expanded once, not again and again.
TEST_F(SpeakDriverTest, AStoreEntryThatRepeatsItselfIsExpandedOnce) {
  for (int i = 0; i < 200; ++i) {
    definitions.entries["xin"] += "xin ";
    auto_correct.entries["qq"] += "qq ba ";
  }
  device.on_event = [](const EventRecord&) {};
  Make(&definitions, &auto_correct);
  driver->Speak("xin qq.");
  ASSERT_TRUE(driver->WaitUntilIdle(20s));
  EXPECT_EQ(Fired(kKindWord).size(), 200u + 200u);
}

} // namespace
} // namespace vntts
