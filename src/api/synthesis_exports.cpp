// SPDX-License-Identifier: MIT
// Synthesis into the host's function, and the lasting speed.
#include <vector>

#include "api/export_guard.h"
#include "vntts/vntts.h"

using vntts::SpeechEngine;
using namespace vntts::api;

namespace {

std::uint32_t PublicKind(vntts::HostEvent::Kind kind) {
  switch (kind) {
  case vntts::HostEvent::Kind::kWord:
    return VN_EVENT_WORD_BOUNDARY;
  case vntts::HostEvent::Kind::kSentence:
    return VN_EVENT_SENTENCE_BOUNDARY;
  case vntts::HostEvent::Kind::kMark:
    break;
  }
  return VN_EVENT_MARK;
}

} // namespace

extern "C" {

int VNSynthesizeUTF8(const char* utf8_text, uint32_t flags, VNSynthesisProc proc, uintptr_t user) {
  if (utf8_text == nullptr || proc == nullptr) return 0;
  return WithEngine(0, [&](SpeechEngine& e) {
    vntts::HostSynthesisOptions options;
    options.markup = (flags & VN_SYNTHESIS_MARKUP) != 0;
    options.spell = (flags & VN_SYNTHESIS_SPELL) != 0;
    std::vector<VNSynthesisEvent> events;
    const auto result = e.SynthesizeForHost(
        utf8_text, options, [&](std::span<const std::int16_t> samples, auto host_events) {
          events.clear();
          for (const vntts::HostEvent& h : host_events)
            events.push_back({PublicKind(h.kind), static_cast<uint32_t>(h.sample), h.text_start,
                              h.text_length,
                              h.kind == vntts::HostEvent::Kind::kMark ? h.name.c_str() : nullptr});
          return proc(user, samples.data(), static_cast<uint32_t>(samples.size()), events.data(),
                      static_cast<uint32_t>(events.size())) != 0;
        });
    return result == vntts::HostSynthesisResult::kDone ? 1 : 2;
  });
}

uint32_t VNSetSpeed(uint32_t percent) {
  return WithEngine<uint32_t>(0, [&](SpeechEngine& e) { return e.SetSpeed(percent); });
}

uint32_t VNGetSpeed(void) {
  return WithEngine<uint32_t>(0, [](SpeechEngine& e) { return e.GetSpeed(); });
}

} // extern "C"
