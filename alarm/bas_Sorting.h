// The program's general sorting routine.
#pragma once

#include <cstdint>
#include <span>

/// Sorts the values in place, smallest first. The order of equal values is not kept.
void Sort(std::span<std::int64_t> values);
