// The draft of a note: the text in its open editor, stored beside the note until the edit ends. After the
// program was killed in the middle of an edit, the next start finds it.
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
    bool title = false;  ///< its title is being edited rather than its body
    Text text;
    std::uint32_t stored = 0;  ///< identifies the note as the store holds it: `storedMark`

    friend bool operator==(const Draft&, const Draft&) = default;
};

struct FoundDrafts {
    IoStatus status = IoStatus::Absent;  ///< Failed: some cannot be read now and must be left alone
    std::vector<Draft> drafts;
};

/// A number by which a stored note differs from others, and from itself once its text has been stored again.
/// It is the same in either store.
std::uint32_t storedMark(const NoteRecord& stored);

/// A number by which a draft differs from others, and from itself with another text.
std::uint32_t draftMark(const Draft& draft);

/// The note that a draft belongs to: the one with its number if that is still the same note, otherwise the
/// nearest one before it, since deletions move notes there. 0: none. `marks` are the marks of notes 1, 2, ...
int noteOf(const Draft& draft, std::span<const std::uint32_t> marks);

/// The content of kDraftFile, with an entry per draft.
std::string encodeDrafts(std::span<const Draft> drafts);
/// None unless `bytes` is a complete and undamaged list.
std::vector<Draft> decodeDrafts(std::string_view bytes);

/// A draft as the value of a note's section, without the number.
Text draftText(const Draft& draft);
/// None when the text is damaged.
std::optional<Draft> parseDraft(TextView text, int number);
