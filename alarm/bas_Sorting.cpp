#include "alarm/bas_Sorting.h"

#include <utility>

void Sort(std::span<std::int64_t> values) {
    while (values.size() > 1) {
        const std::int64_t pivot = values[values.size() / 2];
        std::size_t low = 0;
        std::size_t high = values.size() - 1;
        // Values equal to the pivot are swapped as well: otherwise many equal ones would make it slow.
        for (;;) {
            while (values[low] < pivot)
                ++low;
            while (pivot < values[high])
                --high;
            if (low >= high) break;
            std::swap(values[low++], values[high--]);
        }
        const std::size_t split = low == high ? low : high + 1;
        // The smaller part is sorted by recursion, the larger one by looping on, which keeps the depth
        // logarithmic.
        const auto first = values.first(split);
        const auto rest = values.subspan(split);
        const bool firstIsSmaller = first.size() < rest.size();
        Sort(firstIsSmaller ? first : rest);
        values = firstIsSmaller ? rest : first;
    }
}
