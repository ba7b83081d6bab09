// SPDX-License-Identifier: MIT
#include "espeak_speech.h"

#include <espeak-ng/speak_lib.h>

#include <string>
#include <vector>

namespace sound_report {
namespace {

struct Collected {
  std::vector<float> samples;
  struct Mark {
    int ms, char_start, char_length;
  };
  std::vector<Mark> marks;
};

int OnSynth(short* wav, int count, espeak_EVENT* events) {
  if (!events) return 0;
  // Every event of the list, its terminator included, carries the synthesis call's pointer.
  auto* c = static_cast<Collected*>(events->user_data);
  if (wav && count > 0)
    for (int i = 0; i < count; ++i)
      c->samples.push_back(static_cast<float>(wav[i]) / 32768.0f);
  for (espeak_EVENT* e = events; e->type != espeakEVENT_LIST_TERMINATED; ++e)
    if (e->type == espeakEVENT_WORD)
      c->marks.push_back({e->audio_position, e->text_position, e->length});
  return 0;
}

// The text as code points, so that the character positions of the events can be read back.
std::u32string CodePoints(std::string_view s) {
  std::u32string out;
  for (std::size_t i = 0; i < s.size();) {
    const auto c = static_cast<unsigned char>(s[i]);
    const int extra = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : c >= 0xC0 ? 1 : 0;
    char32_t cp = extra ? c & (0x3F >> extra) : c;
    for (int k = 1; k <= extra && i + k < s.size(); ++k)
      cp = (cp << 6) | (static_cast<unsigned char>(s[i + k]) & 0x3F);
    out.push_back(cp);
    i += static_cast<std::size_t>(extra) + 1;
  }
  return out;
}

bool Started() {
  static const bool started = [] {
    if (espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, nullptr, 0) <= 0) return false;
    espeak_SetSynthCallback(OnSynth);
    return espeak_SetVoiceByName("vi") == EE_OK;
  }();
  return started;
}

} // namespace

std::optional<Speech> SpeakWithEspeak(std::string_view utf8) {
  if (!Started()) return std::nullopt;
  Collected c;
  const std::string text(utf8);
  if (espeak_Synth(text.c_str(), text.size() + 1, 0, POS_CHARACTER, 0, espeakCHARS_UTF8, nullptr,
                   &c) != EE_OK)
    return std::nullopt;
  Speech speech;
  speech.rate = 22050;
  speech.samples = std::move(c.samples);
  const std::u32string chars = CodePoints(utf8);
  std::size_t previous_end = 0;
  for (std::size_t i = 0; i < c.marks.size(); ++i) {
    const auto& m = c.marks[i];
    const auto start = static_cast<std::size_t>(std::max(m.char_start - 1, 0));
    bool punctuated = i == 0;
    for (std::size_t k = previous_end; k < start && k < chars.size(); ++k)
      punctuated = punctuated || chars[k] != U' ';
    previous_end = start + static_cast<std::size_t>(std::max(m.char_length, 0));
    const auto position = static_cast<std::size_t>(m.ms) * 22050 / 1000;
    if (position >= speech.samples.size()) {
      ++speech.dropped_words;
      continue;
    }
    speech.words.push_back({position, punctuated});
  }
  return speech;
}

} // namespace sound_report
