#include "gui/ContentWindow.h"

#include <algorithm>

#include "core/Exception.h"
#include "core/Preferences.h"
#include "graphics/Graphics.h"
#include "gui/Buttons.h"
#include "gui/SkinProperties.h"
#include "gui/TextRectangle.h"
#include "gui/Widgets.h"

namespace {

constexpr int FREE_SPACE_ENTRIES = 9;
constexpr int FRAME_ENTRIES = 8;

const auto& Layout = SkinProperties.ContentWindow;

int SkinWidth(int Skin) { return GetSkin(Skin).width; }
int SkinHeight(int Skin) { return GetSkin(Skin).height; }

// An entry that tiles an area; an empty area draws nothing, so that a list
// entry never stands for the skin's natural size by accident.
DrawingListEntry Area(int Skin, int x, int y, int Width, int Height, int StartY = 0) {
  if (Width <= 0 || Height <= 0) return {};
  return {Skin, x, y, Width, Height, 0, StartY};
}

void Place(CGUIComposite& Parent, CGUIComponent* Child, const TSkinPlace& Where) {
  Parent.PlaceChild(Child, Where.x, Where.y, Where.Width, Where.Height);
}

// The side bar list keeps one height per kind of window.
void StoreContentWindowHeight(int Kind, int Height) {
  auto& Entries = Preferences().ContentWindows;
  const auto Entry = std::ranges::find(Entries, Kind, &TContentWindowEntry::Kind);
  if (Entry != Entries.end()) {
    Entry->Height = Height;
  } else {
    Entries.push_back({Kind, Height});
  }
}

}  // namespace

// --- CDialogWindow ---

CDialogWindow::CDialogWindow() : CGUIComposite(FREE_SPACE_ENTRIES) {}

int CDialogWindow::GetMinimumWidth() const { return Layout.SideBarWidth; }

void CDialogWindow::FitWidth(CGUIComponent& Child) const { Child.SetSize(Width, Child.getHeight()); }

void CDialogWindow::AddChild(std::unique_ptr<CGUIComponent> Child) {
  CGUIComponent* Raw = Child.get();
  CGUIComposite::AddChild(std::move(Child));
  FitWidth(*Raw);
}

void CDialogWindow::AddChildLast(std::unique_ptr<CGUIComponent> Child) {
  CGUIComponent* Raw = Child.get();
  CGUIComposite::AddChildLast(std::move(Child));
  FitWidth(*Raw);
}

void CDialogWindow::InsertChildAfter(CGUIComponent* Search, std::unique_ptr<CGUIComponent> Child) {
  CGUIComponent* Raw = Child.get();
  CGUIComposite::InsertChildAfter(Search, std::move(Child));
  FitWidth(*Raw);
}

void CDialogWindow::DeleteChild(CGUIComponent* Child) {
  if (Dragged == Child) Dragged = nullptr;
  CGUIComposite::DeleteChild(Child);
  Arrange(ARRANGE_TIDY, nullptr);
}

int CDialogWindow::GetMinimumHeight() const {
  int Sum = 0;
  for (CGUIComponent* Child = GetFirstChild(); Child != nullptr; Child = ChildAfter(Child)) Sum += Child->getHeight();
  return Sum;
}

void CDialogWindow::SetSize(int NewWidth, int NewHeight) {
  StoreSize(NewWidth, NewHeight);
  ClientWidth = NewWidth;
  ClientHeight = NewHeight;
  for (CGUIComponent* Child = GetFirstChild(); Child != nullptr; Child = ChildAfter(Child)) {
    FitWidth(*Child);
    if (!HasChild(Child)) break;
  }
  Arrange(ARRANGE_RESIZED, nullptr);
}

int CDialogWindow::GetFreeSpace() {
  const int Free = ClientHeight - GetMinimumHeight();
  if (TrackFreeSpace) LastFreeSpace = Free;
  return Free;
}

CGenericContentWindow* CDialogWindow::GetContentWindow(int Identifier) const {
  for (CGUIComponent* Child = GetFirstChild(); Child != nullptr; Child = ChildAfter(Child)) {
    auto* Window = dynamic_cast<CGenericContentWindow*>(Child);
    if (Window != nullptr && Window->GetIdentifier() == Identifier) return Window;
  }
  return nullptr;
}

void CDialogWindow::SaveContentWindows(bool BigInventory) const {
  for (CGUIComponent* Child = GetFirstChild(); Child != nullptr; Child = ChildAfter(Child)) {
    const auto* Window = dynamic_cast<const CGenericContentWindow*>(Child);
    if (Window == nullptr || Window->GetIdentifier() >= CONTAINER_WINDOW_FIRST) continue;
    int Kind = Window->GetIdentifier();
    if (Kind == SMALL_INVENTORY_WINDOW && BigInventory) Kind = BIG_INVENTORY_WINDOW;
    Preferences().ContentWindows.push_back({Kind, Child->getHeight()});
  }
}

void CDialogWindow::Arrange(int Strategy, CGUIComponent* Work) { Run(Strategy, Work, nullptr); }

void CDialogWindow::Arrange(int Strategy, std::unique_ptr<CGUIComponent> Work) {
  Check(Strategy == ARRANGE_INCOMING, "unknown strategy", {"Strategy", Strategy});
  CGUIComponent* Raw = Work.get();
  Run(Strategy, Raw, std::move(Work));
}

void CDialogWindow::Run(int Strategy, CGUIComponent* Work, std::unique_ptr<CGUIComponent> Incoming) {
  if (Busy) return;
  const bool Known = Strategy == ARRANGE_DRAGGING || Strategy == ARRANGE_GROWN || Strategy == ARRANGE_SHRUNK ||
                     Strategy == ARRANGE_RESIZED || Strategy == ARRANGE_INCOMING || Strategy == ARRANGE_TIDY;
  Check(Known, "unknown strategy", {"Strategy", Strategy});
  Check(Strategy != ARRANGE_SHRUNK || Work != nullptr, "Work!=NULL");
  Check(Strategy != ARRANGE_INCOMING || Incoming != nullptr, "Work!=NULL");
  Busy = true;
  switch (Strategy) {
    case ARRANGE_DRAGGING:
      Dragged = Work;
      if (Work != nullptr) SwapWhileDragging(Work);
      Position(true);
      break;
    case ARRANGE_GROWN:
      Position(false);
      ShrinkToFit(Work);
      break;
    case ARRANGE_SHRUNK:
      TrackFreeSpace = false;
      Position(false);
      GiveBackSpace(Work);
      Position(false);
      break;
    case ARRANGE_RESIZED:
      Position(false);
      ReduceToFit();
      break;
    case ARRANGE_INCOMING:
      MakeRoom(*Incoming);
      AddChildLast(std::move(Incoming));
      Position(false);
      break;
    default:  // ARRANGE_TIDY
      Position(false);
  }
  Update();
  TrackFreeSpace = true;
  Busy = false;
}

// The neighbours hold their landing places, so their middles decide.
void CDialogWindow::SwapWhileDragging(CGUIComponent* Work) {
  CGUIComponent* Before = ChildBefore(Work);
  CGUIComponent* Behind = ChildAfter(Work);
  if (Before != nullptr && Work->getY() < Before->getY() + Before->getHeight() / 2) {
    SwapChildren(Before, Work);
  } else if (Behind != nullptr && Work->getY() + Work->getHeight() > Behind->getY() + Behind->getHeight() / 2) {
    SwapChildren(Work, Behind);
  }
}

void CDialogWindow::Position(bool SkipDragged) {
  int y = OffsetY;
  for (CGUIComponent* Child = GetFirstChild(); Child != nullptr; Child = ChildAfter(Child)) {
    if (!(SkipDragged && Child == Dragged)) Child->SetPosition(OffsetX, y);
    y += Child->getHeight();
  }
}

// The windows give bottom first; the one that has grown gives only when no other can.
void CDialogWindow::ShrinkToFit(CGUIComponent* Grown) {
  const auto CanGive = [](const CGUIComponent* Child) { return Child->getHeight() > Child->GetMinimumHeight(); };
  while (GetFreeSpace() < 0) {
    CGUIComponent* Giver = nullptr;
    for (CGUIComponent* Child = GetLastChild(); Child != nullptr && Giver == nullptr; Child = ChildBefore(Child)) {
      if (Child != Grown && CanGive(Child)) Giver = Child;
    }
    if (Giver == nullptr && Grown != nullptr && CanGive(Grown)) Giver = Grown;
    if (Giver == nullptr) return;
    const int DeltaHeight = std::min(Giver->getHeight() - Giver->GetMinimumHeight(), -GetFreeSpace());
    Check(DeltaHeight > 0, "DeltaHeight>0", {"DeltaHeight", DeltaHeight});
    const int Before = Giver->getHeight();
    Giver->SetSize(Width, Before - DeltaHeight);
    const int Given = Before - Giver->getHeight();
    if (Given <= 0) return;
    for (CGUIComponent* Child = ChildAfter(Giver); Child != nullptr; Child = ChildAfter(Child)) {
      Child->SetPosition(Child->getX(), Child->getY() - Given);
    }
  }
}

// What a window gave up goes to the windows below it, from the bottom.
void CDialogWindow::GiveBackSpace(const CGUIComponent* Work) {
  if (Work == GetLastChild()) return;
  const int Free = GetFreeSpace();
  if (Free <= LastFreeSpace) return;
  int Excess = Free - LastFreeSpace;
  for (CGUIComponent* Child = GetLastChild(); Child != Work && Child != nullptr && Excess > 0;
       Child = ChildBefore(Child)) {
    const int Before = Child->getHeight();
    Child->SetSize(Width, Before + Excess);
    Excess -= Child->getHeight() - Before;
  }
}

// Cuts the stack to the bar's height from the top down; a window that can't
// fit and may go is closed.
void CDialogWindow::ReduceToFit() {
  int Remaining = ClientHeight;
  bool Deleted = false;
  CGUIComponent* Child = GetFirstChild();
  while (Child != nullptr) {
    CGUIComponent* Next = ChildAfter(Child);
    bool Marked = false;
    if (Remaining >= Child->getHeight()) {
      Remaining -= Child->getHeight();
    } else if (Child->GetMinimumHeight() > Remaining && Child->MayBeDiscarded()) {
      Marked = true;
    } else {
      Child->SetSize(Width, Remaining);
      Child->Update();
      if (Child->getHeight() <= Remaining || !Child->MayBeDiscarded()) {
        Remaining -= Child->getHeight();
      } else {
        Marked = true;
      }
    }
    if (Marked) {
      DeleteChild(Child);
      Deleted = true;
    }
    Child = Next;
  }
  Busy = false;
  if (Deleted) Position(false);
}

// Squeezes the others bottom first, then closes those that may go.
void CDialogWindow::MakeRoom(CGUIComponent& Work) {
  int Free = GetFreeSpace();
  if (Free < Work.getHeight()) {
    const int Target = std::max(Work.GetMinimumHeight(), Free);
    CGUIComponent* Child = GetLastChild();
    while (Child != nullptr && Free < Target) {
      CGUIComponent* Before = ChildBefore(Child);
      const int Height = Child->getHeight();
      Child->SetSize(Width, Height - Target + Free);
      Free += Height - Child->getHeight();
      if (Free >= Target || !Child->MayBeDiscarded()) break;
      Free += Child->getHeight();
      DeleteChild(Child);
      Child = Before;
    }
  }
  Work.SetSize(Work.getWidth(), std::min(Work.getHeight(), Free));
}

int CDialogWindow::LandingY(const CGUIComponent* Child) const {
  int y = OffsetY;
  for (CGUIComponent* Other = GetFirstChild(); Other != Child; Other = ChildAfter(Other)) y += Other->getHeight();
  return y;
}

void CDialogWindow::Draw(int Surface, int x, int y) {
  for (CGUIComponent* Child = GetFirstChild(); Child != nullptr; Child = ChildAfter(Child)) {
    if (Child == Dragged) {
      FillRectangle(Surface, x + OffsetX, y + LandingY(Child), ClientWidth, Child->getHeight(), {0, 0, 0}, 255);
    } else {
      Child->Draw(Surface, x + Child->getX(), y + Child->getY());
    }
  }
  DrawDrawingList(Surface, x, y);
  if (Dragged != nullptr) Dragged->Draw(Surface, x + Dragged->getX(), y + Dragged->getY());
}

// The free space looks like an empty panel whose background runs on behind the panels.
void CDialogWindow::Update() {
  std::ranges::fill(DrawingList, DrawingListEntry{});
  const int Free = GetFreeSpace();
  if (Free <= 0) return;
  const int Top = Height - Free;
  const int TopHeight = std::min(SkinHeight(SKIN_PANEL_FRAME_T), Free);
  const int BottomHeight = std::min(SkinHeight(SKIN_PANEL_FRAME_B), Free - TopHeight);
  const int MiddleHeight = Free - TopHeight - BottomHeight;
  const int Bottom = Top + Free - BottomHeight;
  const int Left = SkinWidth(SKIN_PANEL_FRAME_L);
  const int Right = SkinWidth(SKIN_PANEL_FRAME_R);
  const int TopLeft = SkinWidth(SKIN_PANEL_FRAME_TL);
  const int TopRight = SkinWidth(SKIN_PANEL_FRAME_TR);
  const int BottomLeft = SkinWidth(SKIN_PANEL_FRAME_BL);
  const int BottomRight = SkinWidth(SKIN_PANEL_FRAME_BR);
  DrawingList[0] = Area(SKIN_PANEL_FRAME_TL, 0, Top, TopLeft, std::min(SkinHeight(SKIN_PANEL_FRAME_TL), Free));
  DrawingList[1] = Area(SKIN_PANEL_FRAME_T, TopLeft, Top, Width - TopLeft - TopRight, TopHeight);
  DrawingList[2] = Area(SKIN_PANEL_FRAME_TR, Width - TopRight, Top, TopRight,
                        std::min(SkinHeight(SKIN_PANEL_FRAME_TR), Free));
  DrawingList[3] = Area(SKIN_PANEL_FRAME_BL, 0, Bottom, BottomLeft, BottomHeight);
  DrawingList[4] = Area(SKIN_PANEL_FRAME_B, BottomLeft, Bottom, Width - BottomLeft - BottomRight, BottomHeight);
  DrawingList[5] = Area(SKIN_PANEL_FRAME_BR, Width - BottomRight, Bottom, BottomRight, BottomHeight);
  DrawingList[6] = Area(SKIN_PANEL_FRAME_L, 0, Top + TopHeight, Left, MiddleHeight);
  DrawingList[7] = Area(SKIN_PANEL_FRAME_R, Width - Right, Top + TopHeight, Right, MiddleHeight);
  DrawingList[8] = Area(SKIN_PANEL_BACKGROUND, Left, Top + TopHeight, Width - Left - Right, MiddleHeight,
                        Top % SkinHeight(SKIN_PANEL_BACKGROUND));
}

// --- CSimpleContentWindow ---

CSimpleContentWindow::CSimpleContentWindow(int Identifier, bool HasBackground, int DrawingListLength)
    : CGenericContentWindow(Identifier, DrawingListLength), HasBackground(HasBackground) {}

void CSimpleContentWindow::ArrangeParent(int Strategy, CGUIComponent* Work) const {
  if (auto* Bar = dynamic_cast<CDialogWindow*>(Parent)) Bar->Arrange(Strategy, Work);
}

void CSimpleContentWindow::Draw(int Surface, int x, int y) {
  if (HasBackground) DrawSkin(Surface, x, y, Width, Height, SKIN_PANEL_BACKGROUND, 0, BackgroundOffset);
  CGUIComposite::Draw(Surface, x, y);
}

void CSimpleContentWindow::Update() {
  CGUIComposite::Update();
  BackgroundOffset = Y % SkinHeight(SKIN_PANEL_BACKGROUND);
}

bool CSimpleContentWindow::LeftDown(int x, int y, int Flags) {
  if (CGUIComposite::LeftDown(x, y, Flags)) return true;
  Dragging = true;
  SetCapture(nullptr);
  DragX = x;
  DragY = y;
  return true;
}

bool CSimpleContentWindow::MouseMove(int x, int y) {
  if (!Dragging) return CGUIComposite::MouseMove(x, y);
  const int Lowest = Parent != nullptr ? Parent->getHeight() - Height : 0;
  SetPosition(X, std::max(0, std::min(Y - DragY + y, Lowest)));
  ArrangeParent(ARRANGE_DRAGGING, this);
  return true;
}

bool CSimpleContentWindow::LeftUp(int x, int y, int Flags) {
  if (!Dragging) return CGUIComposite::LeftUp(x, y, Flags);
  ReleaseCapture(nullptr);
  ArrangeParent(ARRANGE_DRAGGING, nullptr);
  return true;
}

void CSimpleContentWindow::ReleaseCapture(CGUIComponent* Component) {
  Dragging = false;
  CGUIComposite::ReleaseCapture(Component);
}

// --- CGUIContentBody ---

void CGUIContentBody::Draw(int Surface, int x, int y) {
  if (!Minimised) CGUIComposite::Draw(Surface, x, y);
}

// --- CContentWindow ---

CContentWindow::CContentWindow(int Identifier, std::unique_ptr<CGUIContentBody> Body, bool Resizable,
                               bool HasBackground)
    : CSimpleContentWindow(Identifier, HasBackground, FRAME_ENTRIES) {
  Check(Body != nullptr, "_Body!=NULL");
  this->Body = Body.get();
  AddChildLast(std::move(Body));
  if (Resizable) {
    auto Corner = std::make_unique<CGUIResizer>(this);
    auto Edge = std::make_unique<CGUIResizer>(this, true);
    Resizer = Corner.get();
    BottomResizer = Edge.get();
    AddChildLast(std::move(Corner));
    AddChildLast(std::move(Edge));
  }
}

// The remaining children go with the composite; the detached ones with Detached.
CContentWindow::~CContentWindow() {
  if (Identifier == SKILLS_WINDOW || Identifier == BATTLE_WINDOW || Identifier == VIP_WINDOW) {
    StoreContentWindowHeight(Identifier, Height);
  }
}

void CContentWindow::Detach(CGUIComponent* Element) {
  if (Element != nullptr && HasChild(Element)) Detached.push_back(RemoveChild(Element));
}

void CContentWindow::Reattach(CGUIComponent* Element, bool AtHead) {
  const auto Found = std::ranges::find(Detached, Element, &std::unique_ptr<CGUIComponent>::get);
  if (Element == nullptr || Found == Detached.end()) return;
  std::unique_ptr<CGUIComponent> Owned = std::move(*Found);
  Detached.erase(Found);
  if (AtHead) {
    AddChild(std::move(Owned));
  } else {
    AddChildLast(std::move(Owned));
  }
}

void CContentWindow::Discard(CGUIComponent* Element) {
  if (Element == nullptr) return;
  if (HasChild(Element)) {
    DeleteChild(Element);
    return;
  }
  std::erase_if(Detached, [Element](const auto& Owned) { return Owned.get() == Element; });
}

template <typename T>
void CContentWindow::Replace(T*& Slot, std::unique_ptr<T> Element) {
  Discard(Slot);
  Slot = Element.get();
  if (Element == nullptr) return;
  AddChild(std::move(Element));
  PlaceOptional(Slot);
}

void CContentWindow::SetParentButton(std::unique_ptr<CGUIComponent> Element) {
  Replace(ParentButton, std::move(Element));
}
void CContentWindow::SetCloseButton(std::unique_ptr<CGUIComponent> Element) {
  Replace(CloseButton, std::move(Element));
}
void CContentWindow::SetMinimiseButton(std::unique_ptr<CGUIButton> Element) {
  Replace(MinimiseButton, std::move(Element));
}
void CContentWindow::SetIcon(std::unique_ptr<CGUIComponent> Element) { Replace(Icon, std::move(Element)); }
void CContentWindow::SetTitle(std::unique_ptr<CGUIComponent> Element) { Replace(TitleText, std::move(Element)); }

void CContentWindow::SetTitle(const char* Text) {
  SetTitle(std::make_unique<CGUITextRectangle>(Layout.TitleText, Text));
}

void CContentWindow::AddCloseButton() {
  SetCloseButton(std::make_unique<CGUIButton>(SKIN_CLOSE, SKIN_CLOSE_DOWN, "Close this window", false, 0, 0,
                                              TEventTarget{this, EVENT_CLOSE}));
}

void CContentWindow::AddMinimiseButton() {
  const int Up = IsMinimized ? SKIN_MAXIMISE : SKIN_MINIMISE;
  const int Down = IsMinimized ? SKIN_MAXIMISE_DOWN : SKIN_MINIMISE_DOWN;
  SetMinimiseButton(std::make_unique<CGUIButton>(Up, Down, "Maximise or minimise window", false, 0, 0,
                                                 TEventTarget{this, EVENT_TOGGLE_MINIMISED}));
}

void CContentWindow::ShowParentButton() {
  if (ParentButton == nullptr || HasChild(ParentButton)) return;
  Reattach(ParentButton, true);
  PlaceOptional(ParentButton);
}

void CContentWindow::HideParentButton() { Detach(ParentButton); }

void CContentWindow::PlaceOptional(CGUIComponent* Element) {
  if (Element == nullptr || !HasChild(Element) || Width <= 0 || Height <= 0) return;
  const auto Move = [&](const TSkinPoint& Point) { MoveChild(Element, Point.x, Point.y); };
  if (Element == ParentButton) Move(Layout.ParentButton);
  if (Element == CloseButton) Move(Layout.CloseButton);
  if (Element == MinimiseButton) Move(Layout.MinimiseButton);
  if (Element == Icon) Place(*this, Element, Layout.Icon);
  if (Element == TitleText) Place(*this, Element, Layout.Title);
}

int CContentWindow::GetFrameHeight() { return SkinHeight(SKIN_WINDOW_FRAME_T) + SkinHeight(SKIN_WINDOW_FRAME_B); }

int CContentWindow::GetMinimumHeight() const {
  return GetFrameHeight() + (IsMinimized ? 0 : Body->GetMinimumHeight());
}

// A body squeezed to nothing demands nothing, so only a body with a size can widen the window.
void CContentWindow::PlaceChildren() {
  Place(*this, Body, Layout.Body);
  if (Body->getWidth() > 0 && Body->getHeight() > 0) {
    const TSkinPlace& Margins = Layout.Body;
    GrowForChild(Body, Margins.x, Margins.y, Margins.Width, Margins.Height, false);
  }
  if (Resizer != nullptr) Place(*this, Resizer, Layout.Resizer);
  if (BottomResizer != nullptr) Place(*this, BottomResizer, Layout.BottomResizer);
}

void CContentWindow::SetSize(int NewWidth, int NewHeight) {
  const int Change = NewHeight - Height;
  if (IsMinimized) {
    StoreSize(NewWidth, MinimisedHeight);
  } else {
    StoreSize(NewWidth, std::max(NewHeight, GetMinimumHeight()));
    PlaceChildren();
  }
  for (CGUIComponent* Element : {ParentButton, CloseButton, static_cast<CGUIComponent*>(MinimiseButton), Icon,
                                 TitleText}) {
    PlaceOptional(Element);
  }
  Update();
  if (IsMinimized) {
    ArrangeParent(ARRANGE_RESIZED, nullptr);
  } else if (Change < 0) {
    ArrangeParent(ARRANGE_SHRUNK, this);
  } else {
    ArrangeParent(Change == 0 ? ARRANGE_TIDY : ARRANGE_GROWN, this);
  }
}

void CContentWindow::Update() {
  CSimpleContentWindow::Update();
  const int W = Width;
  const int H = Height;
  const int TopLeft = SkinWidth(SKIN_WINDOW_FRAME_TL);
  const int TopRight = SkinWidth(SKIN_WINDOW_FRAME_TR);
  const int BottomLeft = SkinWidth(SKIN_WINDOW_FRAME_BL);
  const int BottomRight = SkinWidth(SKIN_WINDOW_FRAME_BR);
  const int Left = SkinWidth(SKIN_WINDOW_FRAME_L);
  const int Right = SkinWidth(SKIN_WINDOW_FRAME_R);
  const int Bottom = SkinHeight(SKIN_WINDOW_FRAME_B);
  DrawingList[0] = {SKIN_WINDOW_FRAME_TL, 0, 0};
  DrawingList[1] = Area(SKIN_WINDOW_FRAME_T, TopLeft, 0, W - TopLeft - TopRight, SkinHeight(SKIN_WINDOW_FRAME_T));
  DrawingList[2] = {SKIN_WINDOW_FRAME_TR, W - TopRight, 0};
  DrawingList[3] = Area(SKIN_WINDOW_FRAME_L, 0, SkinHeight(SKIN_WINDOW_FRAME_TL), Left,
                        H - SkinHeight(SKIN_WINDOW_FRAME_TL) - SkinHeight(SKIN_WINDOW_FRAME_BL));
  DrawingList[4] = Area(SKIN_WINDOW_FRAME_R, W - Right, SkinHeight(SKIN_WINDOW_FRAME_T), Right,
                        H - SkinHeight(SKIN_WINDOW_FRAME_TR) - SkinHeight(SKIN_WINDOW_FRAME_BR));
  DrawingList[5] = {SKIN_WINDOW_FRAME_BL, 0, H - SkinHeight(SKIN_WINDOW_FRAME_BL)};
  DrawingList[6] = Area(SKIN_WINDOW_FRAME_B, BottomLeft, H - Bottom, W - BottomLeft - BottomRight, Bottom);
  DrawingList[7] = {SKIN_WINDOW_FRAME_BR, W - BottomRight, H - SkinHeight(SKIN_WINDOW_FRAME_BR)};
}

template <typename TCall>
bool CContentWindow::OfferToResizers(int x, int y, TCall Call) {
  if (IsMinimized || GetCapture() != nullptr) return false;
  for (CGUIResizer* Edge : {Resizer, BottomResizer}) {
    if (IsPointInChild(x, y, Edge) && Call(*Edge, x - Edge->getX(), y - Edge->getY())) return true;
  }
  return false;
}

bool CContentWindow::LeftDown(int x, int y, int Flags) {
  const auto Press = [Flags](CGUIResizer& Edge, int ex, int ey) { return Edge.LeftDown(ex, ey, Flags); };
  return OfferToResizers(x, y, Press) || CSimpleContentWindow::LeftDown(x, y, Flags);
}

bool CContentWindow::MouseMove(int x, int y) {
  const auto Move = [](CGUIResizer& Edge, int ex, int ey) { return Edge.MouseMove(ex, ey); };
  return OfferToResizers(x, y, Move) || CSimpleContentWindow::MouseMove(x, y);
}

bool CContentWindow::LeftDouble(int x, int y, int Flags) {
  if (CGUIComposite::LeftDouble(x, y, Flags)) return true;
  if (y < 0 || y >= SkinHeight(SKIN_WINDOW_FRAME_T)) return false;
  OnEvent(EVENT_TOGGLE_MINIMISED);
  return true;
}

void CContentWindow::OnEvent(int Event) {
  switch (Event) {
    case EVENT_TOGGLE_MINIMISED:
      if (IsMinimized) {
        Maximise();
      } else {
        Minimise();
      }
      break;
    case EVENT_CLOSE:
      // Destroys this window.
      if (Parent != nullptr) Parent->DeleteChild(this);
      break;
    default:
      Check(false, "unknown event", {"Event", Event});
  }
}

void CContentWindow::Minimise() {
  Check(!IsMinimized, "IsMinimized==false");
  IsMinimized = true;
  SavedHeight = Height;
  Body->OnMinimise();
  Detach(Resizer);
  Detach(BottomResizer);
  Detach(Body);
  if (MinimiseButton != nullptr) MinimiseButton->SetSkins(SKIN_MAXIMISE, SKIN_MAXIMISE_DOWN);
  SetSize(Width, MinimisedHeight);
}

void CContentWindow::Maximise() {
  Check(IsMinimized, "IsMinimized==true");
  IsMinimized = false;
  Body->OnMaximise();
  Reattach(Body, false);
  Reattach(Resizer, false);
  Reattach(BottomResizer, false);
  if (MinimiseButton != nullptr) MinimiseButton->SetSkins(SKIN_MINIMISE, SKIN_MINIMISE_DOWN);
  SetSize(Width, SavedHeight);
}
