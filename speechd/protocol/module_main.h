// SPDX-License-Identifier: MIT
#pragma once
// The body of a module program: speaks the protocol on standard input and output with the
// given voice until QUIT or the end of input; logs to standard error (speech-dispatcher puts
// it in the module's log). Returns the exit status.
#include "synthesizer.h"

namespace vntts::speechd {

int RunModule(Synthesizer& synthesizer, int input_fd = 0, int output_fd = 1);

} // namespace vntts::speechd
