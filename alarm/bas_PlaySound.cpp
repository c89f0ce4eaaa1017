#include "alarm/bas_PlaySound.h"

#include "support/WinText.h"
// Needs windows.h before it.
#include <mmsystem.h>

bool PlayAlarmSound(int resource, bool asynchronous) {
    const DWORD flags = SND_RESOURCE | (asynchronous ? SND_ASYNC : 0U);
    return PlaySoundA(MAKEINTRESOURCEA(resource), GetModuleHandleW(nullptr), flags) != FALSE;
}

void StopAlarmSound() {
    PlaySoundA(nullptr, nullptr, 0);
}
