// SPDX-License-Identifier: MIT
// `vntts words` as a user runs it: the built program, its arguments, standard input and output.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

const fs::path kProgram = VNTTS_BINARY_DIR "/bin/vntts";

struct Outcome {
  int status = -1;
  std::string out;
};

// Runs `vntts words ARGS` with `input` on standard input (from a file, so that the shell does
// not touch the bytes).
Outcome Words(const std::string& args, const std::string& input = {}) {
  const fs::path in = fs::temp_directory_path() / ("vntts_words_in_" + std::to_string(::getpid()));
  std::ofstream(in, std::ios::binary) << input;
  const std::string command =
      "'" + kProgram.string() + "' words " + args + " < '" + in.string() + "' 2>/dev/null";
  Outcome run;
  if (FILE* pipe = ::popen(command.c_str(), "r")) {
    char buffer[4096];
    for (std::size_t got; (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
      run.out.append(buffer, got);
    const int status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  fs::remove(in);
  return run;
}

class WordsCommand : public ::testing::Test {
protected:
  void SetUp() override {
    if (!fs::exists(kProgram)) GTEST_SKIP() << "the vntts program is not built";
  }
};

TEST_F(WordsCommand, PrintsOneLinePerSentenceFromArgumentsOrStandardInput) {
  struct Case {
    const char* args;
    const char* input;
    const char* out;
  };
  const Case cases[] = {
      {"--no-stores 'Họp lúc 14:30.' 'Giá 50.000đ'", "",
       "họp lúc mười bốn giờ ba mươi phút\ngiá năm mươi nghìn đồng\n"},
      {"--no-stores", "Ngày 2/9/1945, 5km\n\n3/4",
       "ngày hai tháng chín năm một nghìn chín trăm bốn mươi lăm\nnăm ki lô mét\nba trên bốn\n"},
      {"--no-stores --marks 'TP 12'", "", "tê/P pê/P mười/A hai/A\n"},
      {"--no-stores --encoding vni", "Vie\xE4t Nam.", "vi\xE1\xBB\x87t nam\n"},
      {"--no-stores --encoding cp1258", "Vi\xEA\xF2t", "vi\xE1\xBB\x87t\n"},
      {"--no-stores", "", ""},
      {"--no-stores", "...!!!", ""},
  };
  for (const auto& c : cases) {
    const Outcome run = Words(c.args, c.input);
    EXPECT_EQ(run.status, 0) << c.args;
    EXPECT_EQ(run.out, c.out) << c.args << " / " << c.input;
  }
}

TEST_F(WordsCommand, UsageErrorsExitWithTwo) {
  for (const char* args : {"--encoding latin1 x", "--encoding", "--bogus x", "--data"})
    EXPECT_EQ(Words(args).status, 2) << args;
  const Outcome help = Words("--help");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("usage: vntts words"), std::string::npos);
}

TEST_F(WordsCommand, ReadsTheDefinitionsOfTheDataFolder) {
  const vntts::test::TempFolder data;
  fs::create_directories(data / "Define");
  data.Write("Define/mine.def", "XYZ\tcon me\xF8o\n");
  const Outcome run = Words("--data '" + data.path().string() + "' 'XYZ xyz ABC'");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "con mèo con mèo a bê xê\n");
}

TEST_F(WordsCommand, TheDefaultStoresReadLabelsAndAbbreviations) {
  if (!fs::exists(VNTTS_BINARY_DIR "/bin/index/Define"))
    GTEST_SKIP() << "the build has no data folder";
  const Outcome run =
      Words("--data '" VNTTS_BINARY_DIR "/bin/index' 'Tel: 0912-345' 'UBND TP Huế'");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "điện thoại\nkhông chín một hai ba bốn năm ủy ban nhân dân thành phố huế\n");
}

} // namespace
