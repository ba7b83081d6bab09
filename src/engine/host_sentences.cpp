// SPDX-License-Identifier: MIT
#include "engine/host_sentences.h"

#include <condition_variable>
#include <memory>
#include <mutex>

#include "engine/host_code.h"

namespace vntts {
namespace {

// Between the consumer (Put) and the thread in Render.
struct Handoff {
  std::mutex mutex;
  std::condition_variable changed;
  PlayableSentence* offered = nullptr;
  bool answered = false;
  bool go_on = true;
  bool interrupted = false;
  bool finished = false;

  void Set(bool Handoff::*flag) {
    {
      std::lock_guard lock(mutex);
      this->*flag = true;
    }
    changed.notify_all();
  }
};

class HandoffSink final : public SentenceSink {
public:
  HandoffSink(std::shared_ptr<Handoff> handoff, double speed, double pitch)
      : handoff_(std::move(handoff)), speed_(speed), pitch_(pitch) {}
  ~HandoffSink() override { Finish(); }

  OutputLayout Layout() override { return {1, kUnitSampleRate, 16}; }
  double SpeedFactor() override { return speed_; }
  double PitchFactor() override { return pitch_; }
  void Interrupt() override { handoff_->Set(&Handoff::interrupted); }
  void Finish() override { handoff_->Set(&Handoff::finished); }

  bool Put(PlayableSentence& sentence, const std::atomic<bool>&) override {
    Handoff& h = *handoff_;
    // The wait is on the host's function: to the driver this worker is in host code.
    HostCodeScope host_code;
    std::unique_lock lock(h.mutex);
    if (h.interrupted) return false;
    h.offered = &sentence;
    h.answered = false;
    h.changed.notify_all();
    h.changed.wait(lock, [&] { return h.answered || h.interrupted; });
    h.offered = nullptr;
    return h.answered && h.go_on && !h.interrupted;
  }

private:
  std::shared_ptr<Handoff> handoff_;
  double speed_, pitch_;
};

RenderedSentence Unpack(const PlayableSentence& played) {
  RenderedSentence out;
  out.samples.resize(played.bytes.size() / 2);
  for (std::size_t i = 0; i < out.samples.size(); ++i)
    out.samples[i] = static_cast<std::int16_t>(static_cast<std::uint16_t>(
        played.bytes[2 * i] | (static_cast<unsigned>(played.bytes[2 * i + 1]) << 8)));
  for (const EventRecord& e : played.events) {
    if (e.kind == static_cast<std::uint32_t>(EventKind::kWordBoundary)) {
      out.words.push_back({e.position, e.text_start, e.text_length});
    } else if (e.kind == static_cast<std::uint32_t>(EventKind::kSentenceBoundary)) {
      out.text_start = e.params[0];
      out.text_length = e.params[1];
    }
  }
  return out;
}

} // namespace

bool HostSentences::Render(std::string_view internal, double speed_factor, double pitch_factor,
                           const Handler& handler) {
  auto handoff = std::make_shared<Handoff>();
  driver_.SpeakInto(internal, std::make_unique<HandoffSink>(handoff, speed_factor, pitch_factor));
  Handoff& h = *handoff;
  std::unique_lock lock(h.mutex);
  while (true) {
    h.changed.wait(lock, [&] { return (h.offered && !h.answered) || h.finished || h.interrupted; });
    if (h.offered && !h.answered) {
      RenderedSentence sentence = Unpack(*h.offered);
      lock.unlock();
      const bool go_on = handler(sentence);
      lock.lock();
      h.answered = true;
      h.go_on = go_on;
      h.changed.notify_all();
      if (!go_on) return false;
      continue;
    }
    return !h.interrupted;
  }
}

} // namespace vntts
