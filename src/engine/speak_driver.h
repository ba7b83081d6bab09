// SPDX-License-Identifier: MIT
#pragma once
// The speak driver: a speak call hands the text to the engine's worker threads and returns. The
// producer walks the text sentence by sentence, renders each word, pads it with the rate's
// silence and queues it; the consumer joins a sentence's words, closes it with its pause and
// hands it to the speech's sink (the device, a WAV file). The queue holds at most 30 records,
// so memory stays bounded however long the text is. Look-ahead decoders warm the cache of
// decoded units on the spare cores.
//
// The threads are made on the first speak call and live as long as the driver; each speech is
// a session of its own (text, queue, stop flag) that they pick up in turn, so a worker still
// winding down never touches the next speech. Every wait between threads is a condition
// variable, and the client's thread never waits for a worker that is in host code (see
// host_code.h). docs/engine.md draws the hand-over.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "core/messages.h"
#include "engine/host_code.h"
#include "engine/speech_device.h"
#include "engine/word_renderer.h"
#include "text/sentence_parser.h"
#include "text/word_stores.h"

namespace vntts {

class SpeakDriver {
public:
  using Sleeper = std::function<void(std::chrono::milliseconds)>;
  // Turns a host's text into internal text. A speak call hands the text over as it came and
  // the producer converts it, so that the call returns at once however long the text is.
  using TextConversion = std::string (*)(std::string_view);

  struct Parts {
    Messages& messages;
    const WordRenderer& renderer;
    SpeechDevice& device;
    FrontEndStores stores;                 // definitions, auto-correct, speakable check
    const PhraseLookup* phrases = nullptr; // two-word phrases for the word gap
    Sleeper sleep;                         // the wait after stopping a running speech
    bool decode_ahead = true;              // decode upcoming words on the spare cores
  };

  // How long Speak waits after stopping a speech that was playing.
  static constexpr std::chrono::milliseconds kRestartWait{1000};
  // A sentence without punctuation is played in pieces of this much sound (unit-format bytes),
  // so that one endless sentence cannot hold the whole speech in memory.
  static constexpr std::size_t kMaxSentenceBytes = 20 * 22050 * 2;
  // How far the look-ahead decoders may run ahead of the producer, in words; well inside the
  // cache of decoded units, so nothing they decode is forgotten before it is used.
  static constexpr std::size_t kDecodeAheadWords = 48;

  explicit SpeakDriver(Parts parts);
  ~SpeakDriver();
  SpeakDriver(const SpeakDriver&) = delete;
  SpeakDriver& operator=(const SpeakDriver&) = delete;

  // text_base is added to every text offset the speech's events carry (a window that speaks
  // its selection gets offsets into its whole text); a plain speak call uses 0.
  void Speak(std::string_view text, TextConversion convert = nullptr, std::uint32_t text_base = 0);
  void SpeakEx(std::string_view text, VNOutputHandle output, TextConversion convert = nullptr);
  int SpeakToFile(std::string_view text, std::string_view path, TextConversion convert = nullptr);
  // Speaks into a sink of the caller's (a host function that takes the samples); no resume,
  // no wait, no device check.
  void SpeakInto(std::string_view text, std::unique_ptr<SentenceSink> sink);
  int Stop();
  int Pause();
  int Resume();
  int PauseResume();
  int IsPlaying();

  // True while a speech's workers are running.
  bool Busy();
  // Waits until the current speech has ended (played, written or stopped); false on timeout.
  bool WaitUntilIdle(std::chrono::milliseconds timeout);

  // Ends any speech and refuses new ones; the engine is about to go. Waits for the producer
  // and the consumer except where they are in host code.
  void Shutdown();
  // No worker is inside a speech (the driver may be destroyed without waiting on host code).
  bool Idle();
  bool WaitUntilWorkersIdle(std::chrono::steady_clock::time_point deadline);
  // The calling thread is one of this driver's workers.
  bool OnOwnWorker() const;

  std::uint32_t slowness() const { return slowness_.load(); }
  void set_slowness(std::uint32_t s) { slowness_.store(s); }
  // The pace of speech (1: as recorded), applied to each sentence as it is closed.
  double speed() const { return speed_.load(); }
  void set_speed(double speed) { speed_.store(speed); }
  // Added to the text offsets of the events from now on; every speak call resets it to 0.
  void set_text_base(std::uint32_t base) { text_base_.store(base); }

private:
  struct Session;
  struct Worker;
  enum class Role { kProducer, kConsumer, kDecoder };

  void Start(std::string_view text, TextConversion convert, std::unique_ptr<SentenceSink> sink,
             bool to_file);
  void StartWithDeviceOrFile(std::string_view text, TextConversion convert);
  bool NextSentence(SentenceParser& parser, Sentence& sentence);
  void EndSession(const std::shared_ptr<Session>& s);
  void WaitForProducer(const std::shared_ptr<Session>& s);
  bool EnsureWorkers();
  std::unique_ptr<Worker> StartWorker(Role role, std::size_t lane, std::size_t lanes);
  void WorkerLoop(Worker& w);
  void RunJob(Worker& w, Session& s);
  void Produce(Session& s);
  void ProduceSentence(Session& s, const Sentence& sentence, std::vector<std::int16_t>& scratch);
  void DecodeAhead(Session& s, std::size_t lane, std::size_t lanes);
  void Consume(Session& s);
  bool RenderAndQueue(Session& s, const SpokenWord& word, std::vector<std::int16_t>& scratch,
                      int depth);
  bool QueueWord(Session& s, const SpokenWord& word, std::vector<std::int16_t>& samples);
  bool IsPhrase(std::string_view first, std::string_view second) const;
  std::shared_ptr<Session> Current();
  bool IdleLocked() const;

  Messages& messages_;
  const WordRenderer& renderer_;
  SpeechDevice& device_;
  FrontEndStores stores_;
  const PhraseLookup* phrases_;
  Sleeper sleep_;
  bool decode_ahead_;

  std::atomic<std::uint32_t> slowness_{0};
  std::atomic<double> speed_{1.0};
  std::atomic<std::uint32_t> text_base_{0};
  std::atomic<bool> paused_{false};

  // Guards the session hand-over, the workers' states and the file settings; changed_ wakes
  // every wait on them.
  std::mutex mutex_;
  std::condition_variable changed_;
  int away_watchers_ = 0; // waits that test a worker's away mark
  std::shared_ptr<Session> session_;
  std::unique_ptr<Worker> producer_;
  std::unique_ptr<Worker> consumer_;
  std::vector<std::unique_ptr<Worker>> decoders_;
  bool decoders_tried_ = false;
  bool quit_ = false;
  bool retired_ = false;
  std::string output_path_;
  bool save_to_file_ = false;
  std::string created_file_; // the last WAV file a speech created (deleted by the next one)
  std::mutex start_mutex_;   // one Start at a time, from the host or from a callback
};

} // namespace vntts
