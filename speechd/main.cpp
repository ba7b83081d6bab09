// SPDX-License-Identifier: MIT
// sd_vntts CONFIG: the speech-dispatcher output module of vntts.
#include <cstdio>
#include <cstdlib>

#include "library_synthesizer.h"
#include "protocol/module_config.h"
#include "protocol/module_main.h"

int main(int argc, char** argv) {
  if (argc > 1) {
    const auto config = vntts::speechd::LoadModuleConfig(argv[1]);
    if (!config)
      std::fprintf(stderr, "sd_vntts: cannot read %s; going on with defaults\n", argv[1]);
    else if (!config->data_directory.empty())
      setenv("VNTTS_DATA_DIR", config->data_directory.c_str(), 1);
  }
  vntts::speechd::LibrarySynthesizer voice;
  return vntts::speechd::RunModule(voice);
}
