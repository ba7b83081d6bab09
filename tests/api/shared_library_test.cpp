// SPDX-License-Identifier: MIT
// libvntts.so as a host loads it. It exports the 46 public functions, the VN-prefixed
// extensions its header declares and nothing else (as binutils' nm reads its dynamic symbol
// table, so the version script lets exactly these through); the Windows export table keeps the
// fixed ordinals. A host may unload it without calling ReleaseLib, even while it speaks.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <thread>

#include "support/temp_folder.h"
#include "support/tsv_table.h"
#include "vntts/vntts.h"

namespace vntts::test {
namespace {

std::string ReadSource(const std::string& relative) {
  std::ifstream in(std::string(VNTTS_SOURCE_DIR) + "/" + relative);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

std::map<std::string, int> PublicOrdinals() {
  std::map<std::string, int> ordinals;
  for (const auto& row : ReadTsv("public_names"))
    ordinals[row.at(0)] = std::stoi(row.at(1));
  return ordinals;
}

// The defined dynamic symbols of the loaded library with nm's letter for their kind.
std::map<std::string, char> DynamicSymbols() {
  Dl_info info{};
  std::map<std::string, char> symbols;
  if (dladdr(reinterpret_cast<const void*>(&ReleaseLib), &info) == 0 || !info.dli_fname)
    return symbols;
  const std::string command = "nm -D --defined-only '" + std::string(info.dli_fname) + "'";
  FILE* nm = popen(command.c_str(), "r");
  char line[512];
  while (nm && std::fgets(line, sizeof line, nm)) {
    std::istringstream fields(line);
    std::string address, kind, name;
    if (fields >> address >> kind >> name) symbols[name] = kind[0];
  }
  if (nm) pclose(nm);
  return symbols;
}

// Every export has its ordinal in the Windows export table: the fixed one of a public function,
// one from 1000 on for an extension, each ordinal once.
TEST(ExportedSymbols, ThePublicFunctionsAndDeclaredExtensionsOnly) {
  const auto ordinals = PublicOrdinals();
  ASSERT_EQ(ordinals.size(), 46u);
  const std::string def = ReadSource("src/api/vntts.def");
  std::map<std::string, int> listed;
  std::set<int> used;
  const std::regex line(R"(^\s*([A-Za-z0-9_]+)\s+@(\d+)\s*$)", std::regex::multiline);
  for (std::sregex_iterator it(def.begin(), def.end(), line), end; it != end; ++it) {
    const std::string name = (*it)[1];
    const int ordinal = listed[name] = std::stoi((*it)[2]);
    EXPECT_TRUE(used.insert(ordinal).second) << "ordinal " << ordinal << " used twice";
    EXPECT_TRUE(ordinals.contains(name) || (name.starts_with("VN") && ordinal >= 1000)) << name;
  }
  const auto symbols = DynamicSymbols();
  ASSERT_FALSE(symbols.empty()) << "nm read no symbols of libvntts.so";
  for (const auto& [name, ordinal] : ordinals) {
    EXPECT_EQ(symbols.contains(name) ? symbols.at(name) : '-', 'T') << name << " is no function";
    EXPECT_EQ(listed.contains(name) ? listed.at(name) : 0, ordinal) << name;
  }
  const std::string header = ReadSource("include/vntts/vntts.h");
  for (const auto& [name, kind] : symbols) {
    EXPECT_TRUE(listed.contains(name)) << name << " has no ordinal in vntts.def";
    if (ordinals.contains(name)) continue;
    EXPECT_TRUE(name.starts_with("VN")) << "libvntts.so exports " << name;
    EXPECT_EQ(kind, 'T') << name;
    EXPECT_NE(header.find("VNTTS_CALL " + name + "("), std::string::npos)
        << name << " is exported but not declared in vntts.h";
  }
}

template <class F> F Lookup(void* handle, const char* name) {
  return reinterpret_cast<F>(dlsym(handle, name));
}

TEST(LibraryUnload, WithoutReleaseLibWhileSpeaking) {
  // A private copy of the library, so that dlopen gives a second, separately unloadable
  // instance; it finds the voice beside the original.
  Dl_info info{};
  ASSERT_NE(dladdr(reinterpret_cast<const void*>(&ReleaseLib), &info), 0);
  const auto original = std::filesystem::canonical(info.dli_fname);
  const TempFolder folder;
  std::filesystem::copy_file(original, folder / "libvntts-copy.so");
  setenv("VNTTS_AUDIO", "null", 1);
  setenv("VNTTS_DATA_DIR", (original.parent_path() / "index").c_str(), 1);
  for (int round = 0; round < 3; ++round) {
    void* handle = dlopen((folder / "libvntts-copy.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(handle, nullptr) << dlerror();
    auto set_handler = Lookup<void (*)(VNMessageProc, uintptr_t)>(handle, "VNSetMessageHandler");
    auto speak = Lookup<void (*)(const char*, VNNotifyProc, uintptr_t)>(handle, "SpeakVNUTF8");
    ASSERT_TRUE(set_handler && speak);
    set_handler([](uintptr_t, const char*, const char*, int) {}, 0);
    speak("Xin chào. Hôm nay trời đẹp lắm. Chúng ta đi chơi nhé.", nullptr, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(20 * round));
    EXPECT_EQ(dlclose(handle), 0);
  }
  unsetenv("VNTTS_DATA_DIR");
  // A worker thread left running would now crash the program in unmapped code.
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

} // namespace
} // namespace vntts::test
