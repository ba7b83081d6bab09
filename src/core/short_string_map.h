// SPDX-License-Identifier: MIT
#pragma once
// A map from short byte strings (words) to values, for the caches of the text paths: they ask
// once per word of a text, millions of times for a book, and almost every question is
// answered from a few thousand distinct words. Keys live in one buffer and slots in one flat
// array probed linearly, so a lookup touches two cache lines instead of a chain of nodes.
// Entries are never removed one by one; Clear empties the whole map. Callers bound what they
// keep (the offsets are 32-bit), which also keeps a text of random bytes from filling memory.
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

// A quick hash of a short byte string, eight bytes at a time. The last, partial group is read
// with overlapping loads inside the string rather than a copy of variable length.
inline std::uint64_t HashShortString(std::string_view s) {
  constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15ull;
  const auto load8 = [](const char* p) {
    std::uint64_t v;
    std::memcpy(&v, p, 8);
    return v;
  };
  const auto load4 = [](const char* p) {
    std::uint32_t v;
    std::memcpy(&v, p, 4);
    return std::uint64_t{v};
  };
  const std::size_t n = s.size();
  const char* p = s.data();
  std::uint64_t h = n * kMultiplier;
  auto mix = [&](std::uint64_t chunk) {
    h = (h ^ chunk) * kMultiplier;
    h ^= h >> 32;
  };
  if (n >= 8) {
    std::size_t i = 0;
    for (; i + 8 <= n; i += 8)
      mix(load8(p + i));
    if (i < n) mix(load8(p + n - 8));
  } else if (n >= 4) {
    mix(load4(p) | load4(p + n - 4) << 32);
  } else if (n > 0) {
    const auto byte = [&](std::size_t i) {
      return std::uint64_t{static_cast<unsigned char>(p[i])};
    };
    mix(byte(0) | byte(n / 2) << 8 | byte(n - 1) << 16);
  }
  h *= kMultiplier;
  return h ^ (h >> 29);
}

template <typename Value> class ShortStringMap {
public:
  const Value* Find(std::string_view key) const {
    if (slots_.empty()) return nullptr;
    const std::uint32_t hash = SlotHash(key);
    for (std::size_t i = Home(hash);; i = (i + 1) & mask_) {
      const Slot& slot = slots_[i];
      if (slot.hash == 0) return nullptr;
      if (slot.hash == hash && KeyOf(slot) == key) return &values_[slot.value];
    }
  }

  // Starts loading the slot where `key` would be, for a Find of it soon after: a caller that
  // knows its next key hides the memory latency behind the work on the current one.
  void Prefetch(std::string_view key) const {
    if (!slots_.empty()) __builtin_prefetch(&slots_[Home(SlotHash(key))]);
  }

  // Adds a key that is not in the map yet.
  void Insert(std::string_view key, Value value) {
    if ((values_.size() + 1) * 2 > slots_.size()) Grow();
    Slot slot{SlotHash(key), static_cast<std::uint32_t>(keys_.size()),
              static_cast<std::uint32_t>(key.size()), static_cast<std::uint32_t>(values_.size())};
    keys_.append(key);
    values_.push_back(std::move(value));
    Place(slot);
  }

  std::size_t size() const { return values_.size(); }
  void Clear() {
    slots_.clear();
    keys_.clear();
    values_.clear();
    mask_ = 0;
  }

private:
  struct Slot {
    std::uint32_t hash = 0; // 0 marks an empty slot
    std::uint32_t key_offset = 0;
    std::uint32_t key_length = 0;
    std::uint32_t value = 0;
  };

  static std::uint32_t SlotHash(std::string_view key) {
    return static_cast<std::uint32_t>(HashShortString(key) >> 32) | 1u;
  }
  // The lowest bit is always set; the slot comes from the bits above it.
  std::size_t Home(std::uint32_t hash) const { return (hash >> 1) & mask_; }
  std::string_view KeyOf(const Slot& slot) const {
    return std::string_view(keys_).substr(slot.key_offset, slot.key_length);
  }
  void Place(const Slot& slot) {
    std::size_t i = Home(slot.hash);
    while (slots_[i].hash != 0)
      i = (i + 1) & mask_;
    slots_[i] = slot;
  }
  void Grow() {
    std::vector<Slot> old = std::move(slots_);
    slots_.assign(old.empty() ? 1024 : old.size() * 2, Slot{});
    mask_ = slots_.size() - 1;
    for (const Slot& slot : old)
      if (slot.hash != 0) Place(slot);
  }

  std::vector<Slot> slots_;
  std::size_t mask_ = 0;
  std::string keys_;
  std::vector<Value> values_;
};

} // namespace vntts
