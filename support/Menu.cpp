#include "support/Menu.h"

namespace {

const MenuRow* rowOf(const Menu& menu, unsigned id) {
    for (const MenuRow& row : menu) {
        if (row.id == id && !row.separator && row.items.empty()) return &row;
        if (const MenuRow* const inner = rowOf(row.items, id)) return inner;
    }
    return nullptr;
}

}  // namespace

MenuRow separatorRow(unsigned id) {
    MenuRow row;
    row.id = id;
    row.caption = u"-";
    row.separator = true;
    return row;
}

Menu shownRows(const Menu& menu) {
    Menu shown;
    for (const MenuRow& row : menu) {
        const bool afterEntry = !shown.empty() && !shown.back().separator;
        if (row.separator ? afterEntry : row.shown) shown.push_back(row);
    }
    if (!shown.empty() && shown.back().separator) shown.pop_back();
    return shown;
}

bool isAllowed(const Menu& menu, unsigned id) {
    const MenuRow* const row = rowOf(menu, id);
    return row != nullptr && row->shown && row->enabled;
}

void answer(const Menu& now, const Menu& read, unsigned id) {
    if (!isAllowed(now, id)) return;
    const MenuRow* const row = rowOf(read, id);
    if (row == nullptr || !row->action) return;
    const std::function<void()> action = row->action;
    action();
}
