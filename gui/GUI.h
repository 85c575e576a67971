#pragma once
// The element tree. Everything on the screen but the world picture and the
// mouse pointer is an element of one tree, drawn from scratch each frame. An
// element lies relative to its parent, and every event carries coordinates
// relative to the element that receives it. A parent owns its children.
#include <memory>
#include <string>
#include <vector>

// What MouseEvent reports besides the buttons.
enum TMouseEventCode : int { MOUSE_WHEEL_UP = 1, MOUSE_WHEEL_DOWN = 2, MOUSE_HELD_REPEAT = 6 };

class CGUIComponent;
class CGUIComposite;

// An element and an event number; firing it calls the element's OnEvent.
struct TEventTarget {
  CGUIComponent* Element = nullptr;
  int Event = 0;

  void Fire() const;
  bool operator==(const TEventTarget&) const = default;
};

// The target that has no element.
inline constexpr TEventTarget NoTarget{};

// One skin that a component paints before anything else.
struct DrawingListEntry {
  int Skin = 0;
  int x = 0;
  int y = 0;
  // Both 0: the skin once at its natural size; else the area to tile.
  int width = 0;
  int height = 0;
  // Offset into the skin of the first tile.
  int srcx = 0;
  int srcy = 0;

  DrawingListEntry() = default;
  DrawingListEntry(int Skin, int x, int y) : Skin(Skin), x(x), y(y) {}
  DrawingListEntry(int Skin, int x, int y, int width, int height)
      : Skin(Skin), x(x), y(y), width(width), height(height) {}
  DrawingListEntry(int Skin, int x, int y, int width, int height, int srcx, int srcy)
      : Skin(Skin), x(x), y(y), width(width), height(height), srcx(srcx), srcy(srcy) {}
};

// The operations of every element, with a leaf's behaviour. The child
// operations raise "not possible" on a leaf.
class CGUIComponent {
 public:
  virtual ~CGUIComponent() = default;
  CGUIComponent(const CGUIComponent&) = delete;
  CGUIComponent& operator=(const CGUIComponent&) = delete;

  virtual void AddChild(std::unique_ptr<CGUIComponent> Child);
  virtual void AddChildLast(std::unique_ptr<CGUIComponent> Child);
  // The child lives on, without a parent, in the caller's hands.
  virtual std::unique_ptr<CGUIComponent> RemoveChild(CGUIComponent* Child);
  virtual void DeleteChild(CGUIComponent* Child);
  // With Search null, as AddChild.
  virtual void InsertChildAfter(CGUIComponent* Search, std::unique_ptr<CGUIComponent> Child);
  virtual void SwapChildren(CGUIComponent* Child1, CGUIComponent* Child2);
  virtual bool HasChild(const CGUIComponent* Child) const;
  virtual CGUIComponent* GetFirstChild() const;
  virtual CGUIComponent* GetLastChild() const;
  virtual CGUIComponent* GetNextSibling() const;
  virtual CGUIComponent* GetPreviousSibling() const;
  virtual CGUIComponent* GetParent() const;
  virtual void SetSize(int Width, int Height);
  virtual void SetPosition(int X, int Y);
  virtual int GetMinimumWidth() const { return 0; }
  virtual int GetMinimumHeight() const { return 0; }
  virtual void ArrangeChildren() {}
  virtual bool MayBeDiscarded() const { return true; }
  virtual void Draw(int Surface, int x, int y);
  // The layout pass; fills the drawing list from the present size.
  virtual void Update() {}
  virtual bool MouseMove(int x, int y);
  virtual bool LeftDown(int x, int y, int Flags);
  virtual bool LeftUp(int x, int y, int Flags);
  // Counts as one more press unless a class says otherwise.
  virtual bool LeftDouble(int x, int y, int Flags);
  virtual bool RightUp(int x, int y, int Flags);
  // Code is one of TMouseEventCode.
  virtual bool MouseEvent(int x, int y, int Code);
  // The mouse has rested here; an element answers by setting the tooltip.
  virtual void Hover(int x, int y);
  virtual bool LensHelp(int x, int y);
  virtual void KeyDown(int Key);
  virtual void OnEvent(int Event);
  virtual void ParentMoved() {}
  virtual void SetCapture(CGUIComponent* Component);
  virtual void ReleaseCapture(CGUIComponent* Component);
  virtual void CancelCapture() {}

  int getX() const { return X; }
  int getY() const { return Y; }
  int getWidth() const { return Width; }
  int getHeight() const { return Height; }
  const std::vector<DrawingListEntry>& GetDrawingList() const { return DrawingList; }

 protected:
  // The drawing list has a fixed length for each class.
  explicit CGUIComponent(int DrawingListLength);

  void DrawDrawingList(int Surface, int x, int y) const;
  // Stores the size without any layout pass.
  void StoreSize(int NewWidth, int NewHeight);

  std::vector<DrawingListEntry> DrawingList;
  CGUIComposite* Parent = nullptr;
  int X = 0;
  int Y = 0;
  int Width = 0;
  int Height = 0;

  friend class CGUIComposite;
};

// The leaf.
class CGUIElement : public CGUIComponent {
 public:
  explicit CGUIElement(int DrawingListLength = 0) : CGUIComponent(DrawingListLength) {}
};

// The container. The mouse goes to the children from first to last, and
// drawing runs the same way, so where children overlap the one that is drawn
// under the others takes the mouse first.
class CGUIComposite : public CGUIComponent {
 public:
  explicit CGUIComposite(int DrawingListLength = 0) : CGUIComponent(DrawingListLength) {}
  ~CGUIComposite() override;

  void AddChild(std::unique_ptr<CGUIComponent> Child) override;
  void AddChildLast(std::unique_ptr<CGUIComponent> Child) override;
  std::unique_ptr<CGUIComponent> RemoveChild(CGUIComponent* Child) override;
  void DeleteChild(CGUIComponent* Child) override;
  void InsertChildAfter(CGUIComponent* Search, std::unique_ptr<CGUIComponent> Child) override;
  void SwapChildren(CGUIComponent* Child1, CGUIComponent* Child2) override;
  bool HasChild(const CGUIComponent* Child) const override;
  CGUIComponent* GetFirstChild() const override;
  CGUIComponent* GetLastChild() const override;
  void SetPosition(int X, int Y) override;
  void Draw(int Surface, int x, int y) override;
  void Update() override;
  bool MouseMove(int x, int y) override;
  bool LeftDown(int x, int y, int Flags) override;
  bool LeftUp(int x, int y, int Flags) override;
  bool LeftDouble(int x, int y, int Flags) override;
  bool RightUp(int x, int y, int Flags) override;
  bool MouseEvent(int x, int y, int Code) override;
  void Hover(int x, int y) override;
  bool LensHelp(int x, int y) override;
  void SetCapture(CGUIComponent* Component) override;
  void ReleaseCapture(CGUIComponent* Component) override;
  void CancelCapture() override;

  virtual CGUIComponent* GetCapture() const { return Capture; }
  // A negative x or y counts from the right or bottom edge.
  virtual void MoveChild(CGUIComponent* Child, int x, int y);
  // As MoveChild, then the size; a size below 1 is added to what remains.
  virtual void PlaceChild(CGUIComponent* Child, int x, int y, int Width, int Height);
  virtual void FitToChildren(bool NoResize);
  virtual void FitToChildren(int Left, int Top, int Right, int Bottom, bool NoResize);
  virtual void GrowForChild(CGUIComponent* Child, int Left, int Top, int Right, int Bottom, bool Flag);
  // Cuts each child to the composite; Delete destroys every child that was cut.
  virtual void ClipChildren(bool Delete);
  virtual bool IsPointInChild(int x, int y, const CGUIComponent* Child) const;

  // The sibling after or before Child; null at the ends.
  CGUIComponent* ChildAfter(const CGUIComponent* Child) const;
  CGUIComponent* ChildBefore(const CGUIComponent* Child) const;

 protected:
  CGUIComponent* Capture = nullptr;

 private:
  // The child that takes part in a mouse event at (x, y), from Start on; null if none.
  CGUIComponent* ChildAt(int x, int y, size_t& Start) const;
  // Capture first, else the children under the point until one answers true.
  template <typename TCall>
  bool Route(int x, int y, TCall Call);
  size_t IndexOf(const CGUIComponent* Child) const;
  void CheckOwnChild(const CGUIComponent* Child) const;
  void Adopt(CGUIComponent& Child);

  std::vector<std::unique_ptr<CGUIComponent>> m_Children;
};

// A count-down that fires its target on each GUI tick while it runs, and a
// last time on the tick on which it reaches 0.
class CObjectTimer {
 public:
  CObjectTimer(int Tenths, CGUIComponent* Element, int Event);
  virtual ~CObjectTimer();
  CObjectTimer(const CObjectTimer&) = delete;
  CObjectTimer& operator=(const CObjectTimer&) = delete;

  bool IsExpired() const { return !Running || Remaining == 0; }
  void Tick(int Elapsed);

  int Remaining = 0;
  bool Running = false;
  TEventTarget Target;
};

// Runs every live timer once with the milliseconds since the last call; the
// first call counts from itself.
void TickTimers();
int NumberOfLiveTimers();

// The key bindings: one row per key code.
void RegisterKey(int KeyCode, TEventTarget Target);
void UnregisterKey(int KeyCode);
// Shift doesn't count and a letter counts as upper case; true if a row fired.
bool DispatchKey(int KeyCode);
int NumberOfKeyBindings();

// The root element and the modal element beside it.
CGUIComposite* GetMainWindow();
void SetMainWindow(std::unique_ptr<CGUIComposite> Window);
CGUIComponent* GetModalWindow();
void SetModalWindow(std::unique_ptr<CGUIComponent> Window);
int MainWidth();
int MainHeight();
void SetMainSize(int Width, int Height);

// The lens help: its rectangle, in root coordinates once the tree has
// answered, and the text that the element under it wants shown.
struct TLensHelpState {
  int X = 0;
  int Y = 0;
  int Width = 0;
  int Height = 0;
  std::string WantedText;
  bool Changed = false;
};
TLensHelpState& LensHelpState();

// The tooltip that a hovered element set, and where the mouse was.
void SetTooltip(const std::string& Text);
const std::string& GetTooltip();
void SetTooltipPosition(int x, int y);
void ClearTooltip();
// Draws the tooltip, if any, near its position and within the root.
void DrawTooltip(int Surface);

// The frame-rate display, switched by its key.
bool IsFramerateShown();
void ToggleFramerate();

// The toolkit's state lives from InitGUI to ExitGUI; ExitGUI destroys the
// modal window, the root and the tables.
void InitGUI();
void ExitGUI();
