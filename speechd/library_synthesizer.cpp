// SPDX-License-Identifier: MIT
#include "library_synthesizer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <mutex>
#include <string>

#include "vntts/vntts.h"

namespace vntts::speechd {
namespace {

// What the library tells the user while it starts (a missing voice file), kept for INIT.
struct StartMessages {
  std::mutex mutex;
  std::string text;
};

void VNTTS_CALL Collect(uintptr_t user, const char* text, const char* caption, int) {
  auto* messages = reinterpret_cast<StartMessages*>(user);
  std::lock_guard lock(messages->mutex);
  if (!messages->text.empty()) messages->text += '\n';
  messages->text += *caption ? std::string(caption) + ": " + text : std::string(text);
}

void VNTTS_CALL ToStandardError(uintptr_t, const char* text, const char* caption, int) {
  std::fprintf(stderr, "sd_vntts: %s%s%s\n", caption, *caption ? ": " : "", text);
}

struct Delivery {
  SynthesisSink& sink;
  std::uint64_t delivered = 0; // samples before this chunk: event places count from the start
};

// Hands a chunk to the module: audio up to each mark, then the mark.
int VNTTS_CALL OnChunk(uintptr_t user, const int16_t* samples, uint32_t count,
                       const VNSynthesisEvent* events, uint32_t event_count) {
  auto& d = *reinterpret_cast<Delivery*>(user);
  const std::uint64_t first = d.delivered;
  d.delivered += count;
  std::uint32_t sent = 0;
  for (uint32_t i = 0; i < event_count; ++i) {
    if (events[i].kind != VN_EVENT_MARK) continue;
    const auto at = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(count, events[i].sample > first ? events[i].sample - first : 0));
    if (at > sent && !d.sink.Audio({samples + sent, at - sent})) return 0;
    sent = std::max(sent, at);
    if (!d.sink.Mark(events[i].name)) return 0;
  }
  if (count > sent && !d.sink.Audio({samples + sent, count - sent})) return 0;
  return 1;
}

} // namespace

bool LibrarySynthesizer::Init(std::string& status) {
  StartMessages messages;
  VNSetMessageHandler(Collect, reinterpret_cast<uintptr_t>(&messages));
  // A word the voice can say shows that the engine is made and its voice is there.
  static char buffer[VN_WORD_BUFFER_BYTES];
  uint32_t length = 0;
  const bool ok = GetBufOfWord("a", buffer, &length) != 0 && length > 0;
  VNSetMessageHandler(ToStandardError, 0);
  std::lock_guard lock(messages.mutex);
  status = ok ? std::string("vntts ") + VNGetVersion() + ": Vietnamese voice ready"
              : "vntts cannot speak: " + (messages.text.empty() ? "no voice" : messages.text);
  return ok;
}

std::vector<VoiceInfo> LibrarySynthesizer::Voices() const {
  return {{"vntts", "vi", "none"}};
}

void LibrarySynthesizer::Speak(const SpeechRequest& request, SynthesisSink& sink) {
  VNSetSpeed(static_cast<uint32_t>(std::lround(request.speed * 100)));
  SetPitch(static_cast<uint32_t>(std::lround(request.pitch * 0x10000)));
  const uint32_t flags = VN_SYNTHESIS_MARKUP | (request.spell ? VN_SYNTHESIS_SPELL : 0);
  Delivery delivery{sink};
  VNSynthesizeUTF8(request.text.c_str(), flags, OnChunk, reinterpret_cast<uintptr_t>(&delivery));
}

} // namespace vntts::speechd
