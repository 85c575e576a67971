#pragma once
// The platform's keys as the program numbers them. A key event carries one of
// these codes (0 for a key that the program doesn't use); characters come as
// character events of their own, Latin-1.

namespace platform {

enum : int {
  KEY_BACKSPACE = 0x08,
  KEY_TAB = 0x09,
  KEY_ENTER = 0x0D,
  KEY_ESCAPE = 0x1B,
  KEY_F1 = 0x100,  // to KEY_F1 + 11
  KEY_F4 = 0x103,
  KEY_UP = 0x10C,
  KEY_LEFT = 0x10D,
  KEY_RIGHT = 0x10E,
  KEY_DOWN = 0x10F,
  KEY_INSERT = 0x110,
  KEY_DELETE = 0x111,
  KEY_HOME = 0x112,
  KEY_END = 0x113,
  KEY_PAGE_UP = 0x114,
  KEY_PAGE_DOWN = 0x115,
  KEY_KEYPAD_END = 0x116,
  KEY_KEYPAD_PAGE_DOWN = 0x117,
  KEY_KEYPAD_HOME = 0x118,
  KEY_KEYPAD_PAGE_UP = 0x119,
  // Shift, Ctrl and Alt themselves have the code of their modifier bit.
  KEY_SHIFT = 0x200,
  KEY_CTRL = 0x400,
  KEY_ALT = 0x800,
  // No key of the game: it takes a screenshot.
  KEY_PRINT_SCREEN = 0x1000,
};

// One notch of the mouse wheel.
constexpr int WHEEL_DELTA = 120;

// The code of an SDL key (scan code, key symbol and modifier state as SDL
// gives them), 0 if the program has none for it.
int KeyCodeOfSdlKey(int Scancode, int Symbol, int SdlModifiers);
// The character that a key gives besides its code (Enter, Tab, Backspace,
// Escape, and Ctrl with a letter as 1 to 26), which no text event carries;
// 0 for none.
int CharacterOfSdlKey(int Symbol, int SdlModifiers);

}  // namespace platform
