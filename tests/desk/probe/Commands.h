// The probe's commands by subject. Each takes the words after the command name and adds its answer to `out`;
// a command that fails throws Failure, which becomes {"error": ...}.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Json.h"

using Words = std::vector<std::wstring>;

struct Failure {
    std::wstring reason;
};

/// Word `index` as text, or as a number (decimal or 0x hexadecimal, negative allowed). Throws Failure when
/// missing.
const std::wstring& word(const Words& words, std::size_t index);
std::int64_t number(const Words& words, std::size_t index);

// Windows.cpp
void listWindows(const Words& words, Json& out);     // [class] [process id]: top-level windows, front to back
void listChildren(const Words& words, Json& out);    // hwnd: all descendants, front to back
void describeWindow(const Words& words, Json& out);  // hwnd
void readText(const Words& words, Json& out);        // hwnd
void writeText(const Words& words, Json& out);       // hwnd text
void postTo(const Words& words, Json& out);          // hwnd message wParam lParam
void sendTo(const Words& words, Json& out);          // hwnd message wParam lParam timeout-ms
void broadcast(const Words& words, Json& out);     // name of a registered message, for every top-level window
void bringForward(const Words& words, Json& out);  // hwnd: to the front, with the keyboard
void describeFocus(const Words& words, Json& out);   // foreground window and its thread's focus window
void describeScreen(const Words& words, Json& out);  // work area, screen size, dpi, ANSI code page
void listProcesses(const Words& words, Json& out);   // file name: ids of the processes started from it
void processLives(const Words& words, Json& out);    // process id
void killProcess(const Words& words, Json& out);     // process id
void cursorAt(const Words& words, Json& out);        // the pointer's place on the screen

// Holding.cpp: what another program, or another user's session, may hold
void holdFile(const Words& words, Json& out);   // path: opened so that nobody else can
void holdMutex(const Words& words, Json& out);  // name
void release(const Words& words, Json& out);    // everything held

// Resources.cpp
void countResources(const Words& words, Json& out);  // hwnd: what its program holds; USER objects of all

// Menus.cpp
void readMenu(const Words& words, Json& out);  // the popup menus open at this moment, innermost last

// Accessible.cpp
void describeAccessible(const Words& words, Json& out);  // hwnd: what a screen reader learns about it
void pressAccessible(const Words& words, Json& out);     // hwnd element: its default action; 0: of the window

// Registry.cpp; a path starts with HKCU or HKLM
void readValues(const Words& words, Json& out);   // path
void listKeys(const Words& words, Json& out);     // path
void setValue(const Words& words, Json& out);     // path name sz|dword|binary value
void setTexts(const Words& words, Json& out);     // path, then name and text in turn: many values in one go
void deleteValue(const Words& words, Json& out);  // path name
void deleteTree(const Words& words, Json& out);   // path
