#pragma once
// The frame that every dialog shares: a caption, a body that the caller
// makes, and up to four text buttons in a row at the bottom right. The open
// dialog lives in the modal slot beside the root and takes all input; it
// closes by setting the action state back to none, and the one who delivered
// the event deletes it afterwards, so a handler may still run to its end.
#include <cstddef>
#include <memory>
#include <string>

#include "gui/GUI.h"

class CGUIDecorateLine;
class CGUITextButton;
class CGUITextRectangle;

class CGUIModalDialog : public CGUIComposite {
 public:
  // The caption's buffer, terminator included.
  static constexpr std::size_t CAPTION_LENGTH = 100;
  static constexpr int OK_EVENT = 1;
  static constexpr int CANCEL_EVENT = 2;

  // The frame takes the body's size plus its margins, at least the minimums,
  // and comes with an "Ok" and a "Cancel" button that close it.
  CGUIModalDialog(const char* Caption, std::unique_ptr<CGUIComponent> Dialog);

  // A null Text removes the button, which must exist; else a new button
  // replaces any old one. The target NoTarget (null, 0) gives the OK or cancel
  // event to the frame itself; Enter and Escape fire the same targets.
  void SetOkButton(const char* Text, int ButtonUp, int ButtonDown, CGUIComponent* Element, int Event);
  void SetCancelButton(const char* Text, CGUIComponent* Element, int Event);
  // These two have no key.
  void SetThirdButton(const char* Text, CGUIComponent* Element, int Event, int ButtonUp, int ButtonDown);
  void SetFourthButton(const char* Text, CGUIComponent* Element, int Event, int ButtonUp, int ButtonDown);

  // NoTarget behind a real OK button lets the button work and sends Enter to the body.
  void SetOkTarget(TEventTarget Target) { OkTarget = Target; }
  void SetCancelTarget(TEventTarget Target) { CancelTarget = Target; }
  TEventTarget GetOkTarget() const { return OkTarget; }
  TEventTarget GetCancelTarget() const { return CancelTarget; }

  int GetMinimumWidth() const override;
  int GetMinimumHeight() const override;
  void SetSize(int Width, int Height) override;
  // Places body, title, line and buttons; the body lays itself out.
  void Update() override;
  // A press on the title bar that no child takes starts a drag.
  bool LeftDown(int x, int y, int Flags) override;
  bool MouseMove(int x, int y) override;
  bool LeftUp(int x, int y, int Flags) override;
  // Enter and Escape fire the targets; every other key goes to the body.
  void KeyDown(int Key) override;
  // Whatever the event, the dialog asks to be closed.
  void OnEvent(int Event) override;

  const std::string& GetCaption() const { return Caption; }
  CGUIComponent& GetDialog() const { return *Dialog; }
  CGUITextRectangle& GetTitle() const { return *Title; }
  CGUIDecorateLine& GetLine() const { return *Line; }
  CGUITextButton* GetOkButton() const { return OkButton; }
  CGUITextButton* GetCancelButton() const { return CancelButton; }
  CGUITextButton* GetThirdButton() const { return ThirdButton; }
  CGUITextButton* GetFourthButton() const { return FourthButton; }
  bool IsDragging() const { return Dragging; }

 protected:
  CGUIComponent* Dialog = nullptr;
  CGUITextButton* OkButton = nullptr;
  CGUITextButton* CancelButton = nullptr;
  CGUITextButton* ThirdButton = nullptr;
  CGUITextButton* FourthButton = nullptr;
  CGUITextRectangle* Title = nullptr;
  CGUIDecorateLine* Line = nullptr;
  bool Dragging = false;
  int DragX = 0;
  int DragY = 0;
  std::string Caption;
  TEventTarget OkTarget;
  TEventTarget CancelTarget;

 private:
  // Removes (Text null) or replaces the button in Slot, then lays out anew.
  void PutButton(CGUITextButton*& Slot, const char* Text, const char* Assertion, TEventTarget Target,
                 int ButtonUp, int ButtonDown);
  void UpdateDrawingList();
};

// Places the modal window with its middle at (x, y).
void CentreModal(int x, int y);
// Puts the window that a message of the main step's queue made into the modal
// slot. Dialogs (types below 70) are centred on the client area and take the
// modal state; menus have placed themselves and take the menu state. Telling
// the root that it is inactive is the caller's part.
void OpenModalWindow(std::unique_ptr<CGUIComponent> Window, int MessageType);
// The client area changed its size: an open dialog is centred again, even
// after a drag, and an open menu is asked to close.
void ModalClientAreaResized();
