// SPDX-License-Identifier: MIT
#include "api/export_guard.h"

#include <string>

namespace vntts::api {

void ReportEscapedException(std::exception_ptr error) noexcept {
  try {
    try {
      std::rethrow_exception(error);
    } catch (const std::bad_alloc&) {
      LibraryMessages().Report("Out off memory !!!", "", MessageIcon::kError);
    } catch (const std::exception& e) {
      LibraryMessages().Report(std::string("Internal error: ") + e.what(), "vntts",
                               MessageIcon::kError);
    } catch (...) {
      LibraryMessages().Report("Internal error", "vntts", MessageIcon::kError);
    }
  } catch (...) {
    // Reporting itself failed (no memory even for the text): nothing more can be said.
  }
}

} // namespace vntts::api
