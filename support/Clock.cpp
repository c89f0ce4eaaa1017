#include "support/Clock.h"

#include "support/WinText.h"

Now localNow() {
    SYSTEMTIME time{};
    GetLocalTime(&time);
    return {instantOf({time.wYear, time.wMonth, time.wDay}, {time.wHour, time.wMinute, time.wSecond}),
            time.wMilliseconds};
}
