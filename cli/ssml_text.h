// SPDX-License-Identifier: MIT
#pragma once
// Plain text out of speech markup for `vntts say -m`, through the library's markup reader: the
// text pieces in order, a line end (which ends a sentence) for each <break>, and the pieces to
// be spelled with a blank between their characters. Marks are dropped, and prosody is not
// applied: the engine has one rate, pitch and volume for a whole text. Text that is not a
// <speak> document comes back as it was.
#include <string>
#include <string_view>

namespace vntts::cli {

std::string SsmlToText(std::string_view ssml);

} // namespace vntts::cli
