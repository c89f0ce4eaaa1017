#include "note/NoteKeys.h"

#include <gtest/gtest.h>

namespace {

constexpr unsigned kTab = 9, kEnter = 13, kEscape = 27, kSpace = 32, kLeft = 37, kUp = 38, kRight = 39,
                   kDown = 40, kDelete = 46, kMenuKey = 93, kF1 = 112, kF2 = 113, kF4 = 115, kF6 = 117;

constexpr NoteKeyInput kResting{};
constexpr NoteKeyInput kEditing{true, false};
constexpr NoteKeyInput kRinging{false, true};
constexpr NoteKeyInput kRingingWhileEdited{true, true};
constexpr NoteKeyInput kResizing{false, false, true};
constexpr NoteKeyInput kRingingAfterAnEdit{false, true, false, true};

NoteAction plain(unsigned key, const NoteKeyInput& input = kResting) {
    return noteAction({key}, input);
}
NoteAction withShift(unsigned key, const NoteKeyInput& input = kResting) {
    return noteAction({key, true}, input);
}
NoteAction withCtrl(unsigned key, const NoteKeyInput& input = kResting) {
    return noteAction({key, false, true}, input);
}
NoteAction withCtrlShift(unsigned key) {
    return noteAction({key, true, true}, kResting);
}
NoteAction withAltGr(unsigned key) {
    return noteAction({key, false, true, true}, kResting);
}

TEST(NoteKeys, OfTheMenu) {
    EXPECT_EQ(plain(kDelete), NoteAction::Delete);
    EXPECT_EQ(withCtrl('N'), NoteAction::New);
    EXPECT_EQ(plain(kF2), NoteAction::Edit);
    EXPECT_EQ(plain(kF4), NoteAction::Alarm);
    for (const bool shift : {false, true}) {
        for (const bool control : {false, true})
            EXPECT_EQ(noteAction({kMenuKey, shift, control}, kResting), NoteAction::OpenMenu);
    }
}

TEST(NoteKeys, ThatAreNotInTheMenu) {
    EXPECT_EQ(withShift(kF2), NoteAction::EditTitle);
    EXPECT_EQ(withShift(kF4), NoteAction::SwapStrip);
    EXPECT_EQ(plain(kF6), NoteAction::NextNote);
    EXPECT_EQ(withShift(kF6), NoteAction::PreviousNote);
    EXPECT_EQ(withCtrl(kTab), NoteAction::NextNote);
    EXPECT_EQ(withCtrlShift(kTab), NoteAction::PreviousNote);
    EXPECT_EQ(withCtrl(kLeft), NoteAction::MoveLeft);
    EXPECT_EQ(withCtrl(kUp), NoteAction::MoveUp);
    EXPECT_EQ(withCtrl(kRight), NoteAction::MoveRight);
    EXPECT_EQ(withCtrl(kDown), NoteAction::MoveDown);
}

TEST(NoteKeys, WithSomethingElseHeldMeanSomethingElse) {
    for (const unsigned key : {kDelete, kF2, kF4})
        EXPECT_EQ(withCtrl(key), NoteAction::None) << key;
    EXPECT_EQ(withShift(kDelete), NoteAction::None);
    EXPECT_EQ(plain('N'), NoteAction::None);
    EXPECT_EQ(withCtrlShift('N'), NoteAction::None);
    EXPECT_EQ(withAltGr('N'), NoteAction::None) << "types a letter on many keyboards";
    EXPECT_EQ(withAltGr(kLeft), NoteAction::None);
    EXPECT_EQ(plain(kF1), NoteAction::None);
    for (const unsigned key : {kTab, kEnter, kLeft, kUp, kRight, kDown}) {
        EXPECT_EQ(plain(key), NoteAction::None) << key;
        EXPECT_EQ(withShift(key), NoteAction::None) << key;
    }
}

TEST(NoteKeys, AnOpenEditorKeepsItsOwn) {
    EXPECT_EQ(plain(kDelete, kEditing), NoteAction::None);
    for (const unsigned key : {kLeft, kUp, kRight, kDown})
        EXPECT_EQ(withCtrl(key, kEditing), NoteAction::None) << key;
    EXPECT_EQ(plain(kF2, kEditing), NoteAction::Edit);
    EXPECT_EQ(withShift(kF2, kEditing), NoteAction::EditTitle);
    EXPECT_EQ(withCtrl(kTab, kEditing), NoteAction::NextNote);
    EXPECT_EQ(withCtrl('N', kEditing), NoteAction::New);
}

TEST(NoteKeys, WhileItIsResizedNoneOfThemDoesAnythingElseToTheNote) {
    for (const unsigned key : {kDelete, kF2, kF4})
        EXPECT_EQ(plain(key, kResizing), NoteAction::None) << key << ", which is no arrow";
    EXPECT_EQ(withShift(kF2, kResizing), NoteAction::None);
    EXPECT_EQ(withCtrl('N', kResizing), NoteAction::None);
    EXPECT_EQ(plain(kMenuKey, kResizing), NoteAction::OpenMenu) << "which shows the mode and ends it";
    EXPECT_EQ(plain(kF6, kResizing), NoteAction::NextNote);
}

TEST(NoteKeys, EscSilencesARingingNoteAndDoesNothingElse) {
    EXPECT_EQ(plain(kEscape, kRinging), NoteAction::Silence);
    EXPECT_EQ(plain(kEscape), NoteAction::None);
    EXPECT_EQ(plain(kEscape, kRingingWhileEdited), NoteAction::None);
    EXPECT_EQ(withCtrl(kEscape, kRinging), NoteAction::None);
    EXPECT_EQ(withShift(kEscape, kRinging), NoteAction::None);
}

TEST(NoteKeys, AKeyThatEndsAnEditDeletesNoRingingNote) {
    for (const unsigned key : {kEnter, kSpace})
        EXPECT_EQ(plain(key, kRinging), NoteAction::None) << key;
    EXPECT_EQ(plain(kEscape, kRingingAfterAnEdit), NoteAction::None);
    NoteKey held{kEscape};
    held.repeated = true;
    EXPECT_EQ(noteAction(held, kRinging), NoteAction::None);
}

}  // namespace
