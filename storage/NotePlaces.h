// Where a store keeps which note.
#pragma once

#include <optional>
#include <vector>

#include "support/Text.h"

/// Where a store keeps the notes. Usually note n stands at place n, which is a section or a record. A removal
/// that the store refused leaves a place without a note, and the later notes stand further on.
struct NotePlaces {
    bool unfinished = false;  ///< the store still has to be reduced to the remaining notes
    std::vector<int> moved;   ///< place of note n at [n - 1]; empty: note n stands at place n

    /// The place of note `number`. Notes beyond those of `moved` follow each other without gaps.
    int of(int number) const;
    /// Fills `moved` with the places of notes 1..`count`, so that each can change by itself.
    void name(int count);
    /// Removes note `number`; `left` remain.
    void remove(int number, int left);
    /// The store has been reduced: note n stands at place n again.
    void settled();
};

/// The places as the registry keeps them while a removal is under way: first its number of notes, then the
/// place of each note that stays.
Text placesText(const NotePlaces& places, int counted);
/// None unless the text is such a list and fits a registry that counts `counted` notes: as many as when it
/// was written, or only those that stay.
std::optional<NotePlaces> parsePlaces(TextView text, int counted);
