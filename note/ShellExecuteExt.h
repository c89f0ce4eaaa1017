// Opens a document, a web address or a mail link with the user's program for it.
#pragma once

#include "support/WinText.h"
// Needs windows.h before it.
#include <shellapi.h>

using ShellFunction = decltype(&ShellExecuteW);

/// Opens `ToExec` through the shell. Empty on success, otherwise a sentence for the user.
Text ShellExecuteExt(const Text& ToExec, ShellFunction shell = ShellExecuteW);
