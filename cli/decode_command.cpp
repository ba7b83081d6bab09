#include <cstdio>

#include "command.h"

namespace vntts::cli {

// Not built yet: the subcommand arrives with its subsystem.
int run_decode(Args) {
  std::fprintf(stderr, "vntts: this command is not available yet\n");
  return 1;
}

} // namespace vntts::cli
