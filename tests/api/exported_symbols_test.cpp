// SPDX-License-Identifier: MIT
// The library's dynamic symbol table holds the 46 public functions, the VN-prefixed
// extensions and nothing else; the .def file keeps the ordinals.
#include <dlfcn.h>
#include <elf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "public_names.h"
#include "vntts/vntts.h"

namespace vntts::test {
namespace {

std::string ReadWholeFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

struct DynamicSymbol {
  std::string name;
  unsigned type;
  unsigned binding;
};

std::string LoadedLibraryPath() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&ReleaseLib), &info) == 0 || !info.dli_fname) return {};
  return info.dli_fname;
}

// The defined, globally visible entries of the .dynsym section of a 64-bit ELF file.
std::vector<DynamicSymbol> DefinedDynamicSymbols(const std::string& path) {
  const std::string bytes = ReadWholeFile(path);
  const std::vector<char> image(bytes.begin(), bytes.end());
  std::vector<DynamicSymbol> symbols;
  if (image.size() < sizeof(Elf64_Ehdr)) return symbols;
  Elf64_Ehdr header;
  std::memcpy(&header, image.data(), sizeof header);
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != ELFCLASS64)
    return symbols;
  auto section = [&](std::size_t index) {
    Elf64_Shdr s;
    std::memcpy(&s, image.data() + header.e_shoff + index * header.e_shentsize, sizeof s);
    return s;
  };
  for (std::size_t i = 0; i < header.e_shnum; ++i) {
    const Elf64_Shdr dynsym = section(i);
    if (dynsym.sh_type != SHT_DYNSYM) continue;
    const Elf64_Shdr strings = section(dynsym.sh_link);
    for (std::size_t off = 0; off + sizeof(Elf64_Sym) <= dynsym.sh_size; off += sizeof(Elf64_Sym)) {
      Elf64_Sym sym;
      std::memcpy(&sym, image.data() + dynsym.sh_offset + off, sizeof sym);
      const unsigned binding = ELF64_ST_BIND(sym.st_info);
      if (sym.st_shndx == SHN_UNDEF || binding == STB_LOCAL) continue;
      symbols.push_back({std::string(image.data() + strings.sh_offset + sym.st_name),
                         ELF64_ST_TYPE(sym.st_info), binding});
    }
  }
  return symbols;
}

class ExportedSymbols : public ::testing::Test {
protected:
  void SetUp() override {
    path_ = LoadedLibraryPath();
    ASSERT_FALSE(path_.empty()) << "libvntts.so is not loaded";
    symbols_ = DefinedDynamicSymbols(path_);
    ASSERT_FALSE(symbols_.empty()) << "no dynamic symbols read from " << path_;
  }
  std::string path_;
  std::vector<DynamicSymbol> symbols_;
};

// The 46 public names are functions, and anything else exported is a VN extension that the
// public header declares.
TEST_F(ExportedSymbols, ThePublicFunctionsAndDeclaredExtensionsOnly) {
  const std::string header = ReadWholeFile(VNTTS_SOURCE_DIR "/include/vntts/vntts.h");
  std::map<std::string, unsigned> types;
  for (const auto& s : symbols_) {
    types[s.name] = s.type;
    if (IsPublicName(s.name)) continue;
    EXPECT_TRUE(IsExtensionName(s.name)) << path_ << " exports " << s.name;
    EXPECT_EQ(s.type, unsigned{STT_FUNC}) << s.name;
    EXPECT_NE(header.find("VNTTS_CALL " + s.name + "("), std::string::npos)
        << s.name << " is exported but not declared in vntts.h";
  }
  for (const auto& p : kPublicNames) {
    const auto it = types.find(std::string(p.name));
    ASSERT_NE(it, types.end()) << p.name << " is not exported";
    EXPECT_EQ(it->second, unsigned{STT_FUNC}) << p.name;
  }
}

// Every export is reachable by name at run time, as a host that loads the library would find it.
TEST_F(ExportedSymbols, HostFindsEveryPublicNameWithDlsym) {
  void* handle = dlopen(path_.c_str(), RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(handle, nullptr) << dlerror();
  for (const auto& p : kPublicNames)
    EXPECT_NE(dlsym(handle, std::string(p.name).c_str()), nullptr) << p.name;
  dlclose(handle);
}

std::string ReadSource(const char* relative) {
  return ReadWholeFile(std::string(VNTTS_SOURCE_DIR) + "/" + relative);
}

// The Windows export table keeps the fixed ordinals and gives extensions ordinals from 1000 on;
// the version script lists every public name.
TEST(ExportLists, KeepTheOrdinalsAndEveryPublicName) {
  const std::string def = ReadSource("src/api/vntts.def");
  const std::string map = ReadSource("src/api/vntts.map");
  ASSERT_FALSE(def.empty() || map.empty());
  std::map<std::string, int> ordinals;
  const std::regex line(R"(^\s*([A-Za-z0-9_]+)\s+@(\d+)\s*$)", std::regex::multiline);
  for (std::sregex_iterator it(def.begin(), def.end(), line), end; it != end; ++it)
    ordinals[(*it)[1]] = std::stoi((*it)[2]);
  for (const auto& p : kPublicNames) {
    const auto it = ordinals.find(std::string(p.name));
    ASSERT_NE(it, ordinals.end()) << p.name << " missing from vntts.def";
    EXPECT_EQ(it->second, p.ordinal) << p.name;
    EXPECT_TRUE(std::regex_search(map, std::regex("[\\s;]" + std::string(p.name) + ";"))) << p.name;
  }
  std::set<int> seen;
  for (const auto& [name, ordinal] : ordinals) {
    EXPECT_TRUE(seen.insert(ordinal).second) << "ordinal " << ordinal << " used twice";
    if (!IsPublicName(name)) {
      EXPECT_TRUE(IsExtensionName(name)) << name;
      EXPECT_GE(ordinal, 1000) << name << " takes an ordinal of the public range";
    }
  }
  EXPECT_EQ(std::size(kPublicNames), 46u);
}

} // namespace
} // namespace vntts::test
