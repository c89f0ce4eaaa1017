#include "storage/NotePlaces.h"

#include <algorithm>
#include <functional>

#include "storage/NoteRecord.h"
#include "support/Number.h"

int NotePlaces::of(int number) const {
    const auto known = static_cast<int>(moved.size());
    if (known == 0) return number;
    return number <= known ? moved[static_cast<std::size_t>(number - 1)] : moved.back() + number - known;
}

void NotePlaces::name(int count) {
    while (static_cast<int>(moved.size()) < count) {
        const int next = static_cast<int>(moved.size()) + 1;
        moved.push_back(of(next));
    }
}

void NotePlaces::remove(int number, int left) {
    unfinished = true;
    name(left + 1);
    moved.erase(moved.begin() + (number - 1));
}

void NotePlaces::settled() {
    unfinished = false;
    moved.clear();
}

Text placesText(const NotePlaces& places, int counted) {
    Text text = decimal(counted);
    for (const int place : places.moved)
        text += u" " + decimal(place);
    return text;
}

std::optional<NotePlaces> parsePlaces(TextView text, int counted) {
    const std::int32_t countedThen = leadingInt32(text);
    NotePlaces places;
    for (std::size_t blank = text.find(u' '); blank != TextView::npos; blank = text.find(u' ', blank + 1)) {
        places.moved.push_back(leadingInt32(text.substr(blank + 1)));
    }
    const std::vector<int>& moved = places.moved;
    const bool ascending = std::is_sorted(moved.begin(), moved.end(), std::less_equal<>());
    if (moved.empty() || !ascending || moved.front() < 1 || moved.back() > kMaxNotes) return std::nullopt;
    const int staying = static_cast<int>(moved.size());
    if (counted != staying && (counted != countedThen || counted < staying)) return std::nullopt;
    places.unfinished = true;
    return places;
}
