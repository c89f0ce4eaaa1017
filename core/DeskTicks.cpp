#include "core/DeskTicks.h"

#include <algorithm>
#include <utility>

#include "core/basPost.h"
#include "resources/resource.h"

namespace {

constexpr int kMostUnreadTicks = 1024;  // under nine minutes

}  // namespace

void DeskTicks::begin() {
    clock_.jump(desk_.host.now(), desk_.host.uptime());
}

void DeskTicks::countingChanged() {
    const bool wanted =
        std::any_of(desk_.Notes.begin(), desk_.Notes.end(),
                    [](const fpost* n) { return n->alarm.wantsTicks() || n->record.readOnly; }) ||
        desk_.store.hasUnreadDrafts();
    if (wanted == ticking_) return;
    ticking_ = wanted;
    // One timer for all notes, as fifty timers would wake the machine a hundred times a second.
    if (wanted) {
        startTicks();
    } else {
        KillTimer(desk_.tray.hwnd, IDT_ALARM);
    }
}

void DeskTicks::startTicks() {
    ownTimer_ = desk_.startTimer(desk_.tray.hwnd, IDT_ALARM, kAlarmTick);
    // Windows refuses a timer for the window, which alarms must not depend on.
    if (!ownTimer_) postLater(desk_.tray.hwnd, WM_TIMER, IDT_ALARM, kAlarmTick);
}

void DeskTicks::clockSet() {
    const Now now = desk_.host.now();
    followClock(now, clock_.jump(now, desk_.host.uptime()) + std::exchange(untold_, 0));
}

void DeskTicks::followClock(Now now, std::int64_t jump) {
    if (jump == 0) return;
    desk_.forEachNote([now, jump](fpost& note) {
        try {
            note.alarm.clockSet(now, jump);
        } catch (...) {
            fpost::onEscaped(WM_TIMECHANGE);
        }
    });
}

void DeskTicks::tick() {
    if (ticking_ && !ownTimer_) startTicks();
    const Now now = desk_.host.now();
    const std::int64_t jump = clock_.jump(now, desk_.host.uptime());
    if (jump < 0) followClock(now, jump);
    // A leap forward means that the machine slept, and missed alarms ring, unless Windows says that the clock
    // was set; that message may come after this tick.
    untold_ = std::max<std::int64_t>(jump, 0);
    if (untold_ > 0) return;
    desk_.forEachNote([](fpost& note) {
        try {
            note.tmr_Timer();
        } catch (...) {
            fpost::onEscaped(WM_TIMER);  // the failure of one note must not affect the others
        }
    });
    readAgain();
}

void DeskTicks::readAgain() {
    const auto unread = [](const fpost* note) { return note->record.readOnly; };
    const auto isDue = [this] { return ++unreadTicks_ >= unreadWait_; };
    const bool wanted =
        std::any_of(desk_.Notes.begin(), desk_.Notes.end(), unread) || desk_.store.hasUnreadDrafts();
    if (desk_.dialog.open() || !wanted || !isDue()) return;
    // What stays locked is tried ever more rarely, because each failure adds a line to the log.
    unreadTicks_ = 0;
    unreadWait_ = std::min(2 * unreadWait_, kMostUnreadTicks);
    for (fpost*& note : desk_.Notes) {
        if (!unread(note)) continue;
        NoteRecord record;
        if (!desk_.store.load(note->number, record, desk_.settings)) return;
        fpost* const whole = fpost::open(desk_.host, note->number, record);
        if (whole == nullptr) return;
        std::exchange(note, whole)->leave();
        desk_.Renumber();
        whole->ArmAfterLoad();
        if (!whole->Closed() && !desk_.AllHidden()) whole->show(false);
    }
    desk_.finishDrafts();
    desk_.NotesChanged();
    countingChanged();
    desk_.Realign();
}
