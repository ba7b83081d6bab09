#pragma once
// The speak driver: a speak call hands the text to two worker threads and returns. The producer
// walks the text sentence by sentence, renders each word, pads it with the rate's silence and
// queues it; the consumer joins a sentence's words, closes it with its pause and plays it (or
// writes it to a WAV file). The queue holds at most 30 records, so memory stays bounded however
// long the text is.
//
// Each speech is a session of its own with its own queue and flags; a worker only ever touches
// its own session, so a worker that is still winding down can never take records of the next
// speech. Stop returns once the producer has noticed; from any thread but the consumer's (a
// notification function may call Stop) it also waits, bounded, for the consumer to leave.
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "core/messages.h"
#include "engine/speech_device.h"
#include "engine/word_renderer.h"
#include "text/sentence_parser.h"
#include "text/word_stores.h"

namespace vntts {

class SpeakDriver {
public:
  using Sleeper = std::function<void(std::chrono::milliseconds)>;

  struct Parts {
    Messages& messages;
    const WordRenderer& renderer;
    SpeechDevice& device;
    FrontEndStores stores;                 // definitions, auto-correct, speakable check
    const PhraseLookup* phrases = nullptr; // two-word phrases for the word gap
    Sleeper sleep;                         // the wait after stopping a running speech
    bool decode_ahead = true;              // decode upcoming words on a second thread
  };

  // How long Speak waits after stopping a speech that was playing.
  static constexpr std::chrono::milliseconds kRestartWait{1000};
  // A sentence without punctuation is played in pieces of this much sound (unit-format bytes),
  // so that one endless sentence cannot hold the whole speech in memory.
  static constexpr std::size_t kMaxSentenceBytes = 20 * 22050 * 2;
  // How far the look-ahead decoder may run ahead of the producer, in words; well inside the
  // cache of decoded units, so nothing it decodes is forgotten before it is used.
  static constexpr std::size_t kDecodeAheadWords = 48;

  explicit SpeakDriver(Parts parts);
  ~SpeakDriver();
  SpeakDriver(const SpeakDriver&) = delete;
  SpeakDriver& operator=(const SpeakDriver&) = delete;

  void Speak(std::string_view text);
  void SpeakEx(std::string_view text, VNOutputHandle output);
  int SpeakToFile(std::string_view text, std::string_view path);
  int Stop();
  int Pause();
  int Resume();
  int PauseResume();
  int IsPlaying();

  // True while a speech's workers are running.
  bool Busy();
  // Waits until the current speech has ended (played, written or stopped); false on timeout.
  bool WaitUntilIdle(std::chrono::milliseconds timeout);

  std::uint32_t slowness() const { return slowness_.load(); }
  void set_slowness(std::uint32_t s) { slowness_.store(s); }

private:
  struct Session;

  void Start(std::string_view text);
  void EndSession(bool wait_for_consumer);
  void Produce(const std::shared_ptr<Session>& s);
  void DecodeAhead(Session& s, std::size_t lane, std::size_t lanes);
  void Consume(const std::shared_ptr<Session>& s);
  bool RenderAndQueue(Session& s, const SpokenWord& word, std::vector<std::int16_t>& scratch,
                      int depth);
  bool QueueWord(Session& s, const SpokenWord& word, std::vector<std::int16_t>& samples,
                 std::size_t start, std::size_t end);
  bool IsPhrase(std::string_view first, std::string_view second) const;
  std::shared_ptr<Session> Current();
  void JoinFinishedWorkers();

  Messages& messages_;
  const WordRenderer& renderer_;
  SpeechDevice& device_;
  FrontEndStores stores_;
  const PhraseLookup* phrases_;
  Sleeper sleep_;
  bool decode_ahead_;

  std::atomic<std::uint32_t> slowness_{0};
  std::atomic<bool> paused_{false};

  std::mutex session_mutex_; // guards session_, the threads, the file settings
  std::shared_ptr<Session> session_;
  std::thread producer_;
  std::thread consumer_;
  std::atomic<std::thread::id> consumer_id_{};
  std::string output_path_;
  bool save_to_file_ = false;
};

} // namespace vntts
