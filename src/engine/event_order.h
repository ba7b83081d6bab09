// SPDX-License-Identifier: MIT
#pragma once
// The order of the event list: by position, and a new record goes before the records already
// at its position, so that two client events at one position fire in the reverse order of
// adding. The speak driver relies on this too: the sentence boundary it adds last, at position
// 0, fires before the sentence's first word.
#include <cstddef>
#include <vector>

#include "audio/event_record.h"

namespace vntts {

// Inserts a copy of the record; returns the number of records in the list afterwards.
std::size_t InsertEventInOrder(std::vector<EventRecord>& list, const EventRecord& record);

} // namespace vntts
