// SPDX-License-Identifier: MIT
#pragma once
// What one message of speech-dispatcher asks the voice to say, and how.
#include <string>
#include <string_view>

#include "module_settings.h"

namespace vntts::speechd {

enum class MessageKind { kText, kChar, kKey };

struct SpeechRequest {
  std::string text;   // UTF-8; speech markup when it starts with <speak>
  bool spell = false; // every character on its own (spelling mode)
  double speed = 1.0, pitch = 1.0, gain = 1.0;
  std::string icon_before; // a sound icon the server plays before the speech, or empty
};

// SPEAK passes its markup on; CHAR says one character (a capital announced as the settings
// ask), or the words the server already made of it; KEY says a key name such as
// "control_alt_delete" or "shift_a" in words, keys that are characters spelled.
SpeechRequest RequestFor(MessageKind kind, std::string_view data, const ModuleSettings& settings);

// The Vietnamese words for a symbolic key name ("enter", "kp-5", "f11"), or empty.
std::string KeyWords(std::string_view name);

} // namespace vntts::speechd
