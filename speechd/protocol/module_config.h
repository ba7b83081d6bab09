// SPDX-License-Identifier: MIT
#pragma once
// The module's configuration file (speech-dispatcher passes its path as the only argument):
// lines "Name value", the value optionally in double quotes, '#' starting a comment. Names the
// module does not know are ignored, as speech-dispatcher's own files hold some.
#include <optional>
#include <string>
#include <string_view>

namespace vntts::speechd {

struct ModuleConfig {
  std::string data_directory; // VnttsDataDirectory: where the voice is, else the library's own
};

ModuleConfig ReadModuleConfig(std::string_view text);
std::optional<ModuleConfig> LoadModuleConfig(const std::string& path);

} // namespace vntts::speechd
