// SPDX-License-Identifier: MIT
#include "api/text_input.h"

#include "text/charset/charsets.h"

namespace vntts::api {

std::string InternalFromUtf8(std::string_view utf8) {
  return Utf8ToInternal(utf8);
}

// Not cut at the fixed 10,000-byte buffer of older builds: a long text is spoken whole.
std::string InternalFromWindows95VN(std::string_view text) {
  return AsciiToInternal(text);
}

} // namespace vntts::api
