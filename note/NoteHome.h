// Where a note belongs: the place and size of its record, made usable on the monitors that there are.
#pragma once

#include <span>

#include "note/Monitors.h"
#include "storage/NoteRecord.h"

/// The window in pixels at `dpi`, for a note of this full size. An iconized note is as high as its title. No
/// note is larger than the desktop that it is on, and one that would be on no monitor, or has never had a
/// place, is put where it can be reached. There must be a monitor.
PxRect shownPlace(const NoteRecord& record, Twips width, Twips height, int dpi,
                  std::span<const Monitor> monitors);

/// Whether the title at the stored place is visible. If not, shownPlace() is somewhere else.
bool isAtHome(const NoteRecord& record, Twips width, int dpi, std::span<const Monitor> monitors);
