// The draft: what stands in an open editor, kept in one small file beside the program until the edit ends. A
// program that was ended in the middle of an edit finds it at its next start.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "storage/Files.h"
#include "storage/NoteRecord.h"

inline constexpr std::u16string_view kDraftFile = u"KARDEL.TMP";

struct Draft {
    int number = 0;      ///< of the note, 1..50
    bool title = false;  ///< its title is being edited, else its body
    Text text;
    std::uint32_t stored = 0;  ///< tells the note as the store holds it: `storedMark`
};

/// Tells one stored note from another, and from itself after its text was stored anew.
std::uint32_t storedMark(const NoteRecord& stored);

std::string encodeDraft(const Draft& draft);
/// Nothing unless `bytes` are a whole and undamaged draft.
std::optional<Draft> decodeDraft(std::string_view bytes);

/// Writes the draft whole, in place of any other.
bool writeDraft(const Files& files, const Draft& draft);

struct FoundDraft {
    IoStatus status = IoStatus::Absent;  ///< Failed: it cannot be read now, and must be left
    std::optional<Draft> draft;
};
FoundDraft readDraft(const Files& files);

void removeDraft(const Files& files);
