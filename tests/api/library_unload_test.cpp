// SPDX-License-Identifier: MIT
// A host may unload the library without calling ReleaseLib, even while it speaks: the engine
// must be gone (its threads stopped) before the library's code is unmapped.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "vntts/vntts.h"

namespace vntts::test {
namespace {
namespace fs = std::filesystem;

// A private copy of the library, so that dlopen gives a second, separately unloadable instance.
class PrivateLibraryCopy {
public:
  PrivateLibraryCopy() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&ReleaseLib), &info) == 0 || !info.dli_fname) return;
    original_ = fs::canonical(info.dli_fname);
    std::string pattern = (fs::temp_directory_path() / "vntts-unload-XXXXXX").string();
    if (!mkdtemp(pattern.data())) return;
    folder_ = pattern;
    copy_ = folder_ / "libvntts-copy.so";
    fs::copy_file(original_, copy_);
  }
  ~PrivateLibraryCopy() {
    std::error_code ec;
    if (!folder_.empty()) fs::remove_all(folder_, ec);
  }
  const fs::path& path() const { return copy_; }
  // The data folder the original would use: beside it.
  fs::path original_index() const { return original_.parent_path() / "index"; }

private:
  fs::path original_, folder_, copy_;
};

template <class F> F Lookup(void* handle, const char* name) {
  return reinterpret_cast<F>(dlsym(handle, name));
}

TEST(LibraryUnload, WithoutReleaseLibWhileSpeaking) {
  PrivateLibraryCopy copy;
  ASSERT_FALSE(copy.path().empty());
  setenv("VNTTS_AUDIO", "null", 1);
  setenv("VNTTS_DATA_DIR", copy.original_index().c_str(), 1);
  for (int round = 0; round < 3; ++round) {
    void* handle = dlopen(copy.path().c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(handle, nullptr) << dlerror();
    auto set_handler = Lookup<void (*)(VNMessageProc, uintptr_t)>(handle, "VNSetMessageHandler");
    auto speak = Lookup<void (*)(const char*, VNNotifyProc, uintptr_t)>(handle, "SpeakVNUTF8");
    auto playing = Lookup<int (*)()>(handle, "IsPlaying");
    ASSERT_TRUE(set_handler && speak && playing);
    set_handler([](uintptr_t, const char*, const char*, int) {}, 0);
    speak("Xin chào. Hôm nay trời đẹp lắm. Chúng ta đi chơi nhé.", nullptr, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(20 * round));
    (void)playing();
    EXPECT_EQ(dlclose(handle), 0);
  }
  unsetenv("VNTTS_DATA_DIR");
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  SUCCEED() << "no worker thread ran into unmapped code";
}

} // namespace
} // namespace vntts::test
