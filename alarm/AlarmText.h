// What the time strip says about an alarm.
#pragma once

#include "alarm/AlarmRule.h"
#include "support/DateTime.h"
#include "support/Text.h"

/// Time left: "5:07:09", or from a day upwards "2 d   5:07:09". Zero when the instant has passed.
Text countdownText(Instant due, Now now);

/// When the alarm is due: "21/11/2026 09:30 h."; empty when there is nothing to wait for. Shows the real day
/// even where the month of the rule's date lacks that day.
Text dueText(const AlarmRule& rule);
