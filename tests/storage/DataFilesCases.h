// What the tests of the data files share: files in memory, and a record written by hand with the note in it.
#pragma once

#include <gtest/gtest.h>

#include "tests/storage/Samples.h"

struct DataFilesTest : testing::Test {
    MemoryFiles folder;
    DataFiles data{folder.files(), westernPage()};

    std::string& file(TextView name) { return folder.content[Text(name)]; }
};

/// A record in which every field differs from those next to it.
inline std::string handWrittenRecord() {
    using namespace std::string_literals;
    std::string bytes =
        "*         "        // alarm date
        "07:30:00"          // alarm time
        "05"                // day
        "24/12"             // day and month
        "\xFF\xFF\x80\x00"  // colour 8454143
        "\xFF\xFF"          // closed
        "\x62\x07\x00\x00"  // height 1890
        "\x00\x00"          // not iconized
        "eachyear  "        // interval
        "\xE2\xFF\xFF\xFF"  // x -30
        "\xFF\xFF"          // mute
        "\x03\x00\x00\x00"  // body in record 3
        "Caf\xE9"s;         // title
    bytes += std::string(128 - 4, ' ');
    bytes +=
        "\x2C\x01\x00\x00"                                            // y 300
        "\xFF\xFF"                                                    // topmost
        "\x5E\x0B\x00\x00"                                            // width 2910
        "\x08\x00"                                                    // weekday 8
        "\xFE\xFF"                                                    // repeat count -2
        "MM"                                                          // repeat unit
        "\xFF\xFF\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\xFF\xFF"s;  // Monday and Sunday
    return bytes;
}

inline NoteRecord handWrittenNote() {
    NoteRecord note;
    note.Titolo = u"Caf\u00e9";
    note.backcolor = 8454143;
    note.x = -30;
    note.y = 300;
    note.width = 2910;
    note.height = 1890;
    note.topmost = true;
    note.closed = true;
    note.mute = true;
    note.alarmdate = u"*";
    note.alarmtime = u"07:30:00";
    note.alarmday = u"05";
    note.alarmdaymonth = u"24/12";
    note.interval = u"eachyear";
    note.alarmweekday = 8;
    note.alarmrepeatnumber = -2;
    note.alarmrepeatevery = u"MM";
    note.weekdays = {true, false, false, false, false, false, true};
    note.memo = 3;
    return note;
}
