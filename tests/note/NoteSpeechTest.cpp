#include "note/NoteSpeech.h"

#include <gtest/gtest.h>

namespace {

TEST(NoteSpeech, OfAPlainNoteIsItsTitle) {
    EXPECT_EQ(spokenNote({u"Shopping"}), u"Shopping");
}

TEST(NoteSpeech, ANoteWithoutATitleHasANameToo) {
    for (const TextView blank : {TextView(u""), TextView(u"  \t")}) {
        EXPECT_EQ(spokenTitle(blank), u"Untitled");
        EXPECT_EQ(spokenNote({blank}), u"Untitled");
    }
}

TEST(NoteSpeech, SaysWhatIsParticularTheMostUrgentFirst) {
    NoteSpeechInput note{u"Tea"};
    note.armed = true;
    EXPECT_EQ(spokenNote(note), u"Tea, alarm set");
    note.iconized = true;
    note.topmost = true;
    EXPECT_EQ(spokenNote(note), u"Tea, alarm set, iconized, always on top");
    note.ringing = true;
    EXPECT_EQ(spokenNote(note), u"Tea, alarm rings, iconized, always on top");
    EXPECT_EQ(spokenNote({u"a", false, false, false, false, true}), u"a, being resized");
}

}  // namespace
