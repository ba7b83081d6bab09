// SPDX-License-Identifier: MIT
#pragma once
// The voice settings speech-dispatcher sends with SET, and what they mean for our voice.
#include <string>
#include <string_view>

namespace vntts::speechd {

struct ModuleSettings {
  int rate = 0;   // -100 .. 100
  int pitch = 0;  // -100 .. 100
  int volume = 0; // -100 .. 100
  std::string punctuation_mode = "none";
  std::string spelling_mode = "off";
  std::string cap_let_recogn = "none";
  std::string voice;
  std::string synthesis_voice;
  std::string language;

  // Takes one "name=value" line of a SET block; unknown names and unreadable numbers are
  // ignored, and "NULL" leaves a value as it was.
  void Apply(std::string_view line);

  // Pace factor: 1 at 0, doubling every 50 steps up to 4 at 100; down to 0.5 at -100.
  double Speed() const;
  // Pitch factor: an octave either way at -100 and 100.
  double Pitch() const;
  // Gain: 1 at 100 (speech-dispatcher's usual default), 0.5 at 0, silent at -100.
  double Gain() const;
  bool Spelling() const { return spelling_mode == "on"; }
};

} // namespace vntts::speechd
