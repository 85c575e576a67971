#include "gui/GUI.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <optional>

#include "core/Clock.h"
#include "core/Exception.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "gui/SkinProperties.h"

namespace {

struct TKeyBinding {
  int KeyCode = 0;
  TEventTarget Target;
};

struct TGUIState {
  std::unique_ptr<CGUIComposite> MainWindow;
  std::unique_ptr<CGUIComponent> ModalWindow;
  int MainWidth = 0;
  int MainHeight = 0;
  // Free places hold null; a timer keeps its place while it runs.
  std::vector<CObjectTimer*> Timers;
  std::optional<int> LastTimerTick;
  std::vector<TKeyBinding> KeyBindings;
  TLensHelpState LensHelp;
  std::string Tooltip;
  int TooltipX = 0;
  int TooltipY = 0;
  bool FramerateShown = false;
};

std::unique_ptr<TGUIState> State;

TGUIState& GUI() {
  if (!State) State = std::make_unique<TGUIState>();
  return *State;
}

[[noreturn]] void NotPossible() { ThrowException("not possible"); }

bool Contains(const CGUIComponent& Child, int x, int y) {
  const int cx = x - Child.getX();
  const int cy = y - Child.getY();
  return cx >= 0 && cx <= Child.getWidth() - 1 && cy >= 0 && cy <= Child.getHeight() - 1;
}

void RemoveTimer(CObjectTimer* Timer) {
  if (!State) return;
  std::replace(State->Timers.begin(), State->Timers.end(), Timer, static_cast<CObjectTimer*>(nullptr));
}

}  // namespace

void TEventTarget::Fire() const {
  if (Element != nullptr) Element->OnEvent(Event);
}

// --- CGUIComponent: the leaf's behaviour ---

CGUIComponent::CGUIComponent(int DrawingListLength) : DrawingList(static_cast<size_t>(DrawingListLength)) {}

void CGUIComponent::AddChild(std::unique_ptr<CGUIComponent>) { NotPossible(); }
void CGUIComponent::AddChildLast(std::unique_ptr<CGUIComponent>) { NotPossible(); }
std::unique_ptr<CGUIComponent> CGUIComponent::RemoveChild(CGUIComponent*) { NotPossible(); }
void CGUIComponent::DeleteChild(CGUIComponent*) { NotPossible(); }
void CGUIComponent::InsertChildAfter(CGUIComponent*, std::unique_ptr<CGUIComponent>) { NotPossible(); }
void CGUIComponent::SwapChildren(CGUIComponent*, CGUIComponent*) { NotPossible(); }
bool CGUIComponent::HasChild(const CGUIComponent*) const { NotPossible(); }
CGUIComponent* CGUIComponent::GetFirstChild() const { NotPossible(); }
CGUIComponent* CGUIComponent::GetLastChild() const { NotPossible(); }

CGUIComponent* CGUIComponent::GetNextSibling() const { return Parent ? Parent->ChildAfter(this) : nullptr; }
CGUIComponent* CGUIComponent::GetPreviousSibling() const { return Parent ? Parent->ChildBefore(this) : nullptr; }
CGUIComponent* CGUIComponent::GetParent() const { return Parent; }

void CGUIComponent::SetSize(int NewWidth, int NewHeight) { StoreSize(NewWidth, NewHeight); }

void CGUIComponent::StoreSize(int NewWidth, int NewHeight) {
  Width = std::max(NewWidth, 0);
  Height = std::max(NewHeight, 0);
}

void CGUIComponent::SetPosition(int NewX, int NewY) {
  X = NewX;
  Y = NewY;
}

void CGUIComponent::Draw(int Surface, int x, int y) { DrawDrawingList(Surface, x, y); }

void CGUIComponent::DrawDrawingList(int Surface, int x, int y) const {
  for (size_t Index = 0; Index < DrawingList.size(); ++Index) {
    const DrawingListEntry& Entry = DrawingList[Index];
    if (Entry.Skin == 0) continue;
    Check(Entry.Skin < NumberOfSkins, "DrawingList[i].skin<NumberOfSkins", {"i", static_cast<long long>(Index)},
          {"skin", Entry.Skin});
    const int Left = x + Entry.x;
    const int Top = y + Entry.y;
    if (Entry.width == 0 && Entry.height == 0) {
      DrawSkinAt(Surface, Left, Top, Entry.Skin);
      continue;
    }
    if (Left < 0 || Top < 0) {
      ThrowException("dialog origin outside main window",
                     {{"Surface", std::to_string(Surface)},
                      {"Position", std::to_string(x) + "," + std::to_string(y)},
                      {"DrawingListLength", std::to_string(DrawingList.size())},
                      {"Index", std::to_string(Index)},
                      {"Entry", std::to_string(Entry.Skin) + " " + std::to_string(Entry.x) + "," +
                                    std::to_string(Entry.y) + " " + std::to_string(Entry.width) + "x" +
                                    std::to_string(Entry.height) + " " + std::to_string(Entry.srcx) + "," +
                                    std::to_string(Entry.srcy)}});
    }
    DrawSkin(Surface, Left, Top, Entry.width, Entry.height, Entry.Skin, Entry.srcx, Entry.srcy);
  }
}

bool CGUIComponent::MouseMove(int, int) { return true; }
bool CGUIComponent::LeftDown(int, int, int) { return true; }
bool CGUIComponent::LeftUp(int, int, int) { return true; }
bool CGUIComponent::LeftDouble(int x, int y, int Flags) { return LeftDown(x, y, Flags); }
bool CGUIComponent::RightUp(int, int, int) { return true; }
bool CGUIComponent::MouseEvent(int, int, int) { return true; }
void CGUIComponent::Hover(int, int) {}

bool CGUIComponent::LensHelp(int, int) {
  TLensHelpState& Lens = GUI().LensHelp;
  if (!Lens.WantedText.empty()) Lens.Changed = true;
  Lens.WantedText.clear();
  return false;
}

void CGUIComponent::KeyDown(int) {}
void CGUIComponent::OnEvent(int) {}

void CGUIComponent::SetCapture(CGUIComponent*) {
  if (Parent != nullptr) Parent->SetCapture(this);
}

void CGUIComponent::ReleaseCapture(CGUIComponent*) {
  if (Parent != nullptr) Parent->ReleaseCapture(this);
}

// --- CGUIComposite ---

CGUIComposite::~CGUIComposite() {
  while (!m_Children.empty()) CGUIComposite::DeleteChild(m_Children.front().get());
}

void CGUIComposite::Adopt(CGUIComponent& Child) {
  Check(Child.Parent == nullptr, "Child->Parent==NULL");
  Child.Parent = this;
}

void CGUIComposite::AddChild(std::unique_ptr<CGUIComponent> Child) {
  Check(Child != nullptr, "Child!=NULL");
  Adopt(*Child);
  m_Children.insert(m_Children.begin(), std::move(Child));
}

void CGUIComposite::AddChildLast(std::unique_ptr<CGUIComponent> Child) {
  Check(Child != nullptr, "Child!=NULL");
  Adopt(*Child);
  m_Children.push_back(std::move(Child));
}

void CGUIComposite::CheckOwnChild(const CGUIComponent* Child) const {
  Check(Child != nullptr, "Child!=NULL");
  Check(Child->Parent == this, "Child->Parent==this");
}

size_t CGUIComposite::IndexOf(const CGUIComponent* Child) const {
  const auto Found = std::find_if(m_Children.begin(), m_Children.end(),
                                  [Child](const std::unique_ptr<CGUIComponent>& Own) { return Own.get() == Child; });
  return static_cast<size_t>(Found - m_Children.begin());
}

// A child that holds the capture gives it up, down its own chain and up to the root.
std::unique_ptr<CGUIComponent> CGUIComposite::RemoveChild(CGUIComponent* Child) {
  CheckOwnChild(Child);
  if (Child == Capture) {
    Child->CancelCapture();
    Child->ReleaseCapture(nullptr);
  }
  const size_t Index = IndexOf(Child);
  std::unique_ptr<CGUIComponent> Removed = std::move(m_Children[Index]);
  m_Children.erase(m_Children.begin() + static_cast<std::ptrdiff_t>(Index));
  Removed->Parent = nullptr;
  return Removed;
}

void CGUIComposite::DeleteChild(CGUIComponent* Child) { CGUIComposite::RemoveChild(Child).reset(); }

void CGUIComposite::InsertChildAfter(CGUIComponent* Search, std::unique_ptr<CGUIComponent> Child) {
  if (Search == nullptr) {
    AddChild(std::move(Child));
    return;
  }
  CheckOwnChild(Search);
  Check(Child != nullptr, "Child!=NULL");
  Adopt(*Child);
  m_Children.insert(m_Children.begin() + static_cast<std::ptrdiff_t>(IndexOf(Search) + 1), std::move(Child));
}

void CGUIComposite::SwapChildren(CGUIComponent* Child1, CGUIComponent* Child2) {
  CheckOwnChild(Child1);
  CheckOwnChild(Child2);
  std::swap(m_Children[IndexOf(Child1)], m_Children[IndexOf(Child2)]);
}

bool CGUIComposite::HasChild(const CGUIComponent* Child) const { return IndexOf(Child) < m_Children.size(); }

CGUIComponent* CGUIComposite::GetFirstChild() const {
  return m_Children.empty() ? nullptr : m_Children.front().get();
}

CGUIComponent* CGUIComposite::GetLastChild() const { return m_Children.empty() ? nullptr : m_Children.back().get(); }

CGUIComponent* CGUIComposite::ChildAfter(const CGUIComponent* Child) const {
  const size_t Index = IndexOf(Child);
  return Index + 1 < m_Children.size() ? m_Children[Index + 1].get() : nullptr;
}

CGUIComponent* CGUIComposite::ChildBefore(const CGUIComponent* Child) const {
  const size_t Index = IndexOf(Child);
  return Index > 0 && Index < m_Children.size() ? m_Children[Index - 1].get() : nullptr;
}

void CGUIComposite::SetPosition(int NewX, int NewY) {
  CGUIComponent::SetPosition(NewX, NewY);
  for (const auto& Child : m_Children) Child->ParentMoved();
}

void CGUIComposite::Draw(int Surface, int x, int y) {
  DrawDrawingList(Surface, x, y);
  for (const auto& Child : m_Children) Child->Draw(Surface, x + Child->X, y + Child->Y);
}

void CGUIComposite::Update() {
  for (const auto& Child : m_Children) Child->Update();
}

CGUIComponent* CGUIComposite::ChildAt(int x, int y, size_t& Start) const {
  for (; Start < m_Children.size(); ++Start) {
    if (Contains(*m_Children[Start], x, y)) return m_Children[Start].get();
  }
  return nullptr;
}

template <typename TCall>
bool CGUIComposite::Route(int x, int y, TCall Call) {
  if (Capture != nullptr) return Call(*Capture, x - Capture->X, y - Capture->Y);
  size_t Index = 0;
  while (CGUIComponent* Child = ChildAt(x, y, Index)) {
    if (Call(*Child, x - Child->X, y - Child->Y)) return true;
    // A handler may have changed the list; go on behind the child if it is still there.
    Index = HasChild(Child) ? IndexOf(Child) + 1 : Index;
  }
  return false;
}

bool CGUIComposite::MouseMove(int x, int y) {
  return Route(x, y, [](CGUIComponent& Child, int cx, int cy) { return Child.MouseMove(cx, cy); });
}

bool CGUIComposite::LeftDown(int x, int y, int Flags) {
  return Route(x, y, [Flags](CGUIComponent& Child, int cx, int cy) { return Child.LeftDown(cx, cy, Flags); });
}

bool CGUIComposite::LeftUp(int x, int y, int Flags) {
  return Route(x, y, [Flags](CGUIComponent& Child, int cx, int cy) { return Child.LeftUp(cx, cy, Flags); });
}

bool CGUIComposite::LeftDouble(int x, int y, int Flags) {
  return Route(x, y, [Flags](CGUIComponent& Child, int cx, int cy) { return Child.LeftDouble(cx, cy, Flags); });
}

bool CGUIComposite::RightUp(int x, int y, int Flags) {
  return Route(x, y, [Flags](CGUIComponent& Child, int cx, int cy) { return Child.RightUp(cx, cy, Flags); });
}

bool CGUIComposite::MouseEvent(int x, int y, int Code) {
  return Route(x, y, [Code](CGUIComponent& Child, int cx, int cy) { return Child.MouseEvent(cx, cy, Code); });
}

void CGUIComposite::Hover(int x, int y) {
  size_t Index = 0;
  if (CGUIComponent* Child = ChildAt(x, y, Index)) Child->Hover(x - Child->X, y - Child->Y);
}

bool CGUIComposite::LensHelp(int x, int y) {
  size_t Index = 0;
  while (CGUIComponent* Child = ChildAt(x, y, Index)) {
    if (Child->LensHelp(x - Child->X, y - Child->Y)) {
      GUI().LensHelp.X += Child->X;
      GUI().LensHelp.Y += Child->Y;
      return true;
    }
    ++Index;
  }
  return CGUIComponent::LensHelp(x, y);
}

void CGUIComposite::SetCapture(CGUIComponent* Component) {
  Check(Capture == nullptr, "Capture==NULL");
  Capture = Component;
  if (Parent != nullptr) Parent->SetCapture(this);
}

void CGUIComposite::ReleaseCapture(CGUIComponent* Component) {
  Check(Capture == Component, "Capture==Component");
  Capture = nullptr;
  if (Parent != nullptr) Parent->ReleaseCapture(this);
}

void CGUIComposite::CancelCapture() {
  if (Capture == nullptr) return;
  Capture->CancelCapture();
  Capture = nullptr;
}

void CGUIComposite::MoveChild(CGUIComponent* Child, int x, int y) {
  Check(Width > 0, "Width>0", {"Width", Width});
  Check(Height > 0, "Height>0", {"Height", Height});
  CheckOwnChild(Child);
  Child->SetPosition(x < 0 ? x + Width : x, y < 0 ? y + Height : y);
}

void CGUIComposite::PlaceChild(CGUIComponent* Child, int x, int y, int ChildWidth, int ChildHeight) {
  MoveChild(Child, x, y);
  if (ChildWidth < 1) ChildWidth += Width - Child->X;
  if (ChildHeight < 1) ChildHeight += Height - Child->Y;
  Child->SetSize(ChildWidth, ChildHeight);
}

void CGUIComposite::FitToChildren(bool NoResize) { FitToChildren(0, 0, 0, 0, NoResize); }

void CGUIComposite::FitToChildren(int Left, int Top, int Right, int Bottom, bool NoResize) {
  if (m_Children.empty()) return;
  int LeastX = INT_MAX;
  int LeastY = INT_MAX;
  int RightEdge = 0;
  int BottomEdge = 0;
  for (const auto& Child : m_Children) {
    LeastX = std::min(LeastX, Child->X);
    LeastY = std::min(LeastY, Child->Y);
    RightEdge = std::max(RightEdge, Child->X + Child->Width);
    BottomEdge = std::max(BottomEdge, Child->Y + Child->Height);
  }
  Check(RightEdge > 0, "Width>0", {"Width", RightEdge});
  Check(BottomEdge > 0, "Height>0", {"Height", BottomEdge});
  Check(LeastX < INT_MAX, "LeastX<INT_MAX");
  Check(LeastY < INT_MAX, "LeastY<INT_MAX");
  const int NewWidth = std::max(RightEdge + std::abs(Right) + std::abs(Left), GetMinimumWidth());
  const int NewHeight = std::max(BottomEdge + std::abs(Bottom) + std::abs(Top), GetMinimumHeight());
  const int dx = std::abs(Left) - LeastX;
  const int dy = std::abs(Top) - LeastY;
  for (const auto& Child : m_Children) Child->SetPosition(Child->X + dx, Child->Y + dy);
  if (NoResize) {
    SetSize(NewWidth, NewHeight);
  } else {
    StoreSize(NewWidth, NewHeight);
  }
}

void CGUIComposite::GrowForChild(CGUIComponent* Child, int Left, int Top, int Right, int Bottom, bool Flag) {
  Check(Child != nullptr, "Child!=NULL");
  Check(Child->getWidth() > 0, "Child->getWidth()>0", {"Width", Child->getWidth()});
  Check(Child->getHeight() > 0, "Child->getHeight()>0", {"Height", Child->getHeight()});
  const int NewWidth =
      std::max(std::max(Left, 0) + Child->Width + (Right < 0 ? -Right : 0), GetMinimumWidth());
  const int NewHeight =
      std::max(std::max(Top, 0) + Child->Height + (Bottom < 0 ? -Bottom : 0), GetMinimumHeight());
  if (Flag) {
    SetSize(NewWidth, NewHeight);
  } else {
    StoreSize(NewWidth, NewHeight);
  }
}

void CGUIComposite::ClipChildren(bool Delete) {
  std::vector<CGUIComponent*> Children;
  for (const auto& Child : m_Children) Children.push_back(Child.get());
  for (CGUIComponent* Child : Children) {
    int NewX = Child->X;
    int NewY = Child->Y;
    int NewWidth = Child->Width;
    int NewHeight = Child->Height;
    if (NewX < 0) {
      NewWidth += NewX;
      NewX = 0;
    }
    if (NewY < 0) {
      NewHeight += NewY;
      NewY = 0;
    }
    NewWidth = std::min(NewWidth, Width - NewX);
    NewHeight = std::min(NewHeight, Height - NewY);
    const bool Cut = NewX != Child->X || NewY != Child->Y || NewWidth != Child->Width || NewHeight != Child->Height;
    if (NewWidth < 0 || NewHeight < 0 || (Delete && Cut)) {
      DeleteChild(Child);
    } else if (Cut) {
      Child->SetPosition(NewX, NewY);
      Child->SetSize(NewWidth, NewHeight);
    }
  }
}

bool CGUIComposite::IsPointInChild(int x, int y, const CGUIComponent* Child) const {
  return Child != nullptr && HasChild(Child) && x >= Child->X && x <= Child->X + Child->Width && y >= Child->Y &&
         y <= Child->Y + Child->Height;
}

// --- Timers ---

CObjectTimer::CObjectTimer(int Tenths, CGUIComponent* Element, int Event)
    : Remaining(Tenths * 100), Running(Remaining != 0), Target{Element, Event} {
  if (!Running) return;
  std::vector<CObjectTimer*>& Table = GUI().Timers;
  const auto Free = std::find(Table.begin(), Table.end(), nullptr);
  if (Free != Table.end()) {
    *Free = this;
  } else {
    Table.push_back(this);
  }
}

CObjectTimer::~CObjectTimer() { RemoveTimer(this); }

void CObjectTimer::Tick(int Elapsed) {
  if (!Running) return;
  if (Remaining > 0) Remaining = std::max(Remaining - Elapsed, 0);
  // The receiver tells the last event by IsExpired, so the state is set first.
  const bool Last = Remaining == 0;
  if (Last) {
    RemoveTimer(this);
    Running = false;
  }
  Target.Fire();
}

// Places are read anew on each step: a receiver may destroy timers or make new ones.
void TickTimers() {
  TGUIState& S = GUI();
  const int Now = GetProgramTime();
  const int Elapsed = S.LastTimerTick ? Now - *S.LastTimerTick : 0;
  S.LastTimerTick = Now;
  for (size_t Place = 0; Place < S.Timers.size(); ++Place) {
    CObjectTimer* Timer = S.Timers[Place];
    if (Timer != nullptr && !Timer->IsExpired()) Timer->Tick(Elapsed);
  }
}

int NumberOfLiveTimers() {
  const std::vector<CObjectTimer*>& Table = GUI().Timers;
  return static_cast<int>(std::count_if(Table.begin(), Table.end(), [](const CObjectTimer* T) { return T; }));
}

// --- Key bindings ---

void RegisterKey(int KeyCode, TEventTarget Target) {
  std::vector<TKeyBinding>& Rows = GUI().KeyBindings;
  const auto Row = std::find_if(Rows.begin(), Rows.end(), [KeyCode](const TKeyBinding& B) { return B.KeyCode == KeyCode; });
  if (Row != Rows.end()) {
    Row->Target = Target;
  } else {
    Rows.push_back({KeyCode, Target});
  }
}

// The last row moves into the gap, so the order of rows is not kept.
void UnregisterKey(int KeyCode) {
  std::vector<TKeyBinding>& Rows = GUI().KeyBindings;
  const auto Row = std::find_if(Rows.begin(), Rows.end(), [KeyCode](const TKeyBinding& B) { return B.KeyCode == KeyCode; });
  if (Row == Rows.end()) return;
  *Row = Rows.back();
  Rows.pop_back();
}

bool DispatchKey(int KeyCode) {
  int Code = KeyCode & ~0x200;
  const int Low = Code & 0x1FF;
  if (Low >= 0x61 && Low <= 0x7A) Code -= 0x20;
  for (const TKeyBinding& Row : GUI().KeyBindings) {
    if (Row.KeyCode == Code) {
      const TEventTarget Target = Row.Target;
      Target.Fire();
      return true;
    }
  }
  return false;
}

int NumberOfKeyBindings() { return static_cast<int>(GUI().KeyBindings.size()); }

// --- The roots ---

CGUIComposite* GetMainWindow() { return GUI().MainWindow.get(); }
void SetMainWindow(std::unique_ptr<CGUIComposite> Window) { GUI().MainWindow = std::move(Window); }
CGUIComponent* GetModalWindow() { return GUI().ModalWindow.get(); }
void SetModalWindow(std::unique_ptr<CGUIComponent> Window) { GUI().ModalWindow = std::move(Window); }
int MainWidth() { return GUI().MainWidth; }
int MainHeight() { return GUI().MainHeight; }

void SetMainSize(int Width, int Height) {
  GUI().MainWidth = Width;
  GUI().MainHeight = Height;
}

TLensHelpState& LensHelpState() { return GUI().LensHelp; }

// --- Tooltip ---

void SetTooltip(const std::string& Text) { GUI().Tooltip = Text; }
const std::string& GetTooltip() { return GUI().Tooltip; }

void SetTooltipPosition(int x, int y) {
  GUI().TooltipX = x;
  GUI().TooltipY = y;
}

void ClearTooltip() { GUI().Tooltip.clear(); }

namespace {

std::vector<std::string> Lines(const std::string& Text) {
  std::vector<std::string> Result(1);
  for (const char Character : Text) {
    if (Character == '\n') {
      Result.emplace_back();
    } else {
      Result.back() += Character;
    }
  }
  return Result;
}

}  // namespace

// The lines of a tooltip stand in a framed box that keeps within the root.
void DrawTooltip(int Surface) {
  const TGUIState& S = GUI();
  if (S.Tooltip.empty()) return;
  const auto& Look = SkinProperties.Tooltip;
  const int Font = Look.Text.Font;
  const std::vector<std::string> Rows = Lines(S.Tooltip);
  int TextWide = 0;
  for (const std::string& Row : Rows) TextWide = std::max(TextWide, TextWidth(Font, Row, WHOLE_TEXT, false));
  const int BoxWidth = TextWide + 2 * Look.Margin;
  const int BoxHeight = static_cast<int>(Rows.size()) * LineHeight(Font) + 2 * Look.Margin;
  int x = std::min(S.TooltipX, S.MainWidth - BoxWidth);
  int y = S.TooltipY + Look.OffsetY;
  if (y + BoxHeight > S.MainHeight) y = S.TooltipY - BoxHeight;
  x = std::max(x, 0);
  y = std::max(y, 0);
  FillRectangle(Surface, x, y, BoxWidth, BoxHeight, Look.Background, 255);
  DrawRectangleFrame(Surface, x, y, BoxWidth, BoxHeight, 1, Look.Frame);
  for (size_t Row = 0; Row < Rows.size(); ++Row) {
    PrintStyled(Surface, x + Look.Margin, y + Look.Margin + static_cast<int>(Row) * LineHeight(Font), Look.Text,
                Rows[Row].c_str());
  }
}

bool IsFramerateShown() { return GUI().FramerateShown; }
void ToggleFramerate() { GUI().FramerateShown = !GUI().FramerateShown; }

void InitGUI() { GUI(); }

// The windows go first: their destructors unbind keys and stop timers.
void ExitGUI() {
  if (!State) return;
  State->ModalWindow.reset();
  State->MainWindow.reset();
  State.reset();
}
