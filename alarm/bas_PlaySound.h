// The alarm sound: a WAVE resource of the program.
#pragma once

/// Plays WAVE resource `resource`; asynchronously it begins and the call returns at once. Only one sound
/// plays at a time: a new one cuts the last one short. False when it cannot be played.
bool PlayAlarmSound(int resource, bool asynchronous);

/// Ends whatever plays.
void StopAlarmSound();
