// SPDX-License-Identifier: MIT
#pragma once
// Plain text out of SSML for `vntts say -m`: the engine reads text, so markup is taken out.
// Elements that separate (<break>, <p>, <s>, line ends of the document) become line ends, which
// end a sentence; the five XML entities and character references are decoded; comments,
// processing instructions and declarations are dropped; CDATA stays as text. Broken markup is
// read as leniently as a browser would: an unclosed '<' drops the rest of the text.
#include <string>
#include <string_view>

namespace vntts::cli {

std::string SsmlToText(std::string_view ssml);

} // namespace vntts::cli
