# SPDX-License-Identifier: MIT
add_library(vntts_warnings INTERFACE)
target_compile_options(vntts_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wcast-align -Woverloaded-virtual
  -Wimplicit-fallthrough
  $<$<BOOL:${VNTTS_WERROR}>:-Werror>)
