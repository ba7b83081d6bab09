// SPDX-License-Identifier: MIT
#include "engine/unit_cache.h"

namespace vntts {

bool CachedRecordings::Touch(std::string_view key, std::vector<std::int16_t>* copy) const {
  std::lock_guard lock(mutex_);
  const auto it = index_.find(key);
  if (it == index_.end()) return false;
  entries_.splice(entries_.begin(), entries_, it->second);
  if (copy) *copy = it->second->samples;
  return true;
}

bool CachedRecordings::Fetch(std::string_view key, std::vector<std::int16_t>& samples) const {
  if (Touch(key, &samples)) return true;
  // Decoding happens outside the lock so that a slow unit never holds up another thread.
  if (!source_.Fetch(key, samples)) return false;
  if (samples.size() * sizeof(std::int16_t) <= budget_) Keep(key, std::vector(samples));
  return true;
}

bool CachedRecordings::Prepare(std::string_view key, std::vector<std::int16_t>& scratch) const {
  if (Touch(key, nullptr)) return true;
  if (!source_.Fetch(key, scratch)) return false;
  if (scratch.size() * sizeof(std::int16_t) <= budget_) Keep(key, std::move(scratch));
  return true;
}

void CachedRecordings::Keep(std::string_view key, std::vector<std::int16_t>&& samples) const {
  const std::size_t size = samples.size() * sizeof(std::int16_t);
  std::lock_guard lock(mutex_);
  if (index_.find(key) != index_.end()) return; // another thread cached it meanwhile
  entries_.push_front({std::string(key), std::move(samples)});
  index_.emplace(entries_.front().key, entries_.begin());
  bytes_ += size;
  while (bytes_ > budget_ && !entries_.empty()) {
    const Entry& last = entries_.back();
    bytes_ -= last.samples.size() * sizeof(std::int16_t);
    index_.erase(last.key);
    entries_.pop_back();
  }
}

std::size_t CachedRecordings::CachedBytes() const {
  std::lock_guard lock(mutex_);
  return bytes_;
}

std::size_t CachedRecordings::CachedUnits() const {
  std::lock_guard lock(mutex_);
  return entries_.size();
}

} // namespace vntts
