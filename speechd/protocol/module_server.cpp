// SPDX-License-Identifier: MIT
#include "module_server.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vntts::speechd {
namespace {

// A reply whose text may run over several lines: every line but the last carries "code-".
void MultiLineReply(ModuleOutput& output, std::string_view code, std::string_view text,
                    std::string_view last) {
  std::string message;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    message += std::string(code) + "-" + std::string(text.substr(start, end - start)) + "\n";
    start = end + 1;
  }
  message += std::string(code) + " " + std::string(last);
  output.Line(message);
}

constexpr std::size_t kPieceSamples = 1102;     // 50 ms at 22050 Hz
constexpr std::chrono::milliseconds kLead{200}; // how far audio may run ahead

// Feeds one request's speech to the server: BEGIN before the first sound, the gain applied,
// the audio paced, and the answer to "go on?" taken from the STOP and PAUSE flags.
class SpeechStream : public SynthesisSink {
public:
  SpeechStream(ModuleOutput& output, std::uint32_t rate, double gain, SpeechControl& control)
      : output_(output), rate_(rate), gain_(gain), control_(control) {}

  bool Audio(std::span<const std::int16_t> samples) override {
    for (std::size_t at = 0; at < samples.size(); at += kPieceSamples) {
      const auto piece = samples.subspan(at, std::min(kPieceSamples, samples.size() - at));
      if (begun_) {
        const auto due = start_ +
                         std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                             std::chrono::duration<double>(double(sent_) / rate_)) -
                         kLead;
        if (!control_.WaitUntil(due)) return false;
      } else if (control_.stop) {
        return false;
      }
      Begin();
      Write(piece);
      sent_ += piece.size();
    }
    return !control_.stop;
  }

  bool Mark(std::string_view name) override {
    if (control_.stop) return false;
    Begin();
    output_.Mark(name);
    // A pause ends after a mark of speech-dispatcher's own, from which it resumes later.
    if (control_.pause && name.starts_with("__spd_")) paused_ = true;
    return !control_.stop && !paused_;
  }

  void Begin() {
    if (begun_) return;
    begun_ = true;
    start_ = std::chrono::steady_clock::now();
    output_.Line("701 BEGIN");
  }

  bool paused() const { return paused_; }

private:
  void Write(std::span<const std::int16_t> samples) {
    if (gain_ == 1.0) {
      output_.Audio(samples, rate_);
      return;
    }
    std::vector<std::int16_t> scaled(samples.size());
    std::transform(samples.begin(), samples.end(), scaled.begin(), [this](std::int16_t s) {
      return static_cast<std::int16_t>(std::clamp(std::lround(s * gain_), -32768L, 32767L));
    });
    output_.Audio(scaled, rate_);
  }

  ModuleOutput& output_;
  std::uint32_t rate_;
  double gain_;
  SpeechControl& control_;
  bool begun_ = false;
  bool paused_ = false;
  std::chrono::steady_clock::time_point start_;
  std::uint64_t sent_ = 0;
};

} // namespace

void SpeechControl::Reset() {
  stop = false;
  pause = false;
}

void SpeechControl::Stop() {
  {
    std::lock_guard lock(mutex_);
    stop = true;
  }
  changed_.notify_all();
}

bool SpeechControl::WaitUntil(std::chrono::steady_clock::time_point when) {
  std::unique_lock lock(mutex_);
  changed_.wait_until(lock, when, [this] { return stop.load(); });
  return !stop;
}

ModuleServer::ModuleServer(Synthesizer& synthesizer, ModuleOutput& output,
                           std::function<void(int, std::string_view)> log)
    : synthesizer_(synthesizer), output_(output), log_(std::move(log)) {}

ModuleServer::~ModuleServer() {
  Shutdown();
}

void ModuleServer::Log(int level, std::string_view text) const {
  if (log_ && level <= std::max(log_level_, 1)) log_(level, text);
}

bool ModuleServer::OnLine(std::string_view line) {
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  if (block_ != Block::kNone) {
    OnBlockLine(line);
    return true;
  }
  if (line == "QUIT") {
    Shutdown();
    output_.Line("210 OK QUIT");
    return false;
  }
  OnCommand(line);
  return true;
}

void ModuleServer::OnCommand(std::string_view line) {
  const auto open_block = [&](Block block, std::string_view reply) {
    hold_ = output_.Hold();
    output_.Line(reply);
    block_ = block;
    block_lines_.clear();
  };
  if (line == "INIT") {
    std::string status;
    initialised_ = synthesizer_.Init(status);
    if (initialised_)
      MultiLineReply(output_, "299", status, "OK LOADED SUCCESSFULLY");
    else
      MultiLineReply(output_, "399", status, "ERR CANT INIT MODULE");
  } else if (line == "AUDIO") {
    open_block(Block::kAudio, "207 OK RECEIVING AUDIO SETTINGS");
  } else if (line == "LOGLEVEL") {
    open_block(Block::kLogLevel, "207 OK RECEIVING LOGLEVEL SETTINGS");
  } else if (line == "SET") {
    open_block(Block::kSet, "203 OK RECEIVING SETTINGS");
  } else if (line == "LIST VOICES") {
    std::string message;
    for (const VoiceInfo& v : synthesizer_.Voices())
      message += "200-" + v.name + "\t" + v.language + "\t" + v.variant + "\n";
    output_.Line(message + "200 OK VOICE LIST SENT");
  } else if (line == "SPEAK" || line == "CHAR" || line == "KEY" || line == "SOUND_ICON") {
    // The speech thread clears `speaking_` while it still holds the output after its last
    // event, so holding the output here sees the state that event announced.
    auto hold = output_.Hold();
    if (speaking_ || !initialised_) {
      output_.Line("301 ERROR CANT SPEAK");
      return;
    }
    const Block block = line == "SPEAK"  ? Block::kSpeak
                        : line == "CHAR" ? Block::kChar
                        : line == "KEY"  ? Block::kKey
                                         : Block::kSoundIcon;
    open_block(block, "202 OK SEND DATA");
  } else if (line == "STOP") {
    control_.Stop(); // asynchronous: no reply
  } else if (line == "PAUSE") {
    control_.pause = true;
  } else if (!line.empty()) {
    Log(1, "unknown command: " + std::string(line));
    output_.Line("300 ERR UNKNOWN COMMAND");
  }
}

void ModuleServer::OnBlockLine(std::string_view line) {
  if (line == ".") {
    EndBlock();
    return;
  }
  // A line of only a dot inside the data is sent with one more dot.
  block_lines_.emplace_back(line == ".." ? "." : line);
}

void ModuleServer::EndBlock() {
  const Block block = std::exchange(block_, Block::kNone);
  std::string data;
  for (const std::string& l : block_lines_)
    data += (&l == &block_lines_.front() ? "" : "\n") + l;
  switch (block) {
  case Block::kSet:
    for (const std::string& l : block_lines_)
      settings_.Apply(l);
    output_.Line("203 OK SETTINGS RECEIVED");
    break;
  case Block::kAudio:
    for (const std::string& l : block_lines_)
      if (l.starts_with("audio_output_method=") && l != "audio_output_method=server")
        Log(1, "asked for " + l + "; the audio goes to the server all the same");
    output_.Line("203 OK AUDIO INITIALIZED");
    break;
  case Block::kLogLevel:
    for (const std::string& l : block_lines_)
      if (l.starts_with("log_level=")) log_level_ = std::atoi(l.c_str() + 10);
    output_.Line("203 OK LOGLEVEL SET");
    break;
  case Block::kSpeak:
  case Block::kChar:
  case Block::kKey: {
    const MessageKind kind = block == Block::kSpeak  ? MessageKind::kText
                             : block == Block::kChar ? MessageKind::kChar
                                                     : MessageKind::kKey;
    output_.Line("200 OK SPEAKING");
    StartSpeech(RequestFor(kind, data, settings_));
    break;
  }
  case Block::kSoundIcon: {
    output_.Line("200 OK SPEAKING");
    SpeechRequest icon;
    icon.icon_before = data;
    StartSpeech(std::move(icon));
    break;
  }
  case Block::kNone:
    break;
  }
  block_lines_.clear();
  if (hold_.owns_lock()) hold_.unlock();
}

void ModuleServer::StartSpeech(SpeechRequest request) {
  JoinSpeech();
  control_.Reset();
  speaking_ = true;
  speech_ =
      std::thread([this, request = std::move(request)]() mutable { SpeakOn(std::move(request)); });
}

void ModuleServer::SpeakOn(SpeechRequest request) {
  SpeechStream stream(output_, synthesizer_.SampleRate(), request.gain, control_);
  if (!request.icon_before.empty()) {
    stream.Begin();
    output_.Lines({"706-" + request.icon_before, "706 ICON"});
  }
  if (!request.text.empty() && !control_.stop) synthesizer_.Speak(request, stream);
  auto hold = output_.Hold();
  stream.Begin();
  output_.Line(stream.paused() ? "704 PAUSE" : control_.stop ? "703 STOP" : "702 END");
  speaking_ = false;
}

void ModuleServer::JoinSpeech() {
  if (speech_.joinable()) speech_.join();
}

void ModuleServer::Shutdown() {
  control_.Stop();
  if (hold_.owns_lock()) hold_.unlock();
  JoinSpeech();
}

} // namespace vntts::speechd
