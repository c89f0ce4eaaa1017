#include "core/DeskTicks.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int kMostUnreadTicks = 1024;  // under nine minutes

}  // namespace

void DeskTicks::begin() {
    clock_.jump(desk_.now(), desk_.uptime());
}

void DeskTicks::countingChanged() {
    const bool wanted = desk_.isCounting() || desk_.isUnread();
    if (wanted == ticking_) return;
    ticking_ = wanted;
    // One timer for all notes, as fifty timers would wake the machine a hundred times a second.
    if (wanted) {
        startTicks();
    } else {
        desk_.stopTimer();
    }
}

void DeskTicks::startTicks() {
    ownTimer_ = desk_.startTimer();
    if (!ownTimer_) desk_.tickLater();
}

void DeskTicks::clockSet() {
    const Now now = desk_.now();
    followClock(now, clock_.jump(now, desk_.uptime()) + std::exchange(untold_, 0));
}

void DeskTicks::followClock(Now now, std::int64_t jump) {
    if (jump != 0) desk_.followClock(now, jump);
}

void DeskTicks::tick() {
    if (ticking_ && !ownTimer_) startTicks();
    const Now now = desk_.now();
    const std::int64_t jump = clock_.jump(now, desk_.uptime());
    followClock(now, std::min<std::int64_t>(jump, 0));
    // A leap forward means that the machine slept, and missed alarms ring, unless Windows says that the clock
    // was set; that message may come after this tick.
    untold_ = std::max<std::int64_t>(jump, 0);
    if (untold_ != 0) return;
    desk_.tickNotes();
    readAgain();
}

void DeskTicks::readAgain() {
    if (!desk_.mayRead() || !desk_.isUnread()) return;
    if (++unreadTicks_ < unreadWait_) return;
    // What stays locked is tried ever more rarely, because each failure adds a line to the log.
    unreadTicks_ = 0;
    unreadWait_ = std::min(2 * unreadWait_, kMostUnreadTicks);
    desk_.readAgain();
}
