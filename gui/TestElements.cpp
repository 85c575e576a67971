#include "gui/TestElements.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "graphics/Fonts.h"
#include "graphics/Graphics.h"

namespace {

constexpr TRGBColor NAME_COLOR{255, 255, 255};
constexpr TRGBColor LINE_COLOR{224, 224, 224};

std::string Hex(int Value) {
  char Text[16];
  std::snprintf(Text, sizeof(Text), "0x%03X", Value);
  return Text;
}

std::string At(int x, int y) { return " x=" + std::to_string(x) + " y=" + std::to_string(y); }

}  // namespace

CEventProbe::CEventProbe(std::string Name) : CGUIElement(1), m_Name(std::move(Name)) {}

CEventProbe::~CEventProbe() {
  if (m_BoundKey) UnregisterKey(BOUND_KEY);
}

void CEventProbe::SetSize(int NewWidth, int NewHeight) {
  CGUIElement::SetSize(NewWidth, NewHeight);
  Update();
}

void CEventProbe::Update() { DrawingList[0] = DrawingListEntry(SKIN_DIALOG_BACKGROUND, 0, 0, Width, Height); }

void CEventProbe::Draw(int Surface, int x, int y) {
  CGUIElement::Draw(Surface, x, y);
  PrintPlain(Surface, x + 6, y + 6, 4, NAME_COLOR, ("Probe " + m_Name).c_str(), LEFT_ALIGN);
  PrintClipped(Surface, x + 6, y + 26, 1, LINE_COLOR, m_LastLine.c_str(), LEFT_ALIGN, {x, y, Width, Height});
}

void CEventProbe::Report(const std::string& Line) {
  m_LastLine = Line;
  std::fprintf(stderr, "probe %s %s\n", m_Name.c_str(), Line.c_str());
  std::fflush(stderr);
}

bool CEventProbe::MouseMove(int x, int y) {
  if (m_Dragging) Report("MouseMove" + At(x, y));
  return true;
}

bool CEventProbe::LeftDown(int x, int y, int Flags) {
  Report("LeftDown" + At(x, y) + " flags=" + Hex(Flags));
  if (!m_Dragging) {
    m_Dragging = true;
    SetCapture(nullptr);
  }
  return true;
}

bool CEventProbe::LeftUp(int x, int y, int Flags) {
  Report("LeftUp" + At(x, y) + " flags=" + Hex(Flags));
  if (m_Dragging) ReleaseCapture(nullptr);
  return true;
}

bool CEventProbe::LeftDouble(int x, int y, int Flags) {
  Report("LeftDouble" + At(x, y) + " flags=" + Hex(Flags));
  return true;
}

bool CEventProbe::RightUp(int x, int y, int Flags) {
  Report("RightUp" + At(x, y) + " flags=" + Hex(Flags));
  return true;
}

bool CEventProbe::MouseEvent(int x, int y, int Code) {
  Report("MouseEvent" + At(x, y) + " code=" + std::to_string(Code));
  return true;
}

void CEventProbe::Hover(int x, int y) {
  Report("Hover" + At(x, y));
  SetTooltip("Tooltip of probe " + m_Name);
}

void CEventProbe::KeyDown(int Key) { Report("KeyDown key=" + Hex(Key)); }

void CEventProbe::OnEvent(int Event) { Report("OnEvent event=" + std::to_string(Event)); }

// The drag ends here, whoever ends it.
void CEventProbe::ReleaseCapture(CGUIComponent* Component) {
  m_Dragging = false;
  CGUIElement::ReleaseCapture(Component);
}

void CEventProbe::BindKey() {
  RegisterKey(BOUND_KEY, {this, BOUND_EVENT});
  m_BoundKey = true;
}

bool TestElementsWanted() {
  const char* Value = std::getenv("KELMO_TEST_ELEMENTS");
  return Value != nullptr && std::string(Value) == "1";
}

void AddTestElements(CRootWindow& Root) {
  auto First = std::make_unique<CEventProbe>("A");
  auto Second = std::make_unique<CEventProbe>("B");
  CEventProbe* A = First.get();
  CEventProbe* B = Second.get();
  Root.AddChildLast(std::move(First));
  Root.AddChildLast(std::move(Second));
  Root.PlaceChild(A, 40, 40, 240, 120);
  Root.PlaceChild(B, 320, 40, 240, 120);
  Root.SetKeyReceiver(A);
  A->BindKey();
}
