// SPDX-License-Identifier: MIT
#pragma once
// The windows' view of one SpeechEngine: its speech with a listener, its settings and its
// recorder, as dialog_engine.h declares them.
#include <mutex>
#include <thread>

#include "engine/speech_engine.h"
#include "ui/dialog_engine.h"
#include "ui/host/engine_tools.h"

namespace vntts::ui {

class EngineDialogs final : public DialogEngine {
public:
  explicit EngineDialogs(SpeechEngine& engine);
  // Stops a speech the windows started and waits for its watcher.
  ~EngineDialogs() override;
  EngineDialogs(const EngineDialogs&) = delete;
  EngineDialogs& operator=(const EngineDialogs&) = delete;

  SpeakerEngine& speaker() override { return speaker_; }
  RecorderEngine& recorder() override { return recorder_; }
  EngineTools& tools() override { return tools_; }
  SpeechEngine& engine() { return engine_; }

private:
  class Speaker final : public SpeakerEngine {
  public:
    explicit Speaker(SpeechEngine& engine) : engine_(engine) {}
    ~Speaker() override;

    void ResetToDefaults() override { engine_.ResetAllToDefault(); }
    OutputFormat Format() override;
    int SetFormatCode(std::uint32_t code) override { return engine_.SetAudioFormat(code); }
    void SetVolume(std::uint32_t volume) override { engine_.SetVolume(volume); }
    bool PitchSupported() override { return engine_.GetPitchRange().maximum != 0; }
    std::uint32_t Pitch() override { return engine_.GetPitch(); }
    void SetPitch(std::uint32_t pitch) override { engine_.SetPitch(pitch); }
    void SetSlowness(std::uint32_t slowness) override;
    void Speak(std::string internal_text, std::uint32_t text_base, std::uint32_t speech,
               std::shared_ptr<SpeechListener> listener) override;
    bool Pause() override { return engine_.Pause() == 1; }
    bool Resume() override { return engine_.Resume() == 1; }
    bool Stop() override { return engine_.Stop() == 1; }
    void Detach() override;

  private:
    static void VNTTS_CALL Relay(std::uintptr_t self, VNEvent event);
    std::shared_ptr<SpeechListener> Listener(std::uint32_t* speech);

    SpeechEngine& engine_;
    std::mutex mutex_;
    std::shared_ptr<SpeechListener> listener_;
    std::uint32_t speech_ = 0;
    bool relay_installed_ = false;
    // Waits for the end of each speech to report it: the engine tells the end of every
    // sentence's sound, not of the speech.
    std::thread watcher_;
  };

  class Recorder final : public RecorderEngine {
  public:
    explicit Recorder(SpeechEngine& engine) : engine_(engine) {}
    int Start() override;
    int Pause() override;
    int Resume() override;
    int Stop() override;
    int Save(const std::string& path) override;
    void Close() override;

  private:
    SpeechEngine& engine_;
  };

  SpeechEngine& engine_;
  Speaker speaker_;
  Recorder recorder_;
  EngineTools tools_;
};

} // namespace vntts::ui
