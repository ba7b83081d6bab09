#include "engine/speak_driver.h"

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "core/allocation.h"
#include "engine/sentence_assembler.h"
#include "engine/word_gap.h"
#include "engine/work_queue.h"

namespace vntts {

namespace {
constexpr std::string_view kTokenBufferText = "MakeBufForToken";
constexpr std::string_view kOutOfMemoryText = "Out off memory !";
// An auto-correct replacement is itself walked; one level is enough and stops a pair that
// replaces a word by itself from looping.
constexpr int kMaxReplacementDepth = 1;
// How long a stop from the client's thread keeps resetting the device for a consumer that is
// about to play; past it the consumer is left to notice the stop on its own.
constexpr auto kConsumerStopBound = std::chrono::seconds(3);
} // namespace

struct SpeakDriver::Session {
  std::string text;
  bool to_file = false;
  std::string path;
  WorkQueue queue;
  std::atomic<bool> stop{false};
  std::atomic<bool> producer_done{false};
  std::atomic<bool> consumer_done{false};
  // Words the producer has rendered, and whether the look-ahead decoder should end.
  std::atomic<std::size_t> produced{0};
  std::atomic<bool> ahead_done{false};
  std::mutex mutex;
  std::condition_variable changed;

  void Mark(std::atomic<bool>& flag) {
    {
      std::lock_guard lock(mutex);
      flag = true;
    }
    changed.notify_all();
    queue.Wake();
  }
  template <class Rep, class Period>
  bool WaitFor(const std::atomic<bool>& flag, std::chrono::duration<Rep, Period> timeout) {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, timeout, [&] { return flag.load(); });
  }
};

SpeakDriver::SpeakDriver(Parts parts)
    : messages_(parts.messages), renderer_(parts.renderer), device_(parts.device),
      stores_(parts.stores), phrases_(parts.phrases), sleep_(std::move(parts.sleep)),
      decode_ahead_(parts.decode_ahead) {
  if (!sleep_) sleep_ = [](std::chrono::milliseconds ms) { std::this_thread::sleep_for(ms); };
}

SpeakDriver::~SpeakDriver() {
  EndSession(true);
  JoinFinishedWorkers();
}

std::shared_ptr<SpeakDriver::Session> SpeakDriver::Current() {
  std::lock_guard lock(session_mutex_);
  return session_;
}

bool SpeakDriver::IsPhrase(std::string_view first, std::string_view second) const {
  if (!phrases_ || first.empty() || second.empty()) return false;
  return phrases_->IsPhrase(first, second);
}

// ---- Client side ----------------------------------------------------------------------------

void SpeakDriver::Speak(std::string_view text) {
  if (paused_.load()) {
    // A speak call while paused is a resume; the new text is not spoken.
    device_.Resume();
    paused_ = false;
    std::lock_guard lock(session_mutex_);
    save_to_file_ = false;
    return;
  }
  device_.OfferOutput(0);
  if (device_.IsPlaying()) {
    Stop();
    sleep_(kRestartWait);
  }
  device_.RefreshCapabilities();
  Start(text);
}

void SpeakDriver::SpeakEx(std::string_view text, VNOutputHandle output) {
  device_.OfferOutput(output);
  if (device_.IsPlaying()) Stop();
  Start(text);
}

int SpeakDriver::SpeakToFile(std::string_view text, std::string_view path) {
  if (!paused_.load()) EndSession(true); // the previous file may still be being written
  {
    std::lock_guard lock(session_mutex_);
    if (!output_path_.empty()) {
      std::error_code ec;
      std::filesystem::remove(output_path_, ec); // the earlier output is replaced, not appended to
    }
    output_path_ = std::string(path);
    save_to_file_ = true;
  }
  Speak(text);
  return 1;
}

void SpeakDriver::Start(std::string_view text) {
  EndSession(true);
  JoinFinishedWorkers();
  auto s = std::make_shared<Session>();
  s->text = std::string(text);
  std::lock_guard lock(session_mutex_);
  s->to_file = save_to_file_ && !output_path_.empty();
  s->path = output_path_;
  save_to_file_ = false;
  session_ = s;
  producer_ = std::thread([this, s] { Produce(s); });
  consumer_ = std::thread([this, s] { Consume(s); });
}

int SpeakDriver::Stop() {
  auto s = Current();
  if (s) {
    s->stop = true;
    s->queue.Wake();
  }
  if (device_.IsPlaying()) device_.Stop();
  paused_ = false;
  if (!s) return 1;
  // The producer never calls the client, so waiting for it cannot deadlock.
  while (!s->WaitFor(s->producer_done, std::chrono::milliseconds(100))) {
  }
  s->queue.Clear();
  if (std::this_thread::get_id() != consumer_id_.load()) {
    const auto until = std::chrono::steady_clock::now() + kConsumerStopBound;
    while (!s->WaitFor(s->consumer_done, std::chrono::milliseconds(5)) &&
           std::chrono::steady_clock::now() < until)
      device_.Stop(); // a sentence that began after the first reset
  }
  return 1;
}

void SpeakDriver::EndSession(bool wait_for_consumer) {
  auto s = Current();
  if (!s || (s->producer_done.load() && s->consumer_done.load())) return;
  s->stop = true;
  s->queue.Wake();
  device_.Stop();
  paused_ = false;
  while (!s->WaitFor(s->producer_done, std::chrono::milliseconds(100))) {
  }
  s->queue.Clear();
  if (wait_for_consumer && std::this_thread::get_id() != consumer_id_.load())
    while (!s->WaitFor(s->consumer_done, std::chrono::milliseconds(5)))
      device_.Stop();
}

void SpeakDriver::JoinFinishedWorkers() {
  std::thread producer, consumer;
  {
    std::lock_guard lock(session_mutex_);
    producer = std::move(producer_);
    consumer = std::move(consumer_);
  }
  if (producer.joinable()) producer.join();
  if (consumer.joinable()) {
    if (consumer.get_id() == std::this_thread::get_id())
      consumer.detach(); // a notification function started a new speech: it ends on its own
    else
      consumer.join();
  }
}

int SpeakDriver::Pause() {
  if (!Current() || !device_.IsPlaying()) return 0;
  paused_ = true;
  device_.Pause();
  return 1;
}

int SpeakDriver::Resume() {
  if (!device_.IsPlaying()) return 0;
  device_.Resume();
  paused_ = false;
  return 1;
}

int SpeakDriver::PauseResume() {
  if (!device_.IsPlaying()) return 0;
  return paused_.load() ? Resume() : Pause();
}

int SpeakDriver::IsPlaying() {
  return device_.IsPlaying() ? 1 : 0;
}

bool SpeakDriver::Busy() {
  auto s = Current();
  return s && !(s->producer_done.load() && s->consumer_done.load());
}

bool SpeakDriver::WaitUntilIdle(std::chrono::milliseconds timeout) {
  auto s = Current();
  if (!s) return true;
  return s->WaitFor(s->consumer_done, timeout) && s->WaitFor(s->producer_done, timeout);
}

// ---- Producer -------------------------------------------------------------------------------

bool SpeakDriver::QueueWord(Session& s, const SpokenWord& word, std::vector<std::int16_t>& samples,
                            std::size_t start, std::size_t end) {
  const auto n = static_cast<std::uint32_t>(samples.size() * sizeof(std::int16_t));
  const bool closes = word.lookahead.empty() && IsPhrase(word.segmentText, word.nextSegmentText);
  const WordGap gap = ComputeWordGap(
      {n, slowness_.load(), IsPhrase(word.word, word.lookahead), closes, word.fromDefinition});
  slowness_ = gap.next_slowness;

  QueueRecord record;
  record.samples.resize(n + gap.silence_bytes); // the silence is zero-filled
  std::memcpy(record.samples.data(), samples.data(), n);
  record.byte_count = static_cast<std::uint32_t>(record.samples.size());
  record.text_start = static_cast<std::uint32_t>(start);
  record.text_end = static_cast<std::uint32_t>(end);
  return s.queue.Push(record, s.stop);
}

// Renders one word and queues it; a word no rule can say is tried through the auto-correct
// table (its replacement walked as text of its own, on the same span), else skipped. False
// once the speech is stopped.
bool SpeakDriver::RenderAndQueue(Session& s, const SpokenWord& word,
                                 std::vector<std::int16_t>& scratch, int depth) {
  if (renderer_.Render(word.word, scratch)) {
    if (scratch.size() * sizeof(std::int16_t) > WordRenderer::kMaxWordBytes)
      scratch.resize(WordRenderer::kMaxWordBytes / sizeof(std::int16_t));
    return QueueWord(s, word, scratch, word.start, word.end);
  }
  if (word.word.size() <= 1 || depth >= kMaxReplacementDepth || !stores_.autoCorrect)
    return !s.stop.load();
  const auto replacement = stores_.autoCorrect->FindReplacement(word.word);
  if (!replacement || *replacement == word.word) return !s.stop.load();
  FrontEndStores inner = stores_;
  inner.autoCorrect = nullptr;
  SentenceParser parser(*replacement, inner);
  Sentence part;
  while (!s.stop.load() && parser.Next(part)) {
    for (SpokenWord w : part.words) {
      w.start = word.start;
      w.end = word.end;
      w.fromDefinition = w.fromDefinition || word.fromDefinition;
      if (!RenderAndQueue(s, w, scratch, depth + 1)) return false;
    }
  }
  return !s.stop.load();
}

// Decodes the words a little ahead of the producer on a thread of its own, so that decoding
// runs on two cores while the producer queues what is ready. It only warms the renderer's cache
// of decoded units; the producer renders every word itself and never waits for it.
void SpeakDriver::DecodeAhead(Session& s, std::size_t lane, std::size_t lanes) {
  SentenceParser parser(s.text, stores_);
  Sentence sentence;
  std::vector<std::int16_t> scratch;
  std::size_t index = 0;
  while (!s.ahead_done.load() && parser.Next(sentence)) {
    for (const SpokenWord& word : sentence.words) {
      {
        std::unique_lock lock(s.mutex);
        s.changed.wait(lock, [&] {
          return s.ahead_done.load() || index < s.produced.load() + kDecodeAheadWords;
        });
      }
      if (s.ahead_done.load()) return;
      const std::size_t position = index++;
      if (position % lanes != lane) continue;
      // A word the producer has already reached is not worth decoding here.
      if (position >= s.produced.load()) renderer_.Render(word.word, scratch);
    }
  }
}

void SpeakDriver::Produce(const std::shared_ptr<Session>& session) {
  Session& s = *session;
  // One look-ahead decoder per spare core (at least one, at most three), each taking every
  // lanes-th word.
  std::vector<std::thread> ahead;
  if (decode_ahead_ && !s.text.empty()) {
    const std::size_t lanes =
        std::clamp<std::size_t>(std::thread::hardware_concurrency(), 2, 4) - 1;
    for (std::size_t lane = 0; lane < lanes; ++lane)
      ahead.emplace_back([this, &s, lane, lanes] { DecodeAhead(s, lane, lanes); });
  }
  try {
    if (!s.text.empty()) {
      SentenceParser parser(s.text, stores_);
      Sentence sentence;
      std::vector<std::int16_t> scratch;
      bool last_was_end = false;
      while (!s.stop.load() && parser.Next(sentence)) {
        if (!sentence.words.empty()) last_was_end = false;
        for (const SpokenWord& word : sentence.words) {
          if (s.stop.load()) break;
          if (AllocationFailureRequested("token-buffer")) throw std::bad_alloc();
          scratch.reserve(WordRenderer::kMaxWordBytes / sizeof(std::int16_t));
          if (!RenderAndQueue(s, word, scratch, 0)) break;
          s.produced.fetch_add(1);
          s.changed.notify_all();
        }
        if (s.stop.load()) break;
        // A run of marks ("...", "?!") pauses once: a sentence without words right after
        // another sentence end adds nothing.
        if (sentence.words.empty() && last_was_end) continue;
        last_was_end = true;
        // The sentence end carries its final mark in a one-byte buffer and, as its byte count,
        // the pause: ten bytes per unit of the mark's pause weight.
        QueueRecord end;
        end.samples.assign(1, static_cast<std::uint8_t>(sentence.terminator));
        end.byte_count = static_cast<std::uint32_t>(10 * std::max(sentence.pauseWeight, 0));
        // The record spans the sentence up to its mark, without the blanks after it.
        std::size_t stop_at = std::min(sentence.end, s.text.size());
        while (stop_at > sentence.start &&
               (s.text[stop_at - 1] == ' ' || s.text[stop_at - 1] == '\t'))
          --stop_at;
        end.text_start = static_cast<std::uint32_t>(sentence.start);
        end.text_end = static_cast<std::uint32_t>(stop_at);
        end.sentence_end = true;
        if (!s.queue.Push(end, s.stop)) break;
      }
    }
  } catch (const std::bad_alloc&) {
    messages_.report(kTokenBufferText, "", MessageIcon::Error);
    s.stop = true;
  }
  s.Mark(s.ahead_done);
  for (auto& t : ahead)
    t.join();
  s.Mark(s.producer_done);
}

// ---- Consumer -------------------------------------------------------------------------------

void SpeakDriver::Consume(const std::shared_ptr<Session>& session) {
  Session& s = *session;
  consumer_id_ = std::this_thread::get_id();
  if (device_.HasNotify())
    device_.Notify({static_cast<std::uint32_t>(EventKind::StartInputStream), 0, 0, 0, {}});

  SentenceAssembler assembler;
  auto output = [&](const QueueRecord* end) {
    if (AllocationFailureRequested("sentence-buffer")) throw std::bad_alloc();
    PlayableSentence sentence = assembler.Finish(end, device_.Layout());
    if (s.stop.load()) return;
    if (s.to_file)
      device_.WriteSentence(sentence, s.path);
    else
      device_.PlaySentence(sentence);
  };
  try {
    while (!s.stop.load()) {
      std::optional<QueueRecord> record = s.queue.Pop(s.stop, s.producer_done);
      if (!record) break;
      if (!record->sentence_end) {
        assembler.AppendWord(*record);
        record.reset();
        if (assembler.Bytes() >= kMaxSentenceBytes) output(nullptr);
        continue;
      }
      output(&*record);
    }
  } catch (const std::bad_alloc&) {
    messages_.report(kOutOfMemoryText, "", MessageIcon::Error);
    s.stop = true;
    s.queue.Clear();
    assembler.Clear();
  }
  consumer_id_ = std::thread::id{};
  s.Mark(s.consumer_done);
}

} // namespace vntts
