// Notes with alarms on a live desktop, in both stores, with a clock that the test sets. Sounds are counted,
// not played.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/WinText.h"
#include "tests/support/Plain.h"
#include "tests/window/TestNotes.h"

inline const Instant kDue = instantOf({2026, 6, 15}, {12, 0, 10});  // ten seconds after the desk's start

inline Instant later(std::int64_t seconds) {
    return {kDue.seconds + seconds};
}

inline NoteRecord once(TextView title) {
    NoteRecord note = plainNote(title);
    note.alarmdate = u"15/06/2026";
    note.alarmtime = u"12:00:10";
    return note;
}

inline NoteRecord every(TextView title, TextView interval) {
    NoteRecord note = once(title);
    note.alarmdate = u"*";
    note.interval = interval;
    if (interval == u"eachmonth") note.alarmday = u"15";
    if (interval == u"eachyear") note.alarmdaymonth = u"15/06";
    return note;
}

inline NoteRecord repeating(TextView title, std::int16_t number, TextView unit) {
    NoteRecord note = once(title);
    note.alarmrepeatnumber = number;
    note.alarmrepeatevery = unit;
    return note;
}

inline NoteRecord weekly(TextView title, std::int16_t weekday) {
    NoteRecord note = once(title);
    note.alarmweekday = weekday;
    return note;
}

inline bool stripShown(const fpost& note) {
    return (GetWindowLongPtrW(note.pic_time, GWL_STYLE) & static_cast<LONG_PTR>(WS_VISIBLE)) != 0;
}

inline std::string strip(const fpost& note) {
    return plain(windowText(note.pic_time));
}

/// A press on a part of a note, as the message that its window gets.
inline void press(HWND part, UINT message = WM_LBUTTONDOWN) {
    const WPARAM button = message == WM_LBUTTONDOWN ? MK_LBUTTON : MK_RBUTTON;
    SendMessageW(part, message, button, MAKELPARAM(4, 4));
}

class Alarm : public InBothStores {
protected:
    /// A desk on which all of them ring, a second after they were due.
    static std::unique_ptr<TestNotes> ringing(std::vector<NoteRecord> notes,
                                              const GlobalSettings& settings = {}) {
        auto desk = run(std::move(notes), settings);
        desk->clock = {later(1), 0};
        tick(*desk);
        for (const fpost* note : desk->desk->Notes)
            EXPECT_TRUE(note->Alarming()) << plain(note->Titolo());
        return desk;
    }
    /// A tick of half a second for every note that counts down.
    static void tick(TestNotes& desk) {
        const std::vector<fpost*> walk = desk.desk->Notes;
        for (fpost* note : walk)
            note->tmr_Timer();
    }
    static GlobalSettings keeping() {
        GlobalSettings settings;
        settings.DontDeleteWhenPlay = true;
        return settings;
    }
};
