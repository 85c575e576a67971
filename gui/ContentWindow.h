#pragma once
// The side bar: a column of panels at the right edge of the game view. A
// CDialogWindow stacks its children without gaps in list order and resolves
// each change of room by a numbered strategy; a CSimpleContentWindow can be
// dragged to another place in the stack; a CContentWindow adds a title bar
// with buttons, a body and resizers.
#include <memory>
#include <vector>

#include "gui/GUI.h"

class CGUIButton;
class CGUIResizer;

// Identifiers of the side bar windows; container view n is
// CONTAINER_WINDOW_FIRST + n.
enum : int {
  BIG_INVENTORY_WINDOW = 1,
  SMALL_INVENTORY_WINDOW = 2,
  AUTOMAP_WINDOW = 3,
  STATUS_WINDOW = 4,
  BUTTON_PANEL_WINDOW = 5,
  SKILLS_WINDOW = 6,
  BATTLE_WINDOW = 7,
  TRADE_WINDOW = 8,
  VIP_WINDOW = 9,
  NPC_TRADE_WINDOW = 10,
  PREMIUM_BUTTON_WINDOW = 11,
  PREMIUM_ADVERTISEMENT_WINDOW = 12,
  UNJUSTIFIED_POINTS_WINDOW = 13,
  CONTAINER_WINDOW_FIRST = 64,
};

// Strategies of CDialogWindow::Arrange.
enum : int {
  ARRANGE_DRAGGING = 1,
  ARRANGE_GROWN = 2,
  ARRANGE_SHRUNK = 4,
  ARRANGE_RESIZED = 8,
  ARRANGE_INCOMING = 16,
  ARRANGE_TIDY = 32,
};

class CGenericContentWindow : public CGUIComposite {
 public:
  CGenericContentWindow(int Identifier, int DrawingListLength)
      : CGUIComposite(DrawingListLength), Identifier(Identifier) {}

  int GetIdentifier() const { return Identifier; }

 protected:
  int Identifier = 0;
};

class CDialogWindow : public CGUIComposite {
 public:
  CDialogWindow();

  // Each child added takes the bar's width and keeps its height.
  void AddChild(std::unique_ptr<CGUIComponent> Child) override;
  void AddChildLast(std::unique_ptr<CGUIComponent> Child) override;
  void InsertChildAfter(CGUIComponent* Search, std::unique_ptr<CGUIComponent> Child) override;
  void DeleteChild(CGUIComponent* Child) override;
  int GetMinimumWidth() const override;
  int GetMinimumHeight() const override;
  void SetSize(int Width, int Height) override;
  void Draw(int Surface, int x, int y) override;
  // Rebuilds the drawing list of the free space, and nothing else.
  void Update() override;

  // The first child with this identifier, or null.
  CGenericContentWindow* GetContentWindow(int Identifier) const;
  // Appends the children to the stored side bar list; container views are
  // not stored, since the server reopens them.
  void SaveContentWindows(bool BigInventory) const;
  // ClientHeight less the children's heights.
  int GetFreeSpace();
  // Resolves a change of room; Work is the child concerned, or null.
  virtual void Arrange(int Strategy, CGUIComponent* Work);
  // ARRANGE_INCOMING: the window comes in at the bottom, making room first.
  void Arrange(int Strategy, std::unique_ptr<CGUIComponent> Work);

  CGUIComponent* GetDragged() const { return Dragged; }
  int GetClientWidth() const { return ClientWidth; }
  int GetClientHeight() const { return ClientHeight; }

 private:
  void Run(int Strategy, CGUIComponent* Work, std::unique_ptr<CGUIComponent> Incoming);
  void SwapWhileDragging(CGUIComponent* Work);
  // The children one below the other from the offset; the dragged one may
  // stay where the mouse holds it.
  void Position(bool SkipDragged);
  void ShrinkToFit(CGUIComponent* Grown);
  void GiveBackSpace(const CGUIComponent* Work);
  void ReduceToFit();
  void MakeRoom(CGUIComponent& Work);
  // The bar's width for the child, with its height kept.
  void FitWidth(CGUIComponent& Child) const;
  // Where a child lands when the stack closes up.
  int LandingY(const CGUIComponent* Child) const;

  int OffsetX = 0;
  int OffsetY = 0;
  int ClientWidth = 0;
  int ClientHeight = 0;
  CGUIComponent* Dragged = nullptr;
  bool Busy = false;
  int LastFreeSpace = 0;
  bool TrackFreeSpace = true;
};

// A panel that can be dragged to another place in the stack.
class CSimpleContentWindow : public CGenericContentWindow {
 public:
  CSimpleContentWindow(int Identifier, bool HasBackground, int DrawingListLength = 0);

  void Draw(int Surface, int x, int y) override;
  void Update() override;
  bool LeftDown(int x, int y, int Flags) override;
  bool MouseMove(int x, int y) override;
  bool LeftUp(int x, int y, int Flags) override;
  void ReleaseCapture(CGUIComponent* Component) override;

  bool IsDragging() const { return Dragging; }
  int GetBackgroundOffset() const { return BackgroundOffset; }

 protected:
  // The parent's Arrange, if the window stands in a bar.
  void ArrangeParent(int Strategy, CGUIComponent* Work) const;

 private:
  int BackgroundOffset = 0;
  bool HasBackground = false;
  bool Dragging = false;
  int DragX = 0;
  int DragY = 0;
};

// The element that fills a content window; the game's windows derive from it.
class CGUIContentBody : public CGUIComposite {
 public:
  explicit CGUIContentBody(int DrawingListLength = 0) : CGUIComposite(DrawingListLength) {}

  void Draw(int Surface, int x, int y) override;

  virtual void OnMinimise() { Minimised = true; }
  virtual void OnMaximise() { Minimised = false; }
  virtual bool IsMinimised() const { return Minimised; }
  // A new window is given this height plus the frame's.
  virtual int GetPreferredHeight() const { return GetMinimumHeight(); }
  virtual int GetMaximumHeight() const { return 2147483647; }
  virtual int GetNeededHeight() const { return GetMinimumHeight(); }

 private:
  bool Minimised = false;
};

class CContentWindow : public CSimpleContentWindow {
 public:
  static constexpr int MinimisedHeight = 19;
  static constexpr int EVENT_TOGGLE_MINIMISED = 9;
  static constexpr int EVENT_CLOSE = 10;

  CContentWindow(int Identifier, std::unique_ptr<CGUIContentBody> Body, bool Resizable, bool HasBackground);
  ~CContentWindow() override;

  // Each replaces what was there, enters at the head of the list and takes its place.
  void SetParentButton(std::unique_ptr<CGUIComponent> Element);
  void SetCloseButton(std::unique_ptr<CGUIComponent> Element);
  void SetMinimiseButton(std::unique_ptr<CGUIButton> Element);
  void SetIcon(std::unique_ptr<CGUIComponent> Element);
  void SetTitle(std::unique_ptr<CGUIComponent> Element);
  // The title as a text in the title style.
  void SetTitle(const char* Text);
  // The standard buttons of the title bar, aimed at this window.
  void AddCloseButton();
  void AddMinimiseButton();
  void ShowParentButton();
  void HideParentButton();

  CGUIContentBody* GetBody() const { return Body; }
  CGUIResizer* GetResizer() const { return Resizer; }
  CGUIResizer* GetBottomResizer() const { return BottomResizer; }
  CGUIButton* GetMinimiseButton() const { return MinimiseButton; }
  bool IsMinimised() const { return IsMinimized; }
  int GetSavedHeight() const { return SavedHeight; }

  int GetMinimumHeight() const override;
  // The title bar and the bottom edge, which the factories add to the body's height.
  static int GetFrameHeight();
  void SetSize(int Width, int Height) override;
  void Update() override;
  bool LeftDown(int x, int y, int Flags) override;
  bool MouseMove(int x, int y) override;
  bool LeftDouble(int x, int y, int Flags) override;
  void OnEvent(int Event) override;

  virtual void Minimise();
  virtual void Maximise();

 private:
  // A resizer under the point takes the event first, unless minimised.
  template <typename TCall>
  bool OfferToResizers(int x, int y, TCall Call);
  void PlaceChildren();
  // Places one of the optional children, if it is in the list and the window has a size.
  void PlaceOptional(CGUIComponent* Element);
  // Replaces Slot's element by the new one, at the head of the list.
  template <typename T>
  void Replace(T*& Slot, std::unique_ptr<T> Element);
  // Out of the list, still owned.
  void Detach(CGUIComponent* Element);
  void Reattach(CGUIComponent* Element, bool AtHead);
  void Discard(CGUIComponent* Element);

  CGUIContentBody* Body = nullptr;
  CGUIResizer* Resizer = nullptr;
  CGUIResizer* BottomResizer = nullptr;
  CGUIComponent* ParentButton = nullptr;
  CGUIComponent* CloseButton = nullptr;
  CGUIButton* MinimiseButton = nullptr;
  CGUIComponent* Icon = nullptr;
  CGUIComponent* TitleText = nullptr;
  bool IsMinimized = false;
  int SavedHeight = 0;
  // Own elements that are out of the child list at the moment.
  std::vector<std::unique_ptr<CGUIComponent>> Detached;
};
