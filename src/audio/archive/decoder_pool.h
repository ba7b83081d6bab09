// SPDX-License-Identifier: MIT
#pragma once
// Unit decoders kept for reuse by the threads that fetch units at the same time (the speak
// producer and the look-ahead decoders). A decoder is lent to one thread at a time and comes
// back when the loan ends; the pool grows to the number of threads that ever decoded at once.
#include <memory>
#include <mutex>
#include <vector>

#include "audio/mpeg/unit_decoder.h"

namespace vntts {

class DecoderPool {
public:
  class Loan {
  public:
    Loan(DecoderPool& pool, std::unique_ptr<UnitDecoder> decoder)
        : pool_(pool), decoder_(std::move(decoder)) {}
    ~Loan() { pool_.Return(std::move(decoder_)); }
    Loan(const Loan&) = delete;
    Loan& operator=(const Loan&) = delete;
    UnitDecoder& operator*() const { return *decoder_; }

  private:
    DecoderPool& pool_;
    std::unique_ptr<UnitDecoder> decoder_;
  };

  DecoderPool() = default;
  DecoderPool(const DecoderPool&) = delete;
  DecoderPool& operator=(const DecoderPool&) = delete;

  Loan Borrow() {
    std::unique_ptr<UnitDecoder> decoder;
    {
      std::lock_guard lock(mutex_);
      if (!idle_.empty()) {
        decoder = std::move(idle_.back());
        idle_.pop_back();
      }
    }
    if (!decoder) decoder = std::make_unique<UnitDecoder>();
    return Loan(*this, std::move(decoder));
  }

private:
  void Return(std::unique_ptr<UnitDecoder> decoder) {
    if (!decoder) return;
    std::lock_guard lock(mutex_);
    try {
      idle_.push_back(std::move(decoder));
    } catch (const std::bad_alloc&) {
      // Not kept: the next loan makes a new one.
    }
  }

  std::mutex mutex_;
  std::vector<std::unique_ptr<UnitDecoder>> idle_;
};

} // namespace vntts
