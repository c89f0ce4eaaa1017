#include "storage/NotePlaces.h"

#include <gtest/gtest.h>

namespace {

TEST(NotePlaces, AreReadAsTheyWereWritten) {
    NotePlaces places;
    places.moved = {1, 2, 4, 5, 50};
    EXPECT_EQ(placesText(places, 50), u"50 1 2 4 5 50");
    const auto read = parsePlaces(u"50 1 2 4 5 50", 50);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->moved, places.moved);
    EXPECT_TRUE(read->unfinished);
    EXPECT_TRUE(parsePlaces(u"50 1 2 4 5 50", 5)) << "the count is already the new one";
}

TEST(NotePlaces, AreIgnoredIfTheRegistryHasChangedSince) {
    for (const int counted : {0, 1, 4, 6, 49, 51, -1}) {
        EXPECT_FALSE(parsePlaces(u"50 1 2 4 5 50", counted)) << counted;
    }
    EXPECT_FALSE(parsePlaces(u"1 1 2", 1)) << "more notes than are counted";
}

TEST(NotePlaces, AreIgnoredIfTheyAreNoListOfPlaces) {
    for (const TextView text : {u"", u"3", u"3 ", u"3 2 1", u"3 1 1", u"3 0 1", u"3 -1 2", u"3 2 51",
                                u"3 a b", u"3  1 2", u"True"}) {
        EXPECT_FALSE(parsePlaces(text, 3)) << testing::PrintToString(Text(text));
    }
}

}  // namespace
