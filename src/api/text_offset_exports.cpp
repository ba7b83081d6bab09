// SPDX-License-Identifier: MIT
// The library's version, and the way from the internal-text offsets of word and sentence
// events back to the UTF-8 text the host spoke.
#include "api/export_guard.h"
#include "synthesis/utf8_text_map.h"
#include "vntts/vntts.h"

using namespace vntts::api;

extern "C" {

const char* VNGetVersion(void) {
  return VNTTS_VERSION;
}

int VNTextRangeToUTF8(const char* utf8_text, uint32_t start, uint32_t length, uint32_t* utf8_start,
                      uint32_t* utf8_length) {
  return Guarded(0, [&] {
    if (utf8_text == nullptr) return 0;
    const auto [from, to] = vntts::Utf8TextMap(utf8_text).ToUtf8(start, length);
    if (utf8_start) *utf8_start = from;
    if (utf8_length) *utf8_length = to - from;
    return 1;
  });
}

} // extern "C"
