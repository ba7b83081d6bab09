// SPDX-License-Identifier: MIT
#pragma once
// What the windows need from the speech engine. The library implements these over its one
// engine (src/api/dialog_engine.cpp); tests put fakes behind them. Nothing here is Qt, so the
// library and the window module share this header and nothing else.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/store_result.h"

namespace vntts::ui {

// One event of a speech, as the Speaker window uses it. Offsets are bytes of the internal text
// handed to Speak, raised by its text base.
struct SpeechEvent {
  std::uint32_t kind = 0; // the event kinds of the public header (3 word, 4 sentence, ...)
  std::uint32_t text_start = 0;
  std::uint32_t text_length = 0;
  std::uint32_t sentence_start = 0;
  std::uint32_t sentence_length = 0;
};

// Receives what a speech reports, on the engine's threads; `speech` is the number its Speak
// call was given, so that a late report of an earlier speech can be told apart.
class SpeechListener {
public:
  virtual ~SpeechListener() = default;
  virtual void OnSpeechEvent(std::uint32_t speech, const SpeechEvent& event) = 0;
  // The speech has been played to its end or stopped; called once per Speak.
  virtual void OnSpeechEnded(std::uint32_t speech) = 0;
};

struct OutputFormat {
  std::uint16_t channels = 0;
  std::uint32_t samples_per_second = 0;
  std::uint16_t bits_per_sample = 0;
};

class SpeakerEngine {
public:
  virtual ~SpeakerEngine() = default;

  // The rate to its default and the output format to its reset default.
  virtual void ResetToDefaults() = 0;
  virtual OutputFormat Format() = 0;
  // 1 when the format code was applied (the codes of SetVNAudioFormat).
  virtual int SetFormatCode(std::uint32_t code) = 0;

  // The device volume word: left level in the low 16 bits, right in the high.
  virtual void SetVolume(std::uint32_t volume) = 0;
  virtual bool PitchSupported() = 0;
  virtual std::uint32_t Pitch() = 0;
  virtual void SetPitch(std::uint32_t pitch) = 0;
  // The engine's stored rate value: the silence it adds, 0 (none) .. 5000 (slowest).
  virtual void SetSlowness(std::uint32_t slowness) = 0;

  // Starts speaking internal text in the background, reporting to the listener; every text
  // offset it reports is raised by text_base.
  virtual void Speak(std::string internal_text, std::uint32_t text_base, std::uint32_t speech,
                     std::shared_ptr<SpeechListener> listener) = 0;
  // Each true when the engine did it.
  virtual bool Pause() = 0;
  virtual bool Resume() = 0;
  virtual bool Stop() = 0;
  // Stops reporting to the listener of the last Speak (its window is going away).
  virtual void Detach() = 0;
};

// The engine's recorder, in the engine's audio format. Each returns 0 on success, after telling
// the user why not otherwise.
class RecorderEngine {
public:
  virtual ~RecorderEngine() = default;
  virtual int Start() = 0;
  virtual int Pause() = 0;
  virtual int Resume() = 0;
  virtual int Stop() = 0;
  // Writes the take to a WAV file (an empty path writes nothing) and closes the recorder.
  virtual int Save(const std::string& path) = 0;
  virtual void Close() = 0;
};

// The abbreviation definitions of the engine's Define folder, as the editor reaches them. Short
// forms and expansions are internal text.
class DefinitionFiles {
public:
  virtual ~DefinitionFiles() = default;
  // The folder's entries in listing order: "." and ".." first, then the names in byte order.
  virtual std::vector<std::string> ListEntries() = 0;
  // The bytes of one entry; nothing when it cannot be read (a folder, a vanished file).
  virtual std::optional<std::string> ReadEntry(const std::string& name) = 0;
  // Whether a definition of the short form is stored, without regard to case.
  virtual bool Contains(std::string_view short_form) = 0;
  virtual StoreResult Append(std::string_view short_form, std::string_view expansion) = 0;
  // Every definition of the short form, any case; fails when there was none.
  virtual StoreResult Remove(std::string_view short_form) = 0;
};

// What the Tools sheet and the abbreviation editor need of the engine.
class ToolsEngine {
public:
  virtual ~ToolsEngine() = default;
  // The engine's data folder (UTF-8), where its AutoCrt.crt and data.dic lie.
  virtual std::string DataFolder() = 0;
  virtual DefinitionFiles& Definitions() = 0;
  // Speaks internal text in the background, as the Speak export does.
  virtual void Speak(std::string internal_text) = 0;
  // Reads the auto-correct table of the data folder again (the Tools sheet changed it).
  virtual void ReloadAutoCorrect() = 0;
};

// All three, as the library hands them to the window module for one engine.
class DialogEngine {
public:
  virtual ~DialogEngine() = default;
  virtual SpeakerEngine& speaker() = 0;
  virtual RecorderEngine& recorder() = 0;
  virtual ToolsEngine& tools() = 0;
};

} // namespace vntts::ui
