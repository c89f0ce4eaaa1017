#include "alarm/bas_PlaySound.h"

#include "support/SystemLibrary.h"
// Needs windows.h before it.
#include <mmsystem.h>

namespace {

/// Loaded at the first sound.
BOOL play(LPCSTR sound, HMODULE module, DWORD flags) {
    static const auto function =
        systemFunction<decltype(&PlaySoundA)>(systemLibrary(u"winmm.dll"), "PlaySoundA");
    return function == nullptr ? FALSE : function(sound, module, flags);
}

}  // namespace

bool PlayAlarmSound(int resource, bool asynchronous) {
    const DWORD flags = SND_RESOURCE | (asynchronous ? SND_ASYNC : 0U);
    return play(MAKEINTRESOURCEA(resource), GetModuleHandleW(nullptr), flags) != FALSE;
}

void StopAlarmSound() {
    play(nullptr, nullptr, 0);
}
