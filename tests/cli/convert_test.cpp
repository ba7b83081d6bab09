// SPDX-License-Identifier: MIT
// `vntts convert` as a user runs it: stdin to stdout, exit status, messages.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/temp_folder.h"

namespace {

struct Result {
  int status = -1;
  std::string out;
  std::string err;
};

class ConvertCommand : public ::testing::Test {
protected:
  Result Convert(const std::string& args, const std::string& input) {
    dir_.Write("in", input);
    const std::string cmd = std::string("'") + VNTTS_PROGRAM + "' convert " + args + " < '" +
                            (dir_ / "in").string() + "' > '" + (dir_ / "out").string() + "' 2> '" +
                            (dir_ / "err").string() + "'";
    const int raw = std::system(cmd.c_str());
    Result run;
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    run.out = dir_.Read("out");
    run.err = dir_.Read("err");
    return run;
  }

  vntts::test::TempFolder dir_;
};

TEST_F(ConvertCommand, Utf8ToTheInternalEncodingByIndexOrName) {
  const std::string expected = "\x56\x69\x65\xE4\x74";
  for (const char* to : {"3", "'VNI-Windows ANSI'", "'vni-windows ansi'", "VNI-WINDOWSANSI"}) {
    const Result run = Convert(std::string("--from utf-8 --to ") + to, "Việt");
    EXPECT_EQ(run.status, 0) << to << run.err;
    EXPECT_EQ(run.out, expected) << to;
  }
}

TEST_F(ConvertCommand, RoundTripsThroughEveryRecordAndUtf16) {
  const std::string text = "Tiếng Việt: Đường phố Hà Nội, ngày 2 tháng 9.\nỶ Ỹ Ỵ ắ ằ ẳ ẵ ặ\n";
  for (int r = 0; r < 19; ++r) {
    const Result there = Convert("--from utf-8 --to " + std::to_string(r), text);
    ASSERT_EQ(there.status, 0) << r << there.err;
    const Result back = Convert("--from " + std::to_string(r) + " --to utf-16", there.out);
    ASSERT_EQ(back.status, 0) << r;
    EXPECT_EQ(back.out.substr(0, 2), "\xFF\xFE");
    const Result utf8 = Convert("--from utf-16 --to utf-8", back.out);
    // DHBK 1 byte puts Đ on '}', and brackets are never read as letters.
    std::string expected = text;
    if (r == 9) expected.replace(expected.find("Đ"), std::string("Đ").size(), "}");
    EXPECT_EQ(utf8.out, expected) << "record " << r;
  }
}

TEST_F(ConvertCommand, UnknownEncodingIsAUsageError) {
  Result run = Convert("--from utf-8 --to klingon", "abc");
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("unknown encoding 'klingon'"), std::string::npos) << run.err;
  EXPECT_EQ(run.out, "");
  run = Convert("--from 19 --to utf-8", "abc");
  EXPECT_EQ(run.status, 2);
  run = Convert("--from utf-8", "abc");
  EXPECT_EQ(run.status, 2);
}

TEST_F(ConvertCommand, BrokenInputIsConvertedReplacedAndReported) {
  const Result run = Convert("--from utf-8 --to utf-8", "a\xFFz");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "a\xEF\xBF\xBDz");
  EXPECT_NE(run.err.find("1 broken sequence"), std::string::npos) << run.err;
  const Result legacy = Convert("--from utf-8 --to viscii", "a\xFFz \xE2\x82\xAC");
  EXPECT_EQ(legacy.status, 1);
  // € has no place in VISCII (the internal encoding keeps it at 80).
  EXPECT_EQ(legacy.out, "a?z ?");
  EXPECT_NE(legacy.err.find("1 character(s) have no place"), std::string::npos) << legacy.err;
}

TEST_F(ConvertCommand, EmptyInputGivesEmptyOutput) {
  const Result run = Convert("--from utf-8 --to 17", "");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "");
}

} // namespace
