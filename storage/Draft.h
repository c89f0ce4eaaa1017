// The draft of a note: what stands in its open editor, kept beside the note until the edit ends. A program
// that was ended in the middle of an edit finds it at its next start.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "storage/Files.h"
#include "storage/NoteRecord.h"

/// The file that holds the drafts of notes in local files.
inline constexpr std::u16string_view kDraftFile = u"KARDEL.TMP";

struct Draft {
    int number = 0;      ///< of the note, 1..50
    bool title = false;  ///< its title is being edited, else its body
    Text text;
    std::uint32_t stored = 0;  ///< recognises the note as the store holds it: `storedMark`

    friend bool operator==(const Draft&, const Draft&) = default;
};

struct FoundDrafts {
    IoStatus status = IoStatus::Absent;  ///< Failed: they cannot be read now, and must be left
    std::vector<Draft> drafts;
};

/// Tells one stored note from another, and from itself after its text was stored anew.
std::uint32_t storedMark(const NoteRecord& stored);

/// Tells one draft from another, and from one with another text.
std::uint32_t draftMark(const Draft& draft);

/// The note that a draft belongs to: its own number if that still is the note it was, otherwise the nearest
/// one before it, where a deletion moves it. 0: none. `marks` are the marks of notes 1, 2, ...
int noteOf(const Draft& draft, std::span<const std::uint32_t> marks);

/// The content of kDraftFile: an entry per draft.
std::string encodeDrafts(std::span<const Draft> drafts);
/// Nothing unless `bytes` are a whole and undamaged list.
std::vector<Draft> decodeDrafts(std::string_view bytes);

/// A draft as the value of a note's section, without the number.
Text draftText(const Draft& draft);
/// None when the text is damaged.
std::optional<Draft> parseDraft(TextView text, int number);
