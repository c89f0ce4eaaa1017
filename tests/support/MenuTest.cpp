// The rows of a menu: what is shown, what can be chosen, and what happens then.
#include "support/Menu.h"

#include <gtest/gtest.h>

#include <string>

namespace {

MenuRow entry(unsigned id, bool shown = true, bool enabled = true) {
    return {.id = id, .caption = u"x", .shown = shown, .enabled = enabled};
}

/// The ids in order, 0 for separators.
std::vector<unsigned> seen(const Menu& menu) {
    std::vector<unsigned> ids;
    for (const MenuRow& row : shownRows(menu))
        ids.push_back(row.separator ? 0 : row.id);
    return ids;
}

TEST(ShownRows, LeaveOutHiddenOnesAndWhatSeparatesNothing) {
    const MenuRow line = separatorRow();
    using Ids = std::vector<unsigned>;
    EXPECT_EQ(seen({line, entry(1), line, line, entry(2), line}), (Ids{1, 0, 2}));
    EXPECT_EQ(seen({entry(1), line, entry(2, false), line, entry(3)}), (Ids{1, 0, 3}));
    EXPECT_EQ(seen({entry(1, false), line, entry(2)}), (Ids{2}));
    EXPECT_EQ(seen({line, entry(1, false), line}), Ids{});
    EXPECT_EQ(seen({entry(1, true, false)}), Ids{1}) << "a greyed one is shown";
    EXPECT_EQ(seen({}), Ids{});
}

TEST(IsAllowed, RefusesWhatIsHiddenGreyedASeparatorOrMissing) {
    const Menu menu = {entry(1), entry(2, false), entry(3, true, false), separatorRow(4), separatorRow()};
    EXPECT_TRUE(isAllowed(menu, 1));
    for (const unsigned id : {0U, 2U, 3U, 4U, 99U})
        EXPECT_FALSE(isAllowed(menu, id)) << id;
}

TEST(IsAllowed, FindsTheEntriesOfASubmenuAndNotTheSubmenuItself) {
    MenuRow list = entry(0);
    list.items = {entry(7), entry(8, true, false)};
    const Menu menu = {list, entry(1)};
    EXPECT_TRUE(isAllowed(menu, 7));
    EXPECT_TRUE(isAllowed(menu, 1));
    EXPECT_FALSE(isAllowed(menu, 8));
    EXPECT_FALSE(isAllowed(menu, 0));
}

TEST(Answer, DoesWhatTheEntrySaidIfItMayBeChosenNow) {
    std::string done;
    const auto row = [&done](const char* what, bool enabled) {
        MenuRow made = entry(1, true, enabled);
        made.action = [&done, what] { done += what; };
        return Menu{made};
    };
    answer(row("now ", true), row("read ", true), 1);
    EXPECT_EQ(done, "read ");
    answer(row("now ", true), row("greyed when it was read ", false), 1);
    EXPECT_EQ(done, "read greyed when it was read ") << "the present state counts";
    done.clear();
    answer(row("now ", false), row("read ", true), 1);
    answer(row("now ", true), {}, 1);
    answer(row("now ", true), row("read ", true), 2);
    answer({entry(1)}, {entry(1)}, 1);  // nothing to do
    EXPECT_EQ(done, "");
}

TEST(Answer, LetsAnActionDestroyTheMenu) {
    auto menu = std::make_unique<Menu>(Menu{entry(1)});
    int kept = 0;
    (*menu)[0].action = [&menu, &kept, held = std::make_unique<int>(7).release()] {
        menu.reset();
        kept = *held;
        delete held;
    };
    answer(*menu, *menu, 1);
    EXPECT_EQ(kept, 7);
}

}  // namespace
