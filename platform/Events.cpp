#include "platform/Events.h"

#include <SDL.h>

namespace platform {

namespace {

// The keypad's navigation keys while Num Lock is off.
int KeypadCode(int Scancode) {
  switch (Scancode) {
    case SDL_SCANCODE_KP_8: return KEY_UP;
    case SDL_SCANCODE_KP_4: return KEY_LEFT;
    case SDL_SCANCODE_KP_6: return KEY_RIGHT;
    case SDL_SCANCODE_KP_2: return KEY_DOWN;
    case SDL_SCANCODE_KP_0: return KEY_INSERT;
    case SDL_SCANCODE_KP_PERIOD: return KEY_DELETE;
    case SDL_SCANCODE_KP_1: return KEY_KEYPAD_END;
    case SDL_SCANCODE_KP_3: return KEY_KEYPAD_PAGE_DOWN;
    case SDL_SCANCODE_KP_7: return KEY_KEYPAD_HOME;
    case SDL_SCANCODE_KP_9: return KEY_KEYPAD_PAGE_UP;
    default: return 0;
  }
}

}  // namespace

int KeyCodeOfSdlKey(int Scancode, int Symbol, int SdlModifiers) {
  if (Symbol >= SDLK_F1 && Symbol <= SDLK_F12) return KEY_F1 + (Symbol - SDLK_F1);
  if ((SdlModifiers & KMOD_NUM) == 0) {
    if (const int Code = KeypadCode(Scancode)) return Code;
  }
  switch (Symbol) {
    case SDLK_UP: return KEY_UP;
    case SDLK_LEFT: return KEY_LEFT;
    case SDLK_RIGHT: return KEY_RIGHT;
    case SDLK_DOWN: return KEY_DOWN;
    case SDLK_INSERT: return KEY_INSERT;
    case SDLK_DELETE: return KEY_DELETE;
    case SDLK_HOME: return KEY_HOME;
    case SDLK_END: return KEY_END;
    case SDLK_PAGEUP: return KEY_PAGE_UP;
    case SDLK_PAGEDOWN: return KEY_PAGE_DOWN;
    case SDLK_RETURN:
    case SDLK_KP_ENTER: return KEY_ENTER;
    case SDLK_LSHIFT:
    case SDLK_RSHIFT: return KEY_SHIFT;
    case SDLK_LCTRL:
    case SDLK_RCTRL: return KEY_CTRL;
    case SDLK_LALT:
    case SDLK_RALT: return KEY_ALT;
    case SDLK_PRINTSCREEN: return KEY_PRINT_SCREEN;
    default: return 0;
  }
}

int CharacterOfSdlKey(int Symbol, int SdlModifiers) {
  const bool Ctrl = (SdlModifiers & KMOD_CTRL) != 0;
  const bool Alt = (SdlModifiers & KMOD_ALT) != 0;
  if (Ctrl && !Alt) return Symbol >= SDLK_a && Symbol <= SDLK_z ? Symbol - SDLK_a + 1 : 0;
  switch (Symbol) {
    case SDLK_RETURN:
    case SDLK_KP_ENTER: return Alt ? 0 : 0x0D;
    case SDLK_TAB: return 0x09;
    case SDLK_BACKSPACE: return 0x08;
    case SDLK_ESCAPE: return 0x1B;
    default: return 0;
  }
}

}  // namespace platform
