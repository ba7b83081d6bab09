// SPDX-License-Identifier: MIT
// The wave device against a scripted sink: event order and passes, loops, start and end
// events, control from another thread, failures, the record-format check and the
// format codes.
#include <gtest/gtest.h>

#include <atomic>
#include <sstream>
#include <thread>

#include "audio/format_codes.h"
#include "audio/volume_gain.h"
#include "audio/wave_device.h"
#include "fake_audio.h"
#include "support/tsv_table.h"
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

// A missing device, a refused format and a stream that breaks: each is reported with its
// text and returned; a play that started still ends with its end event.
TEST_F(Device, SinkFailuresAreReportedAndReturned) {
  std::vector<std::uint32_t> kinds;
  device->SetNotify([&](const EventRecord& e) { kinds.push_back(e.kind); });
  fill(1000);
  audio->has_output = false;
  EXPECT_EQ(device->Play(), 0u);
  EXPECT_FALSE(device->IsPlaying());
  audio->has_output = true;
  audio->sink->open_result = device_result::kBadFormat;
  EXPECT_EQ(device->Play(), 32u);
  EXPECT_EQ(audio->sink->closes, 1);
  EXPECT_TRUE(kinds.empty());
  audio->sink->open_result = 0;
  audio->sink->position_result = 77;
  EXPECT_EQ(device->Play(), 77u);
  EXPECT_EQ(kinds, (std::vector<std::uint32_t>{5, 6}));
  EXPECT_EQ(texts(), (std::vector<std::string>{"There is not any wave-form device in your system !",
                                               "Attempted to open with unsupported wave format!",
                                               "Error !!!"}));
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
  EXPECT_TRUE(messages.entries.empty());

  // A device that cannot pause says so.
  audio->sink->pause_result = device_result::kNotSupported;
  audio->sink->reset = false;
  std::thread again([&] { device->Play(); });
  while (!device->IsPlaying() || !device->PlayPosition(pos))
    std::this_thread::yield();
  EXPECT_EQ(device->Pause(), 8u);
  device->Stop();
  again.join();
  EXPECT_EQ(texts(), (std::vector<std::string>{
                         "Specified device is synchronous and does not support pausing."}));
}

TEST_F(Device, VolumeScalesWhatIsPlayed) {
  fill(0);
  const std::vector<std::uint8_t> two = {0x00, 0x40, 0x00, 0xC0}; // +16384, -16384
  device->AssignSamples(two);
  EXPECT_EQ(device->SetVolume(0x00008000), 0u);
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

// An output without pitch support reports a range of 0..0 and pitch 0, and keeps no change;
// the pitch set before comes back with the support.
TEST_F(Device, PitchIsKeptWhereTheOutputSupportsIt) {
  EXPECT_EQ(device->SetPitch(0x20000), 0u);
  audio->output_caps.pitch = false;
  device->RefreshCapabilities();
  EXPECT_EQ(device->PitchRangeMaximum(), 0u);
  EXPECT_EQ(device->SetPitch(0x18000), 0u);
  EXPECT_EQ(device->GetPitch(), 0u);
  audio->output_caps.pitch = true;
  device->RefreshCapabilities();
  EXPECT_EQ(device->GetPitch(), 0x20000u);
}

class DeviceFormats : public Device, public ::testing::WithParamInterface<test::TsvRow> {};

TEST_P(DeviceFormats, AreCheckedAndChosenByTheirCode) {
  const auto& row = GetParam();
  const auto caps = static_cast<std::uint32_t>(std::stoul(row.at(2), nullptr, 16));
  std::istringstream in(row.at(3));
  std::uint32_t a = 0, b = 0, c = 0;
  in >> a >> b >> c;
  if (row.at(1) == "format_code") {
    const auto f = FormatForCode(a, caps);
    EXPECT_EQ(f ? std::to_string(f->channels) + " " + std::to_string(f->rate) + " " +
                      std::to_string(f->bits)
                : "none",
              row.at(4));
    return;
  }
  audio->input_caps.formats = caps;
  audio->input_caps.channels = static_cast<std::uint16_t>(std::stoi(row.at(4)));
  device->SetFormat(
      WaveFormat::Pcm(static_cast<std::uint16_t>(a), b, static_cast<std::uint16_t>(c)));
  EXPECT_EQ(device->CanRecord(), std::stoi(row.at(5)));
  EXPECT_EQ(texts(),
            row[6].empty() ? std::vector<std::string>{} : std::vector<std::string>{row[6]});
}

INSTANTIATE_TEST_SUITE_P(Table, DeviceFormats, ::testing::ValuesIn(test::ReadTsv("device_formats")),
                         [](const auto& param_info) { return test::TsvName(param_info.param); });

TEST_F(Device, CanRecordWithoutAnInputSaysSo) {
  audio->has_input = false;
  EXPECT_EQ(device->CanRecord(), 0);
  EXPECT_EQ(texts(), (std::vector<std::string>{
                         "There is not any device to record, please plug new device !!!."}));
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
