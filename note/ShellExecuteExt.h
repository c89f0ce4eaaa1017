// Opening a document, an address of the web or a mail link with the program that the user has for it.
#pragma once

#include "support/WinText.h"
// Needs windows.h before it.
#include <shellapi.h>

using ShellFunction = decltype(&ShellExecuteW);

/// Opens `ToExec` through the shell. Empty on success, otherwise a sentence for the user.
Text ShellExecuteExt(const Text& ToExec, ShellFunction shell = ShellExecuteW);
