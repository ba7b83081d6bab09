// SPDX-License-Identifier: MIT
// The wave device against a scripted sink: event order and passes, loops, start and end
// events, control from another thread, the error table, the record-format check and the
// format codes.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "audio/format_codes.h"
#include "audio/volume_gain.h"
#include "audio/wave_device.h"
#include "fake_audio.h"
#include "wave_bytes.h"

namespace vntts {
namespace {

struct Device : ::testing::Test {
  RecordedMessages messages;
  test::FakeAudioSystem* audio = nullptr;
  std::unique_ptr<WaveDevice> device;
  std::vector<std::string> log;

  void SetUp() override {
    auto fake = std::make_unique<test::FakeAudioSystem>();
    audio = fake.get();
    device = std::make_unique<WaveDevice>(messages, std::move(fake));
    device->SetFormat(WaveFormat::Pcm(1, 22050, 16));
  }
  void fill(std::size_t frames) {
    device->RemoveAllEvents();
    device->Release();
    std::vector<std::uint8_t> bytes(frames * 2);
    for (std::size_t i = 0; i < bytes.size(); ++i)
      bytes[i] = static_cast<std::uint8_t>(i);
    device->AssignSamples(bytes);
  }
  void log_events_and_passes() {
    device->SetNotify([this](const EventRecord& e) {
      log.push_back("event " + std::to_string(e.kind) + "@" + std::to_string(e.position));
    });
    device->SetMessagePump([this] { log.push_back("pass"); });
  }
  std::vector<std::string> texts() const {
    std::vector<std::string> t;
    for (const auto& e : messages.entries)
      t.push_back(e.text);
    return t;
  }
};

TEST_F(Device, EventsAtTheSamePositionFireInSuccessivePasses) {
  fill(1000);
  audio->sink->frames_per_wait = 60;
  device->AddEvent({3, 100, 0, 0, {}});
  device->AddEvent({1, 0, 0, 0, {}});
  device->AddEvent({2, 0, 0, 0, {}}); // newer: goes first
  log_events_and_passes();
  ASSERT_EQ(device->Play(), 0u);
  // Heard positions per pass: 0, 0 (no wait: an event was still due), 60, 120...
  const std::vector<std::string> head(log.begin(), log.begin() + 8);
  EXPECT_EQ(head, (std::vector<std::string>{"event 5@0", "event 2@0", "pass", "event 1@0", "pass",
                                            "pass", "event 3@100", "pass"}));
  EXPECT_EQ(log.back(), "event 6@2000");
}

TEST_F(Device, StartAndEndEventsCarryTheirWords) {
  fill(300);
  std::vector<EventRecord> seen;
  device->SetNotify([&](const EventRecord& e) { seen.push_back(e); });
  ASSERT_EQ(device->Play(), 0u);
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[0], (EventRecord{5, 0, 0, 0, {0, 0, 1, 0, 0}}));
  EXPECT_EQ(seen[1], (EventRecord{6, 600, 0, 0, {0, 0, 1, 0, 0}}));
}

TEST_F(Device, WithoutANotifyFunctionNothingFiresAndEventsStay) {
  fill(300);
  device->AddEvent({3, 10, 0, 0, {}});
  ASSERT_EQ(device->Play(), 0u);
  EXPECT_EQ(device->Events().size(), 1u);
}

TEST_F(Device, EventsPastTheEndDoNotFire) {
  fill(200);
  device->AddEvent({3, 199, 0, 0, {}});
  device->AddEvent({3, 0xFFFFFFFF, 0, 0, {}});
  log_events_and_passes();
  ASSERT_EQ(device->Play(), 0u);
  EXPECT_EQ(std::count(log.begin(), log.end(), "event 3@199"), 1);
  EXPECT_EQ(std::count(log.begin(), log.end(), "event 3@4294967295"), 0);
}

// A sink that hears one frame per wait shows the exact frame each event fires at: a word
// event must fire when its own frame is heard, not one frame later.
TEST_F(Device, EventsFireOnTheFrameTheyName) {
  audio->sink->frames_per_wait = 1;
  fill(200);
  device->AddEvent({3, 58, 0, 0, {}});
  WaveDevice::Sound sound;
  sound.format = WaveFormat::Pcm(1, 22050, 16);
  sound.block =
      std::make_shared<const std::vector<std::uint8_t>>(device->data(), device->data() + 400);
  sound.bytes = 400;
  for (const std::uint32_t at : {0u, 1u, 57u, 199u})
    sound.own_events.push_back({3, at, 0, 0, {}});
  std::vector<std::pair<std::uint32_t, std::uint64_t>> fired; // event position, frame heard
  device->SetNotify([&](const EventRecord& e) {
    if (e.kind != 3) return;
    std::lock_guard lock(audio->sink->mutex);
    fired.emplace_back(e.position, audio->sink->heard);
  });
  ASSERT_EQ(device->PlaySound(std::move(sound), {}), 0u);
  EXPECT_EQ(fired, (std::vector<std::pair<std::uint32_t, std::uint64_t>>{
                       {0, 0}, {1, 1}, {57, 57}, {58, 58}, {199, 199}}));
}

TEST_F(Device, LoopCountPlaysTheBlockThatManyTimes) {
  fill(50);
  const std::vector<std::uint8_t> once(device->data(), device->data() + 100);
  const struct { std::uint32_t loops, plays; } cases[] = {{0, 1}, {1, 1}, {2, 2}, {3, 3}};
  for (const auto& c : cases) {
    audio->sink->written.clear();
    audio->sink->heard = 0;
    device->SetLoopCount(c.loops);
    ASSERT_EQ(device->Play(), 0u);
    ASSERT_EQ(audio->sink->written.size(), 100u * c.plays) << c.loops;
    for (std::uint32_t i = 0; i < c.plays; ++i)
      EXPECT_TRUE(std::equal(once.begin(), once.end(), audio->sink->written.begin() + i * 100));
  }
}

TEST_F(Device, SubRangePlaysOnlyThoseFramesAndItsEvents) {
  fill(100);
  device->AddEvent({3, 5, 0, 0, {}});
  device->AddEvent({4, 30, 0, 0, {}});
  log_events_and_passes();
  ASSERT_EQ(device->Play(20, 60), 0u);
  EXPECT_EQ(audio->sink->written.size(), 80u);
  EXPECT_EQ(audio->sink->written[0], 40);
  EXPECT_EQ(std::count(log.begin(), log.end(), "event 3@5"), 0);
  EXPECT_EQ(std::count(log.begin(), log.end(), "event 4@30"), 1);
  EXPECT_EQ(log.back(), "event 6@80");

  // A range that ends before it starts plays nothing and fires nothing, not even the events
  // at its end.
  log.clear();
  audio->sink->written.clear();
  device->AddEvent({7, 20, 0, 0, {}});
  ASSERT_EQ(device->Play(60, 20), 0u);
  ASSERT_EQ(device->Play(101), 0u);
  EXPECT_TRUE(audio->sink->written.empty());
  EXPECT_EQ(log, std::vector<std::string>{});
}

TEST_F(Device, NoOutputDeviceIsReportedAndPlayReturnsZero) {
  fill(10);
  audio->has_output = false;
  bool called = false;
  device->SetNotify([&](const EventRecord&) { called = true; });
  EXPECT_EQ(device->Play(), 0u);
  EXPECT_FALSE(called);
  EXPECT_EQ(texts(),
            (std::vector<std::string>{"There is not any wave-form device in your system !"}));
  EXPECT_FALSE(device->IsPlaying());
}

TEST_F(Device, OpenFailureIsReportedAndReturned) {
  fill(10);
  audio->sink->open_result = device_result::kBadFormat;
  EXPECT_EQ(device->Play(), 32u);
  EXPECT_EQ(texts(), (std::vector<std::string>{"Attempted to open with unsupported wave format!"}));
  EXPECT_EQ(audio->sink->closes, 1);
}

TEST_F(Device, ABrokenStreamEndsThePlayWithItsMessage) {
  fill(1000);
  audio->sink->position_result = 77;
  std::vector<std::uint32_t> kinds;
  device->SetNotify([&](const EventRecord& e) { kinds.push_back(e.kind); });
  EXPECT_EQ(device->Play(), 77u);
  EXPECT_EQ(texts(), (std::vector<std::string>{"Error !!!"}));
  EXPECT_EQ(kinds, (std::vector<std::uint32_t>{5, 6}));
}

TEST_F(Device, ControlWithoutAPlayDoesNothing) {
  EXPECT_EQ(device->Pause(), device_result::kInvalidHandle);
  EXPECT_EQ(device->Resume(), device_result::kInvalidHandle);
  EXPECT_EQ(device->Stop(), device_result::kInvalidHandle);
  EXPECT_TRUE(messages.entries.empty());
  EXPECT_FALSE(device->IsPlaying());
}

TEST_F(Device, PauseResumeAndStopReachTheStreamFromAnotherThread) {
  fill(22050 * 100); // far longer than the test
  audio->sink->frames_per_wait = 10;
  std::atomic<int> stage{0};
  std::vector<std::uint32_t> kinds;
  device->SetNotify([&](const EventRecord& e) { kinds.push_back(e.kind); });
  std::thread player([&] {
    EXPECT_EQ(device->Play(), 0u);
    stage = 1;
  });
  while (!device->IsPlaying())
    std::this_thread::yield();
  std::uint64_t pos = 0;
  while (!device->PlayPosition(pos) || pos == 0)
    std::this_thread::yield();
  EXPECT_EQ(device->Pause(), 0u);
  EXPECT_EQ(device->Resume(), 0u);
  EXPECT_EQ(device->Stop(), 0u);
  player.join();
  EXPECT_EQ(stage, 1);
  EXPECT_EQ(audio->sink->calls, (std::vector<std::string>{"pause", "resume", "reset"}));
  EXPECT_EQ(kinds, (std::vector<std::uint32_t>{5, 6}));
  EXPECT_FALSE(device->IsPlaying());
}

TEST_F(Device, PauseOnADeviceThatCannotIsReported) {
  fill(22050 * 100);
  audio->sink->pause_result = device_result::kNotSupported;
  std::thread player([&] { device->Play(); });
  while (!device->IsPlaying())
    std::this_thread::yield();
  std::uint64_t pos = 0;
  while (!device->PlayPosition(pos))
    std::this_thread::yield();
  EXPECT_EQ(device->Pause(), 8u);
  device->Stop();
  player.join();
  EXPECT_EQ(texts(), (std::vector<std::string>{
                         "Specified device is synchronous and does not support pausing."}));
}

TEST_F(Device, VolumeStartsFullAndScalesWhatIsPlayed) {
  EXPECT_EQ(device->GetVolume(), 0xFFFFFFFFu);
  fill(0);
  const std::vector<std::uint8_t> two = {0x00, 0x40, 0x00, 0xC0}; // +16384, -16384
  device->AssignSamples(two);
  EXPECT_EQ(device->SetVolume(0x00008000), 0u);
  EXPECT_EQ(device->GetVolume(), 0x8000u);
  ASSERT_EQ(device->Play(), 0u);
  EXPECT_EQ(audio->sink->written, (std::vector<std::uint8_t>{0x00, 0x20, 0x00, 0xE0}));
  const std::vector<std::uint8_t> kept(device->data(), device->data() + device->DataLength());
  EXPECT_EQ(kept, two); // the buffer itself is untouched
}

TEST(VolumeGain, ChannelsFollowTheirHalfOfTheWord) {
  const struct {
    std::uint16_t bits, channels;
    std::uint32_t volume;
    std::vector<std::uint8_t> in, out;
  } cases[] = {
      {16, 2, 0x0000FFFF, {0xFF, 0x7F, 0xFF, 0x7F}, {0xFF, 0x7F, 0x00, 0x00}},
      {16, 2, 0xFFFF0000, {0x00, 0x80, 0x00, 0x80}, {0x00, 0x00, 0x00, 0x80}},
      {16, 1, 0x0000FFFF, {0x00, 0x80}, {0x00, 0x80}},
      {8, 1, 0x00000000, {0xFF, 0x00, 0x80}, {0x80, 0x80, 0x80}},
      {8, 2, 0x8000FFFF, {0xFF, 0xFF}, {0xFF, 0xBF}},
      {16, 1, 0xFFFFFFFF, {0x34, 0x12}, {0x34, 0x12}},
  };
  for (const auto& c : cases) {
    auto v = c.in;
    ApplyVolume(v, c.bits, c.channels, c.volume);
    EXPECT_EQ(v, c.out) << c.bits << "/" << c.channels << "/" << std::hex << c.volume;
  }
}

TEST_F(Device, PitchIsKeptWhereTheOutputSupportsIt) {
  EXPECT_EQ(device->PitchRangeMaximum(), 0xFFFFFFFFu);
  EXPECT_EQ(device->GetPitch(), 0x10000u);
  EXPECT_EQ(device->SetPitch(0x20000), 0u);
  EXPECT_EQ(device->GetPitch(), 0x20000u);
  EXPECT_EQ(device->OutputCapabilities().formats, 0xFFFu);

  // An output without pitch support takes the other branch: range 0..0, pitch 0, no change.
  audio->output_caps.pitch = false;
  device->RefreshCapabilities();
  EXPECT_EQ(device->PitchRangeMaximum(), 0u);
  EXPECT_EQ(device->SetPitch(0x18000), 0u);
  EXPECT_EQ(device->GetPitch(), 0u);
  audio->output_caps.pitch = true;
  device->RefreshCapabilities();
  EXPECT_EQ(device->GetPitch(), 0x20000u);
}

// A known result shows its own text, an unknown one the general text, success nothing.
TEST_F(Device, CheckResultShowsTheResultsText) {
  EXPECT_TRUE(device->CheckResult(32));
  EXPECT_FALSE(device->CheckResult(36));
  EXPECT_FALSE(device->CheckResult(0));
  EXPECT_EQ(texts(), (std::vector<std::string>{"Attempted to open with unsupported wave format!",
                                               "Error !!!"}));
}

TEST_F(Device, CanRecordChecksOnlyWhatItAlwaysChecked) {
  const struct {
    std::uint16_t channels;
    std::uint32_t rate;
    std::uint16_t bits;
    std::uint32_t formats;
    std::uint16_t device_channels;
    int result;
    const char* text;
  } cases[] = {
      {2, 44100, 16, 0x000, 2, 1, nullptr}, // 16-bit is never checked
      {1, 11025, 16, 0x000, 2, 1, nullptr},
      {2, 22050, 8, 0xFFF & ~0x20u, 2, 0, "This device do not support this format."},
      {2, 22050, 8, 0x020, 2, 1, nullptr},
      {1, 11025, 8, 0xFFE, 2, 0, "This device do not support this format."},
      {1, 44100, 8, 0x100, 1, 1, nullptr},
      {1, 8000, 8, 0x000, 1, 1, nullptr}, // other rates pass unchecked
      {2, 22050, 6, 0xFFF & ~0x80u, 2, 0, "This device do not support this format."},
      {2, 22050, 16, 0xFFF, 1, 0, "This device do not support stereo."},
  };
  for (const auto& c : cases) {
    messages.entries.clear();
    audio->input_caps.formats = c.formats;
    audio->input_caps.channels = c.device_channels;
    device->SetFormat(WaveFormat::Pcm(c.channels, c.rate, c.bits));
    EXPECT_EQ(device->CanRecord(), c.result) << c.channels << "/" << c.rate << "/" << c.bits;
    if (c.text) {
      ASSERT_EQ(messages.entries.size(), 1u);
      EXPECT_EQ(messages.entries[0].text, c.text);
    } else {
      EXPECT_TRUE(messages.entries.empty());
    }
  }
  messages.entries.clear();
  audio->has_input = false;
  EXPECT_EQ(device->CanRecord(), 0);
  EXPECT_EQ(texts(), (std::vector<std::string>{
                         "There is not any device to record, please plug new device !!!."}));
}

TEST(FormatCodes, ElevenThousandChainAndRefusals) {
  using F = std::optional<std::tuple<int, int, int>>;
  const auto pick = [](std::uint32_t code, std::uint32_t caps) -> F {
    const auto f = FormatForCode(code, caps);
    if (!f) return std::nullopt;
    return std::tuple<int, int, int>(f->channels, static_cast<int>(f->rate), f->bits);
  };
  const struct {
    std::uint32_t code, caps;
    F expected;
  } cases[] = {
      {8, 0xFFF, {{1, 11025, 8}}}, {8, 0xFFE, {{2, 11025, 8}}},       {8, 0xFF8, {{2, 11025, 16}}},
      {8, 0xFF0, std::nullopt},    {9, 0x004, {{1, 11025, 16}}},      {10, 0x008, {{2, 11025, 16}}},
      {11, 0x007, std::nullopt},   {23, 0xF7F, std::nullopt},         {35, 0x800, {{2, 44100, 16}}},
      {12, 0xFFF, std::nullopt},   {0xFFFFFFFF, 0xFFF, std::nullopt},
  };
  for (const auto& c : cases)
    EXPECT_EQ(pick(c.code, c.caps), c.expected) << c.code << " caps " << std::hex << c.caps;
}

TEST_F(Device, SetFormatCodeChangesTheBufferFormat) {
  EXPECT_EQ(device->SetFormatCode(35), 1);
  EXPECT_EQ(device->Format(), WaveFormat::Pcm(2, 44100, 16));
  EXPECT_EQ(device->Channels(), 2);
  EXPECT_EQ(device->SetFormatCode(12), 0);
  EXPECT_EQ(device->Format(), WaveFormat::Pcm(2, 44100, 16));
  EXPECT_EQ(device->SetFormatCode(8), 1);
  EXPECT_EQ(device->Format(), WaveFormat::Pcm(1, 11025, 8));
}

} // namespace
} // namespace vntts

namespace vntts {
namespace {

TEST_F(Device, RecordToFileWritesExactlyTheTimeAskedFor) {
  test::TempDir dir;
  device->SetFormat(WaveFormat::Pcm(2, 11025, 8));
  const auto path = (dir / "r.wav").string();
  ASSERT_EQ(device->RecordToFile(path, 200), 0u);
  EXPECT_TRUE(messages.entries.empty());
  WaveBuffer take(messages);
  ASSERT_EQ(take.Load(path), 0);
  EXPECT_EQ(take.Format(), WaveFormat::Pcm(2, 11025, 8));
  EXPECT_EQ(take.SampleCount(), 2205u);
  EXPECT_EQ(take.data()[0], 0x80); // 8-bit silence
  EXPECT_TRUE(take.Events().empty());
}

TEST_F(Device, RecorderMessagesForEachFailingStep) {
  device->SetFormat(WaveFormat::Pcm(1, 22050, 12));
  EXPECT_NE(device->StartRecording(), 0u);
  EXPECT_EQ(texts(), (std::vector<std::string>{"Failed to set params of device."}));
  messages.entries.clear();
  audio->has_input = false;
  device->SetFormat(WaveFormat::Pcm(1, 22050, 16));
  EXPECT_NE(device->RecordToFile("/nonexistent/x.wav", 10), 0u);
  EXPECT_EQ(texts(), (std::vector<std::string>{"Failed to open device.",
                                               "Failed to set params of device."}));
}

TEST_F(Device, RecorderStepsInOrderAndAnEmptyNameSavesNothing) {
  test::TempDir dir;
  EXPECT_EQ(device->PauseRecording(), device_result::kInvalidHandle);
  ASSERT_EQ(device->StartRecording(), 0u);
  EXPECT_EQ(device->PauseRecording(), 0u);
  EXPECT_EQ(device->ResumeRecording(), 0u);
  EXPECT_EQ(device->StopRecording(), 0u);
  EXPECT_EQ(device->SaveRecording(""), 0u);
  EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
  EXPECT_EQ(device->StopRecording(), device_result::kInvalidHandle); // closed by the save
  ASSERT_EQ(device->StartRecording(), 0u);
  EXPECT_EQ(device->SaveRecording((dir / "take.wav").string()), 0u);
  EXPECT_TRUE(std::filesystem::exists(dir / "take.wav"));
  EXPECT_TRUE(messages.entries.empty());
}

} // namespace
} // namespace vntts
