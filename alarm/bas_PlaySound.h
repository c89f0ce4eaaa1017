// The alarm sound: a WAVE resource of the program.
#pragma once

/// Plays WAVE resource `resource`; an asynchronous sound begins and the call returns at once. Only one sound
/// plays at a time; a new one cuts the last one short. False when it cannot be played.
bool PlayAlarmSound(int resource, bool asynchronous);

/// Stops whatever is playing.
void StopAlarmSound();
