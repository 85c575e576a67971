#include "core/ProgramState.h"

namespace {

struct TProgramState {
  int ActionState = ACTIONSTATE_NONE;
  int ViewMode = WINDOWED_MODE;
  int TickCounter = 0;
};

TProgramState State;

}  // namespace

int GetActionState() { return State.ActionState; }
void SetActionState(int NewState) { State.ActionState = NewState; }
int GetViewMode() { return State.ViewMode; }
void SetViewMode(int Mode) { State.ViewMode = Mode; }
int GetTickCounter() { return State.TickCounter; }
void AdvanceTickCounter() { ++State.TickCounter; }
void ResetProgramState() { State = {}; }
