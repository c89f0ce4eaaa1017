// Numbers of keys, those of Windows, for the rules that need no Windows header.
#pragma once

namespace keys {

inline constexpr unsigned kTab = 0x09;
inline constexpr unsigned kEnter = 0x0D;
inline constexpr unsigned kEscape = 0x1B;
inline constexpr unsigned kLeft = 0x25;
inline constexpr unsigned kUp = 0x26;
inline constexpr unsigned kRight = 0x27;
inline constexpr unsigned kDown = 0x28;
inline constexpr unsigned kDelete = 0x2E;
inline constexpr unsigned kMenuKey = 0x5D;
inline constexpr unsigned kF2 = 0x71;
inline constexpr unsigned kF4 = 0x73;
inline constexpr unsigned kF6 = 0x75;

}  // namespace keys
