// SPDX-License-Identifier: MIT
#include "engine_speech.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "audio/audio_system.h"
#include "core/data_folder.h"
#include "core/messages.h"
#include "engine/speech_engine.h"
#include "instant_sink.h"
#include "text/charset/charsets.h"

namespace sound_report {
namespace {

// Everything one speech wrote, sentence buffer after sentence buffer, in the format of the
// last stream opened (one speech keeps one format).
struct Capture {
  std::mutex mutex;
  vntts::WaveFormat format;
  std::vector<std::uint8_t> bytes;
  std::size_t sentence_start = 0; // frames before the sentence now playing
  struct Mark {
    std::size_t frame;
    std::uint32_t text_start, text_length;
  };
  std::vector<Mark> marks;
};

class CaptureSink final : public vntts::bench::InstantSink {
public:
  explicit CaptureSink(Capture& capture) : capture_(capture) {}
  std::string_view Backend() const override { return "capture"; }
  vntts::DeviceResult Open(const vntts::WaveFormat& format) override {
    std::lock_guard lock(capture_.mutex);
    capture_.format = format;
    return 0;
  }
  vntts::DeviceResult Write(std::span<const std::uint8_t> bytes) override {
    std::lock_guard lock(capture_.mutex);
    capture_.bytes.insert(capture_.bytes.end(), bytes.begin(), bytes.end());
    written_ += bytes.size();
    return 0;
  }
  // The wave device fires at most one event a turn and stops asking once the sound is out, so
  // the clock moves a millisecond's worth of frames a turn and the sound is out when it has
  // passed everything written.
  bool Drained() override {
    std::lock_guard lock(capture_.mutex);
    return heard_ * frame() >= written_;
  }
  vntts::DeviceResult Position(std::uint64_t& frames) override {
    std::lock_guard lock(capture_.mutex);
    heard_ = std::min<std::uint64_t>(heard_ + capture_.format.samples_per_second / 1000,
                                     written_ / frame());
    frames = heard_;
    return 0;
  }

private:
  std::uint64_t frame() const { return std::max<std::uint32_t>(capture_.format.FrameBytes(), 1); }
  Capture& capture_;
  std::uint64_t written_ = 0; // bytes
  std::uint64_t heard_ = 0;   // frames
};

class CaptureAudio final : public vntts::AudioSystem {
public:
  explicit CaptureAudio(Capture& capture) : capture_(capture) {}
  std::unique_ptr<vntts::AudioSink> MakeSink() override {
    return std::make_unique<CaptureSink>(capture_);
  }
  std::unique_ptr<vntts::AudioSource> MakeSource() override { return nullptr; }
  vntts::DeviceCapabilities OutputCapabilities() override { return {}; }
  vntts::DeviceCapabilities InputCapabilities() override { return {}; }

private:
  Capture& capture_;
};

class QuietMessages final : public vntts::Messages {
public:
  void Report(std::string_view, std::string_view, vntts::MessageIcon) override {}
};

void VNTTS_CALL OnEvent(std::uintptr_t user, VNEvent event) {
  auto& c = *reinterpret_cast<Capture*>(user);
  std::lock_guard lock(c.mutex);
  const std::size_t frame = c.format.FrameBytes() ? c.format.FrameBytes() : 1;
  if (event.kind == VN_EVENT_SOUND_START) c.sentence_start = c.bytes.size() / frame;
  if (event.kind == VN_EVENT_WORD_BOUNDARY)
    c.marks.push_back({c.sentence_start + event.position, event.text_start, event.text_length});
}

float SampleAt(const std::uint8_t* p, std::uint16_t bits) {
  if (bits == 8) return static_cast<float>(static_cast<int>(p[0]) - 128) / 128.0f;
  return static_cast<float>(static_cast<std::int16_t>(p[0] | (p[1] << 8))) / 32768.0f;
}

} // namespace

struct EngineSpeaker::State {
  QuietMessages messages;
  Capture capture;
  std::unique_ptr<vntts::SpeechEngine> engine;
};

EngineSpeaker::EngineSpeaker(const std::filesystem::path& voice_folder)
    : state_(std::make_unique<State>()) {
  vntts::EngineOverrides overrides;
  overrides.audio = std::make_unique<CaptureAudio>(state_->capture);
  state_->engine = std::make_unique<vntts::SpeechEngine>(
      state_->messages, vntts::DataFolder(voice_folder), std::move(overrides));
}

EngineSpeaker::~EngineSpeaker() = default;

bool EngineSpeaker::HasVoice() {
  std::vector<std::uint8_t> probe(VN_WORD_BUFFER_BYTES);
  std::uint32_t n = 0;
  return state_->engine->RenderWord(vntts::Utf8ToInternal("ba"), probe.data(), &n) && n > 0;
}

Speech EngineSpeaker::Speak(std::string_view utf8, std::uint32_t format_code) {
  Capture& c = state_->capture;
  {
    std::lock_guard lock(c.mutex);
    c.bytes.clear();
    c.marks.clear();
    c.sentence_start = 0;
  }
  auto& engine = *state_->engine;
  engine.SetAudioFormat(format_code);
  engine.SetNotify(OnEvent, reinterpret_cast<std::uintptr_t>(&c));
  const std::string text = vntts::Utf8ToInternal(utf8);
  engine.Speak(text);
  engine.WaitUntilDone();
  engine.SetNotify(nullptr, 0);

  std::lock_guard lock(c.mutex);
  Speech speech;
  speech.rate = c.format.samples_per_second;
  const std::size_t frame = c.format.FrameBytes();
  if (frame == 0) return speech;
  speech.samples.reserve(c.bytes.size() / frame);
  for (std::size_t at = 0; at + frame <= c.bytes.size(); at += frame)
    speech.samples.push_back(SampleAt(&c.bytes[at], c.format.bits_per_sample));
  std::size_t previous_end = 0;
  for (std::size_t i = 0; i < c.marks.size(); ++i) {
    const auto& m = c.marks[i];
    bool punctuated = i == 0;
    for (std::size_t k = previous_end; k < m.text_start && k < text.size(); ++k)
      punctuated = punctuated || text[k] != ' ';
    previous_end = m.text_start + m.text_length;
    if (m.frame >= speech.samples.size()) {
      ++speech.dropped_words;
      continue;
    }
    speech.words.push_back({m.frame, punctuated});
  }
  return speech;
}

} // namespace sound_report
