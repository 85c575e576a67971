#pragma once
// How the platform's mouse and key events reach the tree: the root element,
// or the modal window while one is open, in the action states that the
// toolkit knows (none, left button held, right button held, modal, menu).
// Mouse coordinates are those of the root.

void MouseMoveEvent(int x, int y);
// The pointer left the window: it is over no element until it moves again.
void MouseLeftWindowEvent();
// Double is a double click.
void LeftDownEvent(int x, int y, int Flags, bool Double);
void LeftUpEvent(int x, int y, int Flags);
void RightDownEvent(int x, int y, int Flags);
void RightUpEvent(int x, int y, int Flags);
// Delta in units of 120 a notch, positive away from the user.
void WheelEvent(int Delta);
// The door for every key code, modifiers included.
void KeyEvent(int Key);

// The tooltip step of the tick: after ten ticks of rest the element under the
// mouse is asked for its tooltip.
void TooltipTick();
// Closes a modal window that has finished (action state back to none).
void CloseFinishedModalWindow();
// True while the root holds the mouse: queue messages wait.
bool MainWindowHasCapture();

void ResetRouting();

// The cursor that the element under the mouse asks for (1 arrow, 2 resize),
// back to the arrow with each motion; the action state may override it with
// its own: 4 crosshair, 5 dragging, 6 help.
void SetMouseCursor(int Cursor);
int GetMouseCursor();

// Where the mouse was last seen, in the root's coordinates; -1, -1 while it
// is outside the window.
int GetMouseX();
int GetMouseY();

// The key code that toggles the frame-rate display (Alt+F8).
constexpr int KEY_TOGGLE_FRAMERATE = 0x907;
