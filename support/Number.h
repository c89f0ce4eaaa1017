// Numbers and flags as the stores spell them: read leniently, written in one form, whatever the locale.
#pragma once

#include <cstdint>

#include "support/Text.h"

/// The number that `text` begins with: blanks are skipped, then come sign, digits, ".", digits and an
/// exponent. Text without one, and empty text, is 0. Always finite: beyond a double's range it saturates.
double leadingNumber(TextView text);

/// The leading number, rounded to a whole number and clamped to the type's range.
std::int16_t leadingInt16(TextView text);
std::int32_t leadingInt32(TextView text);

/// The plain decimal text of a whole number.
Text decimal(std::int64_t number);

/// The decimal text with at least two digits, as "00" would print it.
Text twoDigits(std::int64_t number);

/// "True" or "False", the words in which flags are stored.
Text boolText(bool flag);

/// Reads a stored flag: on, true, vero, yes, si and sì are true, off, false, falso and no are false, in upper
/// or lower case; any other text is true when its leading number is not 0.
bool ParseBool(TextView text);
