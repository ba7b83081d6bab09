// SPDX-License-Identifier: MIT
#pragma once
// Decoded recordings kept for reuse. Speech repeats itself: a few hundred syllables make up
// most of any Vietnamese text, and decoding a compressed recording costs far more than copying
// it. The cache keeps the most recently used units up to a byte budget and forgets the least
// recently used beyond it; misses are not remembered (the fallback rules ask many keys that do
// not exist, and those answers are cheap). Safe to share between threads.
#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/recording_source.h"

namespace vntts {

class CachedRecordings final : public RecordingSource {
public:
  // About 5 MB: several hundred syllables of a typical voice.
  static constexpr std::size_t kDefaultBudgetBytes = 5u << 20;

  explicit CachedRecordings(const RecordingSource& source,
                            std::size_t budget_bytes = kDefaultBudgetBytes)
      : source_(source), budget_(budget_bytes) {}

  bool Has(std::string_view key) const override { return source_.Has(key); }
  bool Fetch(std::string_view key, std::vector<std::int16_t>& samples) const override;
  // A cached unit is only marked as used; another is decoded into the cache without a copy.
  bool Prepare(std::string_view key, std::vector<std::int16_t>& scratch) const override;

  std::size_t CachedBytes() const;
  std::size_t CachedUnits() const;

private:
  struct Entry {
    std::string key;
    std::vector<std::int16_t> samples;
  };
  using List = std::list<Entry>;

  // Moves a cached unit to the front of the list, copying its samples when `copy` is given;
  // false when it is not cached.
  bool Touch(std::string_view key, std::vector<std::int16_t>* copy) const;
  // Keeps a decoded unit (the caller's vector is taken over) unless another thread did first.
  void Keep(std::string_view key, std::vector<std::int16_t>&& samples) const;

  const RecordingSource& source_;
  const std::size_t budget_;
  mutable std::mutex mutex_;
  mutable List entries_; // most recently used first
  mutable std::unordered_map<std::string_view, List::iterator> index_;
  mutable std::size_t bytes_ = 0;
};

} // namespace vntts
