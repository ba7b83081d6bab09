// SPDX-License-Identifier: MIT
#include "engine/event_order.h"

#include <algorithm>

namespace vntts {

std::size_t InsertEventInOrder(std::vector<EventRecord>& list, const EventRecord& record) {
  const auto at = std::find_if(list.begin(), list.end(),
                               [&](const EventRecord& e) { return e.position >= record.position; });
  list.insert(at, record);
  return list.size();
}

} // namespace vntts
