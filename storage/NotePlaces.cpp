#include "storage/NotePlaces.h"

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
