// SPDX-License-Identifier: MIT
#pragma once
// eSpeak NG's Vietnamese voice at its own default settings (what `espeak-ng -v vi` says) on the
// same text, with its word events as the word marks.
#include <optional>
#include <string_view>

#include "speech.h"

namespace sound_report {

// Nothing when eSpeak NG or its Vietnamese voice cannot be started.
std::optional<Speech> SpeakWithEspeak(std::string_view utf8);

} // namespace sound_report
