// SPDX-License-Identifier: MIT
#pragma once
// The module's side of speech-dispatcher's output-module protocol: commands arrive line by
// line on one thread (OnLine); speech runs on a thread of its own and reports BEGIN, index
// marks, audio and END, STOP or PAUSE as it goes. STOP and PAUSE take effect at the next
// piece of audio or mark the voice hands over.
//
// Audio goes out in pieces of 50 ms, at most 200 ms ahead of the time it is due since BEGIN.
// speech-dispatcher plays each piece as it reads it, so audio sent further ahead would wait in
// the pipe, a blocked write would hold the STOP event back, and the server keeps playing until
// that event comes.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "module_output.h"
#include "module_settings.h"
#include "synthesizer.h"

namespace vntts::speechd {

// The STOP and PAUSE flags of the message being spoken, and a wait that STOP cuts short.
class SpeechControl {
public:
  std::atomic<bool> stop{false};
  std::atomic<bool> pause{false};

  void Reset();
  void Stop();
  // Waits until `when`; false (at once) when the speech is stopped.
  bool WaitUntil(std::chrono::steady_clock::time_point when);

private:
  std::mutex mutex_;
  std::condition_variable changed_;
};

class ModuleServer {
public:
  ModuleServer(Synthesizer& synthesizer, ModuleOutput& output,
               std::function<void(int, std::string_view)> log = {});
  ~ModuleServer();
  ModuleServer(const ModuleServer&) = delete;
  ModuleServer& operator=(const ModuleServer&) = delete;

  // Handles one line from the server (without its line end). False once QUIT was answered.
  bool OnLine(std::string_view line);

  // Stops any speech and waits for its thread (the server went away).
  void Shutdown();

  const ModuleSettings& settings() const { return settings_; }
  int log_level() const { return log_level_; }

private:
  enum class Block { kNone, kSet, kAudio, kLogLevel, kSpeak, kChar, kKey, kSoundIcon };

  void OnCommand(std::string_view line);
  void OnBlockLine(std::string_view line);
  void EndBlock();
  void StartSpeech(SpeechRequest request);
  void SpeakOn(SpeechRequest request);
  void JoinSpeech();
  void Log(int level, std::string_view text) const;

  Synthesizer& synthesizer_;
  ModuleOutput& output_;
  std::function<void(int, std::string_view)> log_;
  ModuleSettings settings_;
  int log_level_ = 0;
  bool initialised_ = false;

  Block block_ = Block::kNone;
  std::vector<std::string> block_lines_;
  std::unique_lock<std::recursive_mutex> hold_; // the output, while a block is read

  std::thread speech_;
  std::atomic<bool> speaking_{false};
  SpeechControl control_;
};

} // namespace vntts::speechd
