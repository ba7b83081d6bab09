// SPDX-License-Identifier: MIT
// For the C host: the window module's count of open windows, and closing them, through the
// module the library has loaded.
#include <dlfcn.h>

#include "ui/module_interface.h"

namespace {

vntts::ui::DialogModule* LoadedModule() {
  void* handle = dlopen(VNTTS_UI_MODULE_PATH, RTLD_NOW | RTLD_NOLOAD);
  if (!handle) return nullptr;
  auto entry =
      reinterpret_cast<vntts::ui::DialogModuleEntry>(dlsym(handle, vntts::ui::kDialogModuleEntry));
  dlclose(handle); // the library keeps its own reference
  return entry ? entry(vntts::ui::kDialogModuleVersion) : nullptr;
}

} // namespace

extern "C" int OpenModuleWindows(void) {
  vntts::ui::DialogModule* module = LoadedModule();
  return module ? module->OpenWindows() : 0;
}

extern "C" void CloseModuleWindows(void) {
  if (vntts::ui::DialogModule* module = LoadedModule()) module->CloseWindows(nullptr);
}
