#pragma once
// Program-wide values that many layers read: what the mouse is doing, the view
// mode, and the tick count.

enum : int {
  ACTIONSTATE_NONE = 0,
  ACTIONSTATE_MODAL = 11,
  ACTIONSTATE_MENU = 12,
};

enum : int {
  WINDOWED_MODE = 1,
  FULLSCREEN_MODE = 2,
};

int GetActionState();
void SetActionState(int State);
int GetViewMode();
void SetViewMode(int Mode);
int GetTickCounter();
void AdvanceTickCounter();
void ResetProgramState();
