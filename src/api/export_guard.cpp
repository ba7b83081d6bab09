#include "api/export_guard.h"

#include <string>

namespace vntts::api {

void ReportEscapedException(std::exception_ptr error) noexcept {
  try {
    try {
      std::rethrow_exception(error);
    } catch (const std::bad_alloc&) {
      LibraryMessages().report("Out off memory !!!", "", MessageIcon::Error);
    } catch (const std::exception& e) {
      LibraryMessages().report(std::string("Internal error: ") + e.what(), "vntts",
                               MessageIcon::Error);
    } catch (...) {
      LibraryMessages().report("Internal error", "vntts", MessageIcon::Error);
    }
  } catch (...) {
    // Reporting itself failed (no memory even for the text): nothing more can be said.
  }
}

} // namespace vntts::api
