// SPDX-License-Identifier: MIT
// UTF-8 to internal text on about 10 MB of Vietnamese prose, beside glibc iconv's UTF-8 to
// CP1258 on the same text; plus the other directions and a size sweep for linear time.
#include <benchmark/benchmark.h>
#include <iconv.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include "text/charset/charsets.h"

namespace {

// Common syllables, so the mix of toned, modified and plain letters is that of real text.
constexpr std::array<std::string_view, 120> kSyllables = {
    "và",   "của",  "có",   "là",    "không", "những", "một",  "người", "được",   "trong", "cho",
    "các",  "với",  "đã",   "này",   "để",    "khi",   "đến",  "nhiều", "từ",     "thì",   "ra",
    "lại",  "năm",  "như",  "nói",   "sẽ",    "vào",   "đi",   "làm",   "ông",    "bà",    "anh",
    "chị",  "em",   "tôi",  "chúng", "ta",    "họ",    "mình", "nước",  "việt",   "nam",   "hà",
    "nội",  "sài",  "gòn",  "thành", "phố",   "đường", "nhà",  "cửa",   "trường", "học",   "sinh",
    "viên", "thầy", "cô",   "giáo",  "bài",   "tiếng", "chữ",  "sách",  "báo",    "tin",   "tức",
    "thời", "gian", "ngày", "tháng", "giờ",   "phút",  "sáng", "chiều", "tối",    "đêm",   "mưa",
    "nắng", "gió",  "biển", "sông",  "núi",   "rừng",  "cây",  "hoa",   "lá",     "trái",  "đất",
    "trời", "mây",  "ăn",   "uống",  "ngủ",   "chơi",  "đọc",  "viết",  "hiểu",   "biết",  "nghĩ",
    "muốn", "đẹp",  "xấu",  "tốt",   "mới",   "cũ",    "lớn",  "nhỏ",   "dài",    "ngắn",  "xa",
    "gần",  "ở",    "trên", "dưới",  "giữa",  "ngoài", "quốc", "gia",   "kinh",   "tế",
};
constexpr std::array<std::string_view, 12> kOpenings = {
    "Hôm", "Chúng", "Người", "Trong", "Đây", "Các", "Những", "Ông", "Bà", "Việt", "Năm", "Ở",
};

std::string MakeProse(std::size_t bytes) {
  std::mt19937 random(1258);
  std::string text;
  text.reserve(bytes + 256);
  while (text.size() < bytes) {
    text += kOpenings[random() % kOpenings.size()];
    const int words = 8 + static_cast<int>(random() % 13);
    for (int w = 0; w < words; ++w) {
      text += (random() % 9 == 0) ? ", " : " ";
      text += kSyllables[random() % kSyllables.size()];
    }
    if (random() % 7 == 0) text += " 2024";
    text += (random() % 5 == 0) ? ".\n" : ". ";
  }
  return text;
}

const std::string& Prose() {
  static const std::string text = MakeProse(10u << 20);
  return text;
}

void BM_Utf8ToInternal(benchmark::State& state) {
  const std::string& text = Prose();
  for (auto _ : state) {
    std::string internal = vntts::Utf8ToInternal(text);
    benchmark::DoNotOptimize(internal.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_Utf8ToInternal)->Unit(benchmark::kMillisecond);

void BM_IconvUtf8ToCp1258(benchmark::State& state) {
  const std::string& text = Prose();
  iconv_t cd = iconv_open("CP1258", "UTF-8");
  if (cd == reinterpret_cast<iconv_t>(-1)) {
    state.SkipWithError("iconv has no CP1258");
    return;
  }
  std::string out(text.size() * 2, '\0');
  for (auto _ : state) {
    char* src = const_cast<char*>(text.data());
    std::size_t src_left = text.size();
    char* dst = out.data();
    std::size_t dst_left = out.size();
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    if (iconv(cd, &src, &src_left, &dst, &dst_left) == static_cast<std::size_t>(-1)) {
      state.SkipWithError("iconv failed on the prose");
      break;
    }
    iconv(cd, nullptr, nullptr, &dst, &dst_left);
    benchmark::DoNotOptimize(out.data());
  }
  iconv_close(cd);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_IconvUtf8ToCp1258)->Unit(benchmark::kMillisecond);

void BM_InternalToUtf8(benchmark::State& state) {
  const std::string internal = vntts::Utf8ToInternal(Prose());
  for (auto _ : state) {
    std::string utf8 = vntts::InternalToUtf8(internal);
    benchmark::DoNotOptimize(utf8.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * internal.size()));
}
BENCHMARK(BM_InternalToUtf8)->Unit(benchmark::kMillisecond);

// Time against input size: the fitted complexity should come out as O(N).
void BM_Utf8ToInternalBySize(benchmark::State& state) {
  const std::string text = Prose().substr(0, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::string internal = vntts::Utf8ToInternal(text);
    benchmark::DoNotOptimize(internal.data());
  }
  state.SetComplexityN(state.range(0));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_Utf8ToInternalBySize)
    ->RangeMultiplier(4)
    ->Range(16 << 10, 8 << 20)
    ->Complexity(benchmark::oN)
    ->Unit(benchmark::kMillisecond);

// One line at a time, as a host that speaks line by line calls the speak path.
void BM_Utf8ToInternalOneLine(benchmark::State& state) {
  const std::string line = Prose().substr(0, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::string internal = vntts::Utf8ToInternal(line);
    benchmark::DoNotOptimize(internal.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * line.size()));
}
BENCHMARK(BM_Utf8ToInternalOneLine)->Arg(80)->Arg(1000)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
