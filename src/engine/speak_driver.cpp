// SPDX-License-Identifier: MIT
#include "engine/speak_driver.h"

#include <algorithm>
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
constexpr std::string_view kNoThreadText = "Cannot start a speech thread: ";
// An auto-correct replacement is itself walked; one level is enough and stops a pair that
// replaces a word by itself from looping.
constexpr int kMaxReplacementDepth = 1;
// The look-ahead decoders are woken once per this many produced words, not for every word.
constexpr std::size_t kDecoderWakeStep = 8;

enum class Phase { kWaiting, kRunning, kDone };
} // namespace

struct SpeakDriver::Session {
  // The text as the host gave it; the producer converts it into `text` and then says so, and
  // only then do the decoders read `text`.
  std::string raw;
  TextConversion convert = nullptr;
  std::string text;
  std::atomic<bool> text_ready{false};
  std::unique_ptr<SentenceSink> sink;
  bool to_file = false;
  WorkQueue queue;
  std::atomic<bool> stop{false};
  std::atomic<bool> producer_done{false}; // the queue's "nothing more comes"
  // Under the driver's mutex: whether the producer and the consumer have taken the session up,
  // are on it, or are through with it (or never will take it, once a newer one replaced it).
  Phase producer = Phase::kWaiting;
  Phase consumer = Phase::kWaiting;
  // The look-ahead decoders follow the producer through `produced`.
  std::atomic<std::size_t> produced{0};
  std::atomic<bool> ahead_done{false};
  std::mutex ahead_mutex;
  std::condition_variable ahead_changed;

  void WakeDecoders() {
    { std::lock_guard lock(ahead_mutex); }
    ahead_changed.notify_all();
  }
  void RequestStop() {
    stop = true;
    ahead_done = true;
    queue.Wake();
    WakeDecoders();
    if (sink) sink->Interrupt();
  }
};

struct SpeakDriver::Worker {
  Worker(SpeakDriver& driver, Role r, std::size_t l, std::size_t n)
      : role(r), lane(l), lanes(n),
        mark(&driver, driver.mutex_, driver.changed_, driver.away_watchers_) {}
  Role role;
  std::size_t lane;
  std::size_t lanes;
  WorkerMark mark;
  std::thread thread;
  std::shared_ptr<Session> last; // under the driver's mutex
  bool running = false;          // under the driver's mutex
};

SpeakDriver::SpeakDriver(Parts parts)
    : messages_(parts.messages), renderer_(parts.renderer), device_(parts.device),
      stores_(parts.stores), phrases_(parts.phrases), sleep_(std::move(parts.sleep)),
      decode_ahead_(parts.decode_ahead) {
  if (!sleep_) sleep_ = [](std::chrono::milliseconds ms) { std::this_thread::sleep_for(ms); };
}

SpeakDriver::~SpeakDriver() {
  Shutdown();
  {
    std::lock_guard lock(mutex_);
    quit_ = true;
  }
  changed_.notify_all();
  std::vector<Worker*> all{producer_.get(), consumer_.get()};
  for (auto& d : decoders_)
    all.push_back(d.get());
  for (Worker* w : all) {
    if (!w || !w->thread.joinable()) continue;
    if (w->thread.get_id() == std::this_thread::get_id())
      w->thread.detach(); // destroyed from its own callback: it returns without touching us
    else
      w->thread.join();
  }
}

std::shared_ptr<SpeakDriver::Session> SpeakDriver::Current() {
  std::lock_guard lock(mutex_);
  return session_;
}

bool SpeakDriver::IsPhrase(std::string_view first, std::string_view second) const {
  if (!phrases_ || first.empty() || second.empty()) return false;
  return phrases_->IsPhrase(first, second);
}

bool SpeakDriver::OnOwnWorker() const {
  const WorkerMark* mark = CurrentWorkerMark();
  return mark && mark->owner() == this;
}

// ---- Client side ----------------------------------------------------------------------------

void SpeakDriver::Speak(std::string_view text, TextConversion convert, std::uint32_t text_base) {
  if (paused_.exchange(false) && device_.Resume()) {
    // A speak call while paused is a resume; the new text is not spoken.
    std::lock_guard lock(mutex_);
    save_to_file_ = false;
    return;
  }
  device_.OfferOutput(0);
  text_base_ = text_base;
  if (device_.IsPlaying()) {
    Stop();
    sleep_(kRestartWait);
  }
  device_.RefreshCapabilities();
  StartWithDeviceOrFile(text, convert);
}

void SpeakDriver::SpeakEx(std::string_view text, VNOutputHandle output, TextConversion convert) {
  device_.OfferOutput(output);
  text_base_ = 0;
  if (device_.IsPlaying()) Stop();
  StartWithDeviceOrFile(text, convert);
}

void SpeakDriver::SpeakInto(std::string_view text, std::unique_ptr<SentenceSink> sink) {
  text_base_ = 0;
  Start(text, nullptr, std::move(sink), false);
}

int SpeakDriver::SpeakToFile(std::string_view text, std::string_view path, TextConversion convert) {
  {
    std::lock_guard lock(mutex_);
    output_path_ = std::string(path);
    save_to_file_ = true;
  }
  Speak(text, convert);
  return 1;
}

// Starts the next speech into the file of speak-to-file (for this one speech), else into the
// device.
void SpeakDriver::StartWithDeviceOrFile(std::string_view text, TextConversion convert) {
  std::string path;
  {
    std::lock_guard lock(mutex_);
    if (save_to_file_) path = output_path_;
    save_to_file_ = false;
  }
  if (path.empty())
    Start(text, convert, device_.MakePlayback(), false);
  else
    Start(text, convert, device_.MakeFileWriter(path), true);
}

void SpeakDriver::Start(std::string_view text, TextConversion convert,
                        std::unique_ptr<SentenceSink> sink, bool to_file) {
  std::lock_guard start(start_mutex_);
  {
    std::lock_guard lock(mutex_);
    if (retired_) return;
  }
  if (auto old = Current()) EndSession(old);
  if (!EnsureWorkers()) return;
  auto s = std::make_shared<Session>();
  s->raw = std::string(text);
  s->convert = convert;
  s->to_file = to_file;
  s->sink = std::move(sink);
  {
    std::lock_guard lock(mutex_);
    if (retired_) return;
    if (session_) {
      // Replaced before a worker took it up: it never will.
      if (session_->producer == Phase::kWaiting) {
        session_->producer = Phase::kDone;
        session_->producer_done = true;
      }
      if (session_->consumer == Phase::kWaiting) {
        session_->consumer = Phase::kDone;
        if (session_->sink) session_->sink->Finish();
      }
    }
    session_ = s;
  }
  changed_.notify_all();
}

int SpeakDriver::Stop() {
  auto s = Current();
  if (s) {
    EndSession(s);
  } else {
    if (device_.IsPlaying()) device_.Stop();
    paused_ = false;
  }
  return 1;
}

// Stops the session and returns once its producer has noticed (or cannot, being in host code
// or being the caller); the consumer is never waited for here.
void SpeakDriver::EndSession(const std::shared_ptr<Session>& s) {
  s->RequestStop();
  device_.Stop(); // the sentence playing now, or one that is still opening its stream
  paused_ = false;
  WaitForProducer(s);
  s->queue.Clear();
}

void SpeakDriver::WaitForProducer(const std::shared_ptr<Session>& s) {
  std::unique_lock lock(mutex_);
  if (producer_ && CurrentWorkerMark() == &producer_->mark) return;
  ++away_watchers_;
  changed_.wait(
      lock, [&] { return s->producer != Phase::kRunning || !producer_ || producer_->mark.Away(); });
  --away_watchers_;
}

void SpeakDriver::Shutdown() {
  {
    std::lock_guard lock(mutex_);
    retired_ = true;
  }
  std::lock_guard start(start_mutex_);
  auto s = Current();
  if (!s) return;
  EndSession(s);
  std::unique_lock lock(mutex_);
  if (consumer_ && CurrentWorkerMark() == &consumer_->mark) return;
  ++away_watchers_;
  changed_.wait(
      lock, [&] { return s->consumer != Phase::kRunning || !consumer_ || consumer_->mark.Away(); });
  --away_watchers_;
}

bool SpeakDriver::Idle() {
  std::lock_guard lock(mutex_);
  return IdleLocked();
}

bool SpeakDriver::IdleLocked() const {
  if (producer_ && producer_->running) return false;
  if (consumer_ && consumer_->running) return false;
  return std::none_of(decoders_.begin(), decoders_.end(), [](const auto& d) { return d->running; });
}

bool SpeakDriver::WaitUntilWorkersIdle(std::chrono::steady_clock::time_point deadline) {
  std::unique_lock lock(mutex_);
  return changed_.wait_until(lock, deadline, [&] { return IdleLocked(); });
}

int SpeakDriver::Pause() {
  if (!Current() || !device_.IsPlaying() || !device_.Pause()) return 0;
  paused_ = true;
  return 1;
}

int SpeakDriver::Resume() {
  if (!device_.IsPlaying() || !device_.Resume()) return 0;
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
  std::lock_guard lock(mutex_);
  return session_ && (session_->producer != Phase::kDone || session_->consumer != Phase::kDone);
}

bool SpeakDriver::WaitUntilIdle(std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  // The newest speech counts: one that a callback chained on is waited for too.
  return changed_.wait_for(lock, timeout, [&] {
    return !session_ || (session_->producer == Phase::kDone && session_->consumer == Phase::kDone);
  });
}

// ---- Workers --------------------------------------------------------------------------------

std::unique_ptr<SpeakDriver::Worker> SpeakDriver::StartWorker(Role role, std::size_t lane,
                                                              std::size_t lanes) {
  static constexpr const char* kNames[] = {"producer-thread", "consumer-thread", "decoder-thread"};
  auto w = std::make_unique<Worker>(*this, role, lane, lanes);
  try {
    if (AllocationFailureRequested(kNames[static_cast<int>(role)]))
      throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    Worker* raw = w.get();
    w->thread = std::thread([this, raw] { WorkerLoop(*raw); });
  } catch (const std::system_error& e) {
    messages_.Report(std::string(kNoThreadText) + e.what(), "", MessageIcon::kError);
    return nullptr;
  }
  return w;
}

// Makes the producer and the consumer on the first speech (and again after a failure), the
// look-ahead decoders once. Without a producer and a consumer nothing is started, so nothing
// ever waits for a thread that does not exist; without decoders speech is only slower.
bool SpeakDriver::EnsureWorkers() {
  if (!producer_)
    if (auto w = StartWorker(Role::kProducer, 0, 1)) {
      std::lock_guard lock(mutex_);
      producer_ = std::move(w);
    }
  if (!consumer_)
    if (auto w = StartWorker(Role::kConsumer, 0, 1)) {
      std::lock_guard lock(mutex_);
      consumer_ = std::move(w);
    }
  if (!decoders_tried_ && decode_ahead_) {
    decoders_tried_ = true;
    const std::size_t lanes =
        std::clamp<std::size_t>(std::thread::hardware_concurrency(), 2, 4) - 1;
    for (std::size_t lane = 0; lane < lanes; ++lane) {
      auto w = StartWorker(Role::kDecoder, lane, lanes);
      if (!w) break;
      std::lock_guard lock(mutex_);
      decoders_.push_back(std::move(w));
    }
  }
  return producer_ && consumer_;
}

void SpeakDriver::WorkerLoop(Worker& w) {
  WorkerThreadBinding binding(w.mark);
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [&] { return quit_ || (session_ && session_ != w.last); });
    if (quit_) return;
    std::shared_ptr<Session> s = session_;
    w.last = s;
    Phase* phase = w.role == Role::kProducer   ? &s->producer
                   : w.role == Role::kConsumer ? &s->consumer
                                               : nullptr;
    if (phase && *phase != Phase::kWaiting) continue;
    if (phase) *phase = Phase::kRunning;
    w.running = true;
    lock.unlock();
    RunJob(w, *s);
    if (w.role == Role::kProducer) {
      s->ahead_done = true;
      s->WakeDecoders();
    }
    lock.lock();
    w.running = false;
    if (phase) *phase = Phase::kDone;
    if (w.role == Role::kProducer) s->producer_done = true;
    lock.unlock();
    if (w.role == Role::kProducer) s->queue.Wake();
    changed_.notify_all();
    lock.lock();
  }
}

// No exception leaves a worker: it would end the host's process.
void SpeakDriver::RunJob(Worker& w, Session& s) {
  try {
    switch (w.role) {
    case Role::kProducer:
      Produce(s);
      break;
    case Role::kConsumer:
      Consume(s);
      break;
    case Role::kDecoder:
      DecodeAhead(s, w.lane, w.lanes);
      break;
    }
  } catch (const std::bad_alloc&) {
    if (w.role != Role::kDecoder)
      messages_.Report(w.role == Role::kProducer ? kTokenBufferText : kOutOfMemoryText, "",
                       MessageIcon::kError);
    s.RequestStop();
  } catch (const std::exception& e) {
    if (w.role != Role::kDecoder)
      messages_.Report(std::string("Internal error: ") + e.what(), "vntts", MessageIcon::kError);
    s.RequestStop();
  }
  if (w.role == Role::kConsumer && s.sink) s.sink->Finish();
}

// ---- Producer -------------------------------------------------------------------------------

bool SpeakDriver::QueueWord(Session& s, const SpokenWord& word,
                            std::vector<std::int16_t>& samples) {
  const auto n = static_cast<std::uint32_t>(samples.size() * sizeof(std::int16_t));
  // The text ends on a known pair of pieces.
  const bool closes =
      word.lookahead.empty() && IsPhrase(word.previous_segment_text, word.segment_text);
  const WordGap gap = ComputeWordGap(
      {n, slowness_.load(), IsPhrase(word.word, word.lookahead), closes, word.from_definition});
  slowness_ = gap.next_slowness;

  QueueRecord record;
  const auto* first = reinterpret_cast<const std::uint8_t*>(samples.data());
  record.samples.reserve(n + gap.silence_bytes);
  record.samples.assign(first, first + n);
  record.samples.resize(n + gap.silence_bytes); // the silence is zero-filled
  record.byte_count = static_cast<std::uint32_t>(record.samples.size());
  const std::uint32_t base = text_base_.load();
  record.text_start = base + static_cast<std::uint32_t>(word.start);
  record.text_end = base + static_cast<std::uint32_t>(word.end);
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
    return QueueWord(s, word, scratch);
  }
  if (word.word.size() <= 1 || depth >= kMaxReplacementDepth || !stores_.auto_correct)
    return !s.stop.load();
  const auto replacement = stores_.auto_correct->FindReplacement(word.word);
  if (!replacement || *replacement == word.word) return !s.stop.load();
  FrontEndStores inner = stores_;
  inner.auto_correct = nullptr;
  SentenceParser parser(*replacement, inner);
  Sentence part;
  while (!s.stop.load() && parser.Next(part)) {
    for (SpokenWord w : part.words) {
      w.start = word.start;
      w.end = word.end;
      w.from_definition = w.from_definition || word.from_definition;
      if (!RenderAndQueue(s, w, scratch, depth + 1)) return false;
    }
  }
  return !s.stop.load();
}

// Decodes the words a little ahead of the producer, so that decoding runs on several cores
// while the producer queues what is ready. It only warms the renderer's cache of decoded units;
// the producer renders every word itself and never waits for it.
void SpeakDriver::DecodeAhead(Session& s, std::size_t lane, std::size_t lanes) {
  {
    std::unique_lock lock(s.ahead_mutex);
    s.ahead_changed.wait(lock, [&] { return s.ahead_done.load() || s.text_ready.load(); });
  }
  if (s.ahead_done.load()) return;
  SentenceParser parser(s.text, stores_, PhraseTexts::kSkip);
  Sentence sentence;
  std::vector<std::int16_t> scratch;
  std::size_t index = 0;
  while (!s.ahead_done.load() && parser.Next(sentence)) {
    for (const SpokenWord& word : sentence.words) {
      {
        std::unique_lock lock(s.ahead_mutex);
        s.ahead_changed.wait(lock, [&] {
          return s.ahead_done.load() || index < s.produced.load() + kDecodeAheadWords;
        });
      }
      if (s.ahead_done.load()) return;
      const std::size_t position = index++;
      if (position % lanes != lane) continue;
      // A word the producer has already reached is not worth decoding here.
      if (position >= s.produced.load()) renderer_.Prepare(word.word, scratch);
    }
  }
}

void SpeakDriver::ProduceSentence(Session& s, const Sentence& sentence,
                                  std::vector<std::int16_t>& scratch) {
  for (const SpokenWord& word : sentence.words) {
    if (s.stop.load()) return;
    if (AllocationFailureRequested("token-buffer")) throw std::bad_alloc();
    scratch.reserve(WordRenderer::kMaxWordBytes / sizeof(std::int16_t));
    if (!RenderAndQueue(s, word, scratch, 0)) return;
    if (s.produced.fetch_add(1) % kDecoderWakeStep == 0) s.WakeDecoders();
  }
}

// The parser's walk to the next sentence only reads the text; on a huge text it takes a while,
// and Stop need not wait for it: the producer looks at the stop flag before it renders anything.
bool SpeakDriver::NextSentence(SentenceParser& parser, Sentence& sentence) {
  QuietWorkScope quiet;
  return parser.Next(sentence);
}

void SpeakDriver::Produce(Session& s) {
  if (s.stop.load()) return;
  {
    QuietWorkScope quiet;
    s.text = s.convert ? s.convert(s.raw) : std::move(s.raw);
    s.raw = std::string();
  }
  {
    std::lock_guard lock(s.ahead_mutex);
    s.text_ready = true;
  }
  s.ahead_changed.notify_all();
  if (s.text.empty() || s.stop.load()) return;
  SentenceParser parser(s.text, stores_);
  Sentence sentence;
  std::vector<std::int16_t> scratch;
  bool last_was_end = false;
  while (!s.stop.load() && NextSentence(parser, sentence)) {
    if (!sentence.words.empty()) last_was_end = false;
    ProduceSentence(s, sentence, scratch);
    if (s.stop.load()) break;
    // A run of marks ("...", "?!") pauses once: a sentence without words right after another
    // sentence end adds nothing.
    if (sentence.words.empty() && last_was_end) continue;
    last_was_end = true;
    // The sentence end carries its final mark in a one-byte buffer and, as its byte count,
    // the pause: ten bytes per unit of the mark's pause weight.
    QueueRecord end;
    end.samples.assign(1, static_cast<std::uint8_t>(sentence.terminator));
    end.byte_count = static_cast<std::uint32_t>(10 * std::max(sentence.pause_weight, 0));
    // The record spans the sentence up to its mark, without the blanks after it.
    std::size_t stop_at = std::min(sentence.end, s.text.size());
    while (stop_at > sentence.start && (s.text[stop_at - 1] == ' ' || s.text[stop_at - 1] == '\t'))
      --stop_at;
    const std::uint32_t base = text_base_.load();
    end.text_start = base + static_cast<std::uint32_t>(sentence.start);
    end.text_end = base + static_cast<std::uint32_t>(stop_at);
    end.sentence_end = true;
    if (!s.queue.Push(end, s.stop)) break;
  }
}

// ---- Consumer -------------------------------------------------------------------------------

void SpeakDriver::Consume(Session& s) {
  if (s.stop.load()) return;
  if (s.to_file) {
    // The file the previous speak-to-file created is replaced; one it only appended to is not
    // this engine's to delete.
    std::string earlier;
    {
      std::lock_guard lock(mutex_);
      earlier = std::exchange(created_file_, {});
    }
    std::error_code ec;
    if (!earlier.empty()) std::filesystem::remove(earlier, ec);
  }
  if (device_.HasNotify())
    device_.Notify({static_cast<std::uint32_t>(EventKind::kStartInputStream), 0, 0, 0, {}});

  SentenceAssembler assembler;
  SpeechScaler shape; // rebuilt only when the speed or the pitch changed
  auto output = [&](const QueueRecord* end) {
    if (AllocationFailureRequested("sentence-buffer")) throw std::bad_alloc();
    const double speed = speed_.load() * s.sink->SpeedFactor();
    const double pitch = device_.Pitch() / 65536.0 * s.sink->PitchFactor();
    if (!shape.Matches(speed, pitch)) shape = SpeechScaler(speed, pitch);
    PlayableSentence sentence = assembler.Finish(end, s.sink->Layout(), shape);
    if (!s.stop.load() && !s.sink->Put(sentence, s.stop)) s.RequestStop();
  };
  std::vector<QueueRecord> batch;
  try {
    while (!s.stop.load() && s.queue.PopBatch(batch, s.stop, s.producer_done)) {
      for (QueueRecord& record : batch) {
        if (s.stop.load()) break;
        if (record.sentence_end) {
          output(&record);
          continue;
        }
        assembler.AppendWord(record);
        record = QueueRecord{};
        if (assembler.Bytes() >= kMaxSentenceBytes) output(nullptr);
      }
    }
  } catch (const std::bad_alloc&) {
    messages_.Report(kOutOfMemoryText, "", MessageIcon::kError);
    s.RequestStop();
    s.queue.Clear();
  }
  if (std::string made = s.sink->CreatedFile(); !made.empty()) {
    std::lock_guard lock(mutex_);
    created_file_ = std::move(made);
  }
}

} // namespace vntts
