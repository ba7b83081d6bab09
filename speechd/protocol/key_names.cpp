// SPDX-License-Identifier: MIT
// Vietnamese words for the symbolic key names of speech-dispatcher's protocol.
#include <charconv>
#include <string_view>

#include "speech_request.h"

namespace vntts::speechd {
namespace {

struct KeyName {
  std::string_view key, words;
};

constexpr KeyName kKeys[] = {
    {"space", "khoảng trắng"},
    {"underscore", "gạch dưới"},
    {"double-quote", "ngoặc kép"},
    {"alt", "alt"},
    {"control", "control"},
    {"hyper", "hyper"},
    {"meta", "meta"},
    {"shift", "shift"},
    {"super", "super"},
    {"backspace", "xoá lùi"},
    {"break", "break"},
    {"delete", "xoá"},
    {"down", "mũi tên xuống"},
    {"end", "end"},
    {"enter", "enter"},
    {"escape", "escape"},
    {"home", "home"},
    {"insert", "insert"},
    {"kp-*", "nhân"},
    {"kp-+", "cộng"},
    {"kp--", "trừ"},
    {"kp-.", "chấm"},
    {"kp-/", "chia"},
    {"kp-enter", "enter"},
    {"left", "mũi tên trái"},
    {"menu", "menu"},
    {"next", "trang sau"},
    {"num-lock", "num lock"},
    {"pause", "pause"},
    {"print", "print screen"},
    {"prior", "trang trước"},
    {"return", "enter"},
    {"right", "mũi tên phải"},
    {"scroll-lock", "scroll lock"},
    {"tab", "tab"},
    {"up", "mũi tên lên"},
    {"window", "phím windows"},
};

} // namespace

std::string KeyWords(std::string_view name) {
  for (const KeyName& k : kKeys)
    if (k.key == name) return std::string(k.words);
  // f1 .. f24 and the digits of the keypad: the number is read as a number.
  const auto number = [](std::string_view digits, int lo, int hi) {
    int n = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), n);
    return error == std::errc{} && end == digits.data() + digits.size() && n >= lo && n <= hi;
  };
  if (name.size() > 1 && name[0] == 'f' && number(name.substr(1), 1, 24))
    return "ép " + std::string(name.substr(1));
  if (name.starts_with("kp-") && number(name.substr(3), 0, 9)) return std::string(name.substr(3));
  return {};
}

} // namespace vntts::speechd
