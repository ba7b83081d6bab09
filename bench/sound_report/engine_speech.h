// SPDX-License-Identifier: MIT
#pragma once
// Our engine speaking into memory: a sound system whose sinks keep every byte they are given
// at once, and the word events the engine fires with them, placed on the joined sound.
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>

#include "speech.h"

namespace sound_report {

class EngineSpeaker {
public:
  explicit EngineSpeaker(const std::filesystem::path& voice_folder);
  ~EngineSpeaker();

  // False when the folder holds no voice.
  bool HasVoice();

  // Speaks UTF-8 text in one of the twelve output formats (8..11 at 11025 Hz, 20..23 at
  // 22050 Hz, 32..35 at 44100 Hz: mono 8-bit, stereo 8-bit, mono 16-bit, stereo 16-bit).
  Speech Speak(std::string_view utf8, std::uint32_t format_code = 22);

private:
  struct State;
  std::unique_ptr<State> state_;
};

} // namespace sound_report
