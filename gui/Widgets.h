#pragma once
// The small widgets that windows are built from: the check box, the link,
// the progress bar, the decorate line, the resizer and the frame window.
#include <functional>
#include <memory>
#include <string>

#include "graphics/Fonts.h"
#include "graphics/Surface.h"
#include "gui/GUI.h"

class CGUITextButton;
class CGUITextRectangle;

// A framed box with a mark and a text; its size is the caller's.
class CGUICheckbox : public CGUIComposite {
 public:
  CGUICheckbox(const char* Text, bool Checked, TEventTarget Target);

  void SetSize(int Width, int Height) override;
  void Update() override;
  void Draw(int Surface, int x, int y) override;
  // The press takes no capture; only the release counts.
  bool LeftDown(int, int, int) override { return true; }
  bool LeftUp(int x, int y, int Flags) override;

  // Never fires the target.
  virtual void SetChecked(bool Value) { Checked = Value; }
  virtual bool IsChecked() const { return Checked; }
  // Replaces the text by one in the style of the new state.
  void SetEnabled(bool Value);
  bool IsEnabled() const { return Enabled; }
  const CGUITextRectangle& GetTextChild() const { return *Text; }

 private:
  void PlaceText();

  CGUITextRectangle* Text = nullptr;
  bool Checked = false;
  bool Enabled = true;
  TEventTarget Target;
};

// A text with a button at its right edge that hands the destination to the callback.
class CGUILink : public CGUIComposite {
 public:
  using TCallback = std::function<void(const std::string& Destination)>;

  CGUILink(const char* Text, const char* ButtonText, const char* Destination, TCallback Callback,
           const TextStyle& Style);

  void SetSize(int Width, int Height) override;
  void Update() override;
  int GetMinimumWidth() const override;
  int GetMinimumHeight() const override;
  void OnEvent(int Event) override;

  const std::string& GetDestination() const { return Destination; }
  CGUITextButton& GetButton() const { return *Button; }
  CGUITextRectangle& GetTextChild() const { return *Text; }

 private:
  std::string Destination;
  TCallback Callback;
  CGUITextRectangle* Text = nullptr;
  CGUITextButton* Button = nullptr;
};

class CGUIProgressbar : public CGUIElement {
 public:
  CGUIProgressbar(int X, int Y, int Width, int Height);

  void SetSize(int Width, int Height) override;
  void Update() override;
  int GetMinimumWidth() const override;
  int GetMinimumHeight() const override;

  // Positive; the present value is cut to it.
  void SetMaximum(int Value);
  // Cut to 0 .. Maximum.
  void SetCurrent(int Value);
  int GetMaximum() const { return Maximum; }
  int GetCurrent() const { return Current; }

 private:
  int Maximum = 100;
  int Current = 0;
};

// A double line of two skins, along or across.
class CGUIDecorateLine : public CGUIElement {
 public:
  CGUIDecorateLine(bool Horizontal, int X, int Y, int Length);

  void SetSize(int Width, int Height) override;
  void Update() override;

 private:
  bool Horizontal = true;
};

// Dragging it changes another element's size; by default only its height.
class CGUIResizer : public CGUIElement {
 public:
  explicit CGUIResizer(CGUIComponent* ToResize, bool Invisible = false);

  void SetSize(int Width, int Height) override;
  void Update() override;
  bool LeftDown(int x, int y, int Flags) override;
  bool MouseMove(int x, int y) override;
  bool LeftUp(int x, int y, int Flags) override;
  void ReleaseCapture(CGUIComponent* Component) override;

  void SetDirections(bool X, bool Y);
  bool IsDragging() const { return Dragging; }

 private:
  void Resize(int x, int y);

  CGUIComponent* ToResize = nullptr;  // not owned
  bool Dragging = false;
  int StartX = 0;
  int StartY = 0;
  bool ResizeX = false;
  bool ResizeY = true;
  bool Invisible = false;
};

// Frames exactly one window with nine skins.
class CGUIFrameWindow : public CGUIComposite {
 public:
  enum class TKind { Thin, Framed };

  // The panel frame, flush round the window.
  explicit CGUIFrameWindow(std::unique_ptr<CGUIComponent> Window);
  // The thin or the framed frame, Border pixels off the window.
  CGUIFrameWindow(TKind Kind, std::unique_ptr<CGUIComponent> Window, int Border);

  void SetSize(int Width, int Height) override;
  void Update() override;
  int GetMinimumWidth() const override;
  int GetMinimumHeight() const override;

  // The frame round the window's present size.
  void FitToWindow();
  CGUIComponent& GetWindow() const { return *Window; }
  TRect GetInnerRect() const { return Inner; }

 private:
  struct TSkins {
    int TopLeft, Top, TopRight, Left, Right, BottomLeft, Bottom, BottomRight, Background;
  };
  static constexpr TSkins PanelSkins{31, 37, 32, 35, 36, 33, 38, 34, 0};
  static constexpr TSkins ThinSkins{0, 10, 0, 12, 11, 0, 9, 0, 0};
  static constexpr TSkins FramedSkins{57, 63, 58, 61, 62, 59, 64, 60, 65};

  CGUIFrameWindow(const TSkins& Skins, std::unique_ptr<CGUIComponent> Window, int Border);

  CGUIComponent* Window = nullptr;
  TSkins Skins;
  TRect Inner{};
  int Border = 0;
};
