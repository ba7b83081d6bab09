// SPDX-License-Identifier: MIT
#pragma once
// "Did you mean ...?" for mistyped subcommands and options.
#include <cstddef>
#include <span>
#include <string_view>

namespace vntts::cli {

// Edits (insert, delete, replace, swap two neighbours) that turn a into b.
std::size_t EditDistance(std::string_view a, std::string_view b);

// The name closest to typed when it is close enough to be a slip of the fingers (one edit for
// short names, two from six letters on); empty otherwise.
std::string_view ClosestName(std::string_view typed, std::span<const std::string_view> names);

} // namespace vntts::cli
