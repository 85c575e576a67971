#include "gui/Routing.h"

#include "core/ProgramState.h"
#include "gui/GUI.h"

namespace {

// The states of the mouse that the toolkit itself moves between.
constexpr int ACTIONSTATE_LEFT_BUTTON = 1;
constexpr int ACTIONSTATE_RIGHT_BUTTON = 2;
constexpr int ACTIONSTATE_DRAG = 6;
constexpr int ACTIONSTATE_USE_WITH = 7;
constexpr int ACTIONSTATE_HOTKEY_WITH = 8;
constexpr int ACTIONSTATE_TRADE_WITH = 9;
constexpr int ACTIONSTATE_LENS_HELP = 10;
constexpr int WHEEL_NOTCH = 120;
constexpr int HOVER_TICKS = 10;

struct TMouseState {
  int MouseX = 0;
  int MouseY = 0;
  int WheelSum = 0;
  int LastMotionTick = 0;
  int MouseCursor = 1;
};

TMouseState Mouse;

bool ModalState() {
  const int State = GetActionState();
  return (State == ACTIONSTATE_MODAL || State == ACTIONSTATE_MENU) && GetModalWindow() != nullptr;
}

// The modal window's own coordinates.
int ModalX(int x) { return x - GetModalWindow()->getX(); }
int ModalY(int y) { return y - GetModalWindow()->getY(); }

void CloseModalIf(bool Finished) {
  if (!Finished) return;
  SetModalWindow(nullptr);
}

void Forget() {
  Mouse.LastMotionTick = 0;
  ClearTooltip();
}

}  // namespace

void SetMouseCursor(int Cursor) { Mouse.MouseCursor = Cursor; }

int GetMouseCursor() {
  switch (GetActionState()) {
    case ACTIONSTATE_LENS_HELP: return 6;
    case ACTIONSTATE_DRAG: return 5;
    case ACTIONSTATE_USE_WITH:
    case ACTIONSTATE_HOTKEY_WITH:
    case ACTIONSTATE_TRADE_WITH: return 4;
    default: return Mouse.MouseCursor;
  }
}

int GetMouseX() { return Mouse.MouseX; }
int GetMouseY() { return Mouse.MouseY; }

void MouseMoveEvent(int x, int y) {
  if (x != Mouse.MouseX || y != Mouse.MouseY) ClearTooltip();
  Mouse.MouseX = x;
  Mouse.MouseY = y;
  Mouse.MouseCursor = 1;
  if (ModalState()) {
    GetModalWindow()->MouseMove(ModalX(x), ModalY(y));
  } else if (GetActionState() != ACTIONSTATE_LENS_HELP && GetMainWindow() != nullptr) {
    GetMainWindow()->MouseMove(x, y);
  }
  Mouse.LastMotionTick = GetTickCounter();
}

void MouseLeftWindowEvent() {
  Forget();
  Mouse.MouseX = -1;
  Mouse.MouseY = -1;
}

void LeftDownEvent(int x, int y, int Flags, bool Double) {
  Forget();
  Mouse.MouseX = x;
  Mouse.MouseY = y;
  if (ModalState()) {
    CGUIComponent* Modal = GetModalWindow();
    Double ? Modal->LeftDouble(ModalX(x), ModalY(y), Flags) : Modal->LeftDown(ModalX(x), ModalY(y), Flags);
    const int State = GetActionState();
    if (Double) CloseModalIf(State == ACTIONSTATE_NONE || State == 7 || State == 9);
    return;
  }
  if (GetActionState() != ACTIONSTATE_NONE || GetMainWindow() == nullptr) return;
  Double ? GetMainWindow()->LeftDouble(x, y, Flags) : GetMainWindow()->LeftDown(x, y, Flags);
  SetActionState(ACTIONSTATE_LEFT_BUTTON);
}

// No capture outlives the button: a release in state none still ends it.
void LeftUpEvent(int x, int y, int Flags) {
  Forget();
  const int State = GetActionState();
  if (ModalState()) {
    GetModalWindow()->LeftUp(ModalX(x), ModalY(y), Flags);
    const int After = GetActionState();
    CloseModalIf(After == ACTIONSTATE_NONE || After == 7 || After == 8 || After == 9);
    return;
  }
  CGUIComposite* Root = GetMainWindow();
  if (Root == nullptr) return;
  if (State == ACTIONSTATE_NONE) {
    if (Root->GetCapture() == nullptr) return;
    Root->LeftUp(x, y, Flags);
    Root->CancelCapture();
  } else if (State == ACTIONSTATE_LEFT_BUTTON || (State >= 6 && State <= 9)) {
    Root->LeftUp(x, y, Flags);
    SetActionState(ACTIONSTATE_NONE);
  }
}

void RightDownEvent(int, int, int) {
  Forget();
  if (GetActionState() == ACTIONSTATE_NONE) SetActionState(ACTIONSTATE_RIGHT_BUTTON);
}

void RightUpEvent(int x, int y, int Flags) {
  Forget();
  const int State = GetActionState();
  if (ModalState()) {
    GetModalWindow()->RightUp(ModalX(x), ModalY(y), Flags);
    CloseModalIf(GetActionState() == ACTIONSTATE_NONE);
    return;
  }
  CGUIComposite* Root = GetMainWindow();
  if (Root == nullptr) return;
  if (State == ACTIONSTATE_NONE) {
    Root->CancelCapture();
  } else if (State == ACTIONSTATE_RIGHT_BUTTON) {
    Root->RightUp(x, y, Flags);
    SetActionState(ACTIONSTATE_NONE);
  }
}

void WheelEvent(int Delta) {
  Mouse.WheelSum += Delta;
  while (Mouse.WheelSum >= WHEEL_NOTCH || Mouse.WheelSum <= -WHEEL_NOTCH) {
    const int Code = Mouse.WheelSum > 0 ? MOUSE_WHEEL_UP : MOUSE_WHEEL_DOWN;
    Mouse.WheelSum += Code == MOUSE_WHEEL_UP ? -WHEEL_NOTCH : WHEEL_NOTCH;
    if (GetActionState() == ACTIONSTATE_LENS_HELP) continue;
    if (ModalState()) {
      GetModalWindow()->MouseEvent(ModalX(Mouse.MouseX), ModalY(Mouse.MouseY), Code);
    } else if (GetMainWindow() != nullptr) {
      GetMainWindow()->MouseEvent(Mouse.MouseX, Mouse.MouseY, Code);
    }
  }
}

void KeyEvent(int Key) {
  Forget();
  if (Key == KEY_TOGGLE_FRAMERATE) {
    ToggleFramerate();
    return;
  }
  if (GetActionState() == ACTIONSTATE_LENS_HELP) SetActionState(ACTIONSTATE_NONE);
  if (GetModalWindow() != nullptr) {
    GetModalWindow()->KeyDown(Key);
    CloseModalIf(GetActionState() == ACTIONSTATE_NONE);
    return;
  }
  if (!DispatchKey(Key) && GetMainWindow() != nullptr) GetMainWindow()->KeyDown(Key);
}

void TooltipTick() {
  if (Mouse.LastMotionTick == 0 || GetTickCounter() - Mouse.LastMotionTick != HOVER_TICKS) return;
  if (ModalState()) {
    GetModalWindow()->Hover(ModalX(Mouse.MouseX), ModalY(Mouse.MouseY));
  } else if (GetMainWindow() != nullptr) {
    GetMainWindow()->Hover(Mouse.MouseX, Mouse.MouseY);
  }
  if (!GetTooltip().empty()) SetTooltipPosition(Mouse.MouseX, Mouse.MouseY);
}

void CloseFinishedModalWindow() {
  if (GetModalWindow() != nullptr && GetActionState() == ACTIONSTATE_NONE) SetModalWindow(nullptr);
}

bool MainWindowHasCapture() { return GetMainWindow() != nullptr && GetMainWindow()->GetCapture() != nullptr; }

void ResetRouting() { Mouse = {}; }
