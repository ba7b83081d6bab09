// SPDX-License-Identifier: MIT
#include "ui/host/dialog_host.h"

#include <dlfcn.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>

#include "audio/wave_device.h"

namespace vntts::ui {
namespace {

std::mutex load_mutex;
std::atomic<DialogModule*> loaded_module{nullptr};

// Beside the library (or the program) that holds this code, else in the installed library
// folder next to a program's bin/, else wherever the loader finds it.
std::string ModulePath() {
  if (const char* chosen = std::getenv("VNTTS_UI_MODULE"); chosen && *chosen) return chosen;
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&LoadDialogModule), &info) && info.dli_fname) {
    const auto folder = std::filesystem::path(info.dli_fname).parent_path();
    for (const auto& candidate :
         {folder / kDialogModuleFile, folder / ".." / VNTTS_INSTALL_LIBDIR / kDialogModuleFile}) {
      std::error_code error;
      if (std::filesystem::exists(candidate, error)) return candidate.lexically_normal().string();
    }
  }
  return kDialogModuleFile;
}

} // namespace

DialogModule* LoadDialogModule(std::string* why) {
  std::lock_guard lock(load_mutex);
  if (DialogModule* module = loaded_module.load()) return module;
  const std::string path = ModulePath();
  // The module stays loaded for the life of the process: Qt cannot be unloaded safely.
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (!handle) {
    const char* error = dlerror();
    if (why) *why = "The window module could not be loaded: " + std::string(error ? error : path);
    return nullptr;
  }
  auto entry = reinterpret_cast<DialogModuleEntry>(dlsym(handle, kDialogModuleEntry));
  DialogModule* module = entry ? entry(kDialogModuleVersion) : nullptr;
  if (!module) {
    if (why) *why = "The window module " + path + " does not belong to this library.";
    dlclose(handle);
    return nullptr;
  }
  loaded_module = module;
  return module;
}

DialogModule* LoadedDialogModule() {
  return loaded_module.load();
}

DialogHost::~DialogHost() {
  CloseWindows();
}

DialogModule* DialogHost::Module() {
  std::string why;
  DialogModule* module = LoadDialogModule(&why);
  if (!module) messages_.Report(why, "", MessageIcon::kError);
  return module;
}

DialogEngine& DialogHost::Serve(SpeechEngine& engine) {
  std::lock_guard lock(mutex_);
  if (!served_ || &served_->engine() != &engine) {
    served_ = std::make_unique<EngineDialogs>(engine);
    // Playing on the windows' thread (PlayWave from a Qt program) keeps the windows alive.
    DialogModule* module = LoadedDialogModule();
    engine.wave_device().SetMessagePump([module] { module->PumpEvents(); });
  }
  return *served_;
}

int DialogHost::SpeakDlg(SpeechEngine& engine, std::uintptr_t value, std::string_view utf8_text,
                         bool wait_until_closed) {
  DialogModule* module = Module();
  if (!module) return 0;
  DialogEngine& dialogs = Serve(engine);
  if (module->SpeakDlg(dialogs, value, utf8_text, wait_until_closed)) return 1;
  messages_.Report(module->Why(), "", MessageIcon::kError);
  return 0;
}

int DialogHost::Record(SpeechEngine& engine, std::uintptr_t value, std::string& file_name,
                       bool* saved) {
  DialogModule* module = Module();
  if (!module) return 0;
  bool written = false;
  const int result = module->Record(Serve(engine), value, file_name, written);
  if (saved) *saved = written;
  if (result >= 0) return result;
  messages_.Report(module->Why(), "", MessageIcon::kError);
  return 0;
}

int DialogHost::RunModal(SpeechEngine& engine,
                         const std::function<int(DialogModule&, DialogEngine&)>& run) {
  DialogModule* module = Module();
  if (!module) return 0;
  const int result = run(*module, Serve(engine));
  if (result >= 0) return result;
  messages_.Report(module->Why(), "", MessageIcon::kError);
  return 0;
}

int DialogHost::Tools(SpeechEngine& engine, std::uintptr_t value) {
  return RunModal(engine, [value](DialogModule& m, DialogEngine& e) { return m.Tools(e, value); });
}

int DialogHost::EditDefinition(SpeechEngine& engine, std::uintptr_t value) {
  return RunModal(engine,
                  [value](DialogModule& m, DialogEngine& e) { return m.EditDefinition(e, value); });
}

bool ShowMessageInWindow(std::string_view text, std::string_view caption, MessageIcon icon) {
  DialogModule* module = LoadedDialogModule();
  return module && module->ShowMessage(text, caption, icon);
}

void DialogHost::CloseWindows() {
  std::unique_ptr<EngineDialogs> served;
  {
    std::lock_guard lock(mutex_);
    served = std::move(served_);
  }
  if (!served) return;
  if (DialogModule* module = LoadedDialogModule()) module->CloseWindows(served.get());
  served->engine().wave_device().SetMessagePump(nullptr);
}

} // namespace vntts::ui
