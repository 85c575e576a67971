#include "gui/Displays.h"

#include <cstdio>

#include "core/Exception.h"
#include "graphics/Graphics.h"
#include "graphics/OutfitPalette.h"
#include "gui/SkinProperties.h"
#include "world/Objects.h"

namespace {

constexpr int FRAME_SKIN = 114;
constexpr int TUTORIAL_PICTURE = 3;
// The field that the creature display centres its picture on.
constexpr int CREATURE_FIELD = 128;
// Facing the viewer.
constexpr int OUTFIT_DIRECTION = 2;

constexpr TRect TutorialImages[CGUITutorialHintImageDisplay::NumberOfImages] = {
    {237, 355, 43, 30},   {284, 356, 18, 27},   {237, 245, 110, 110}, {187, 127, 160, 117}, {348, 127, 132, 222},
    {0, 224, 169, 160},   {0, 127, 185, 96},    {0, 0, 203, 126},     {204, 0, 256, 126},   {305, 355, 175, 182},
    {0, 385, 300, 250},   {172, 245, 64, 64},   {172, 310, 64, 64},   {461, 0, 163, 123},   {481, 124, 191, 136},
    {481, 261, 245, 210}, {625, 0, 108, 98},    {481, 852, 148, 98},  {0, 858, 163, 123},   {481, 472, 236, 209},
    {0, 636, 238, 221},   {481, 682, 183, 169}, {304, 538, 176, 202}, {665, 682, 163, 123}, {481, 472, 236, 209},
    {241, 741, 238, 236}, {630, 852, 92, 89},   {673, 99, 227, 124},  {727, 224, 317, 224},
};

TPattern PatternOf(const TObject& Object) {
  if (GetObjectFlag(Object.Type, CUMULATIVE)) return GetCumulativePattern(Object.Type, static_cast<int>(Object.Data));
  if (GetObjectFlag(Object.Type, LIQUIDCONTAINER) || GetObjectFlag(Object.Type, LIQUIDPOOL)) {
    return GetLiquidPattern(Object.Type, static_cast<int>(Object.Data));
  }
  return {};
}

int PhaseOf(const TObject& Object) {
  return Object.Animation ? static_cast<int>(Object.Animation->GetCurrentPhase()) : 1;
}

// The count as the four-character buffer holds it, at the bottom right.
void DrawCount(int Surface, int x, int y, int Size, std::uint32_t Count, const TextStyle& Style, TRect ClipRect) {
  char Buffer[4];
  std::snprintf(Buffer, sizeof(Buffer), "%u", Count);
  const int Top = y + Size - 1 - FontHeight(Style.Font);
  PrintStyledClipped(Surface, x + GetStyleOffset(Style, Size), Top, Style, Buffer, ClipRect);
}

void CheckSquare(const CGUIComponent& Display) {
  Check(Display.getWidth() == Display.getHeight(), "getWidth()==getHeight()",
        {"Difference", Display.getWidth() - Display.getHeight()});
}

}  // namespace

void DrawObjectDisplay(int Surface, int x, int y, int Size, const TObject& Object, TRGBColor StageColor,
                       TRect ClipRect, const TextStyle& Style, bool ForceCount) {
  const int Type = Object.Type;
  if (Type == 0) return;
  const TPattern Pattern = PatternOf(Object);
  const int Phase = PhaseOf(Object);
  const int Cell = Size * CELL_SIZE / GetObjectDisplaySize(Type);
  for (int Layer = 1; Layer <= GetObjectLayers(Type); ++Layer) {
    for (int Column = 1; Column <= GetObjectWidth(Type); ++Column) {
      for (int Row = 1; Row <= GetObjectHeight(Type); ++Row) {
        const auto Sprite = GetObjectSprite(Type, Column, Row, Layer, Pattern.X, Pattern.Y, Pattern.Z, Phase);
        DrawSpriteStretched(Surface, x + Size - Cell * Column, y + Size - Cell * Row, Cell, Cell,
                            static_cast<int>(Sprite), StageColor, ClipRect);
      }
    }
  }
  if (GetObjectFlag(Type, CUMULATIVE) && (Object.Data > 1 || ForceCount)) {
    DrawCount(Surface, x, y, Size, Object.Data, Style, ClipRect);
  }
}

void DrawOutfitDisplay(int Surface, int x, int y, int Size, int Outfit, const std::array<int, 4>& Colors, int AddOns,
                       TRGBColor StageColor, TRect ClipRect, const TextStyle& Style) {
  if (Outfit == 0) {
    TObject Object;
    Object.Type = Colors[0];
    DrawObjectDisplay(Surface, x, y, Size, Object, StageColor, ClipRect, Style, false);
    return;
  }
  if (GetOutfitPatternWidth(Outfit) != 4) ThrowException("outfit has not all four directions");
  const TOutfitColors Palette{OutfitColor(Colors[0]), OutfitColor(Colors[1]), OutfitColor(Colors[2]),
                              OutfitColor(Colors[3])};
  const int Cell = Size * CELL_SIZE / GetOutfitDisplaySize(Outfit);
  const int Shown = AddOns & GetOutfitAddons(Outfit);
  const bool Masked = GetOutfitLayers(Outfit) == 2;
  for (int Pattern = 1; Pattern <= GetOutfitPatternHeight(Outfit); ++Pattern) {
    if (Pattern > 1 && (Shown & (1 << (Pattern - 2))) == 0) continue;
    for (int Column = 1; Column <= GetOutfitWidth(Outfit); ++Column) {
      for (int Row = 1; Row <= GetOutfitHeight(Outfit); ++Row) {
        const auto Sprite = GetOutfitSprite(Outfit, Column, Row, 1, OUTFIT_DIRECTION, Pattern, 1, 1);
        const auto Mask = Masked ? GetOutfitSprite(Outfit, Column, Row, 2, OUTFIT_DIRECTION, Pattern, 1, 1) : 0;
        DrawColoredSpriteStretched(Surface, x + Size - Cell * Column, y + Size - Cell * Row, Cell, Cell,
                                   static_cast<int>(Sprite), static_cast<int>(Mask), Palette, StageColor, ClipRect);
      }
    }
  }
}

// --- CGUIObjectDisplay ---

CGUIObjectDisplay::CGUIObjectDisplay(int X, int Y, int Size) {
  SetPosition(X, Y);
  SetSize(Size, Size);
}

void CGUIObjectDisplay::Draw(int Surface, int x, int y) {
  CheckSquare(*this);
  if (Object.Type == 0) return;
  DrawObjectDisplay(Surface, x, y, CELL_SIZE, Object, StageColor, NO_CLIP, SkinProperties.Buttons.ObjectNumber,
                    false);
}

// --- CGUISpriteResizer ---

CGUISpriteResizer::CGUISpriteResizer(int X, int Y, int Size, bool Framed)
    : CGUIObjectDisplay(X, Y, Size), Framed(Framed) {}

// Framed, the object keeps its full size and is cut to the inside of the frame.
void CGUISpriteResizer::Draw(int Surface, int x, int y) {
  CheckSquare(*this);
  TRect Clip = NO_CLIP;
  if (Framed) {
    DrawSkin(Surface, x, y, Width, Height, FRAME_SKIN, 0, 0);
    Clip = {x + 1, y + 1, Width - 2, Height - 2};
  }
  DrawObjectDisplay(Surface, x, y, Width, Object, StageColor, Clip, SkinProperties.Buttons.ObjectNumber, false);
}

// --- CGUICreatureDisplay ---

CGUICreatureDisplay::CGUICreatureDisplay(int X, int Y, int Width, int Height) {
  SetPosition(X, Y);
  SetSize(Width, Height);
}

void CGUICreatureDisplay::SetColor(int Mask, int Value) {
  Check(Mask >= 1 && Mask <= 4, "In(Mask,1,4)", {"Mask", Mask});
  Colors[static_cast<size_t>(Mask - 1)] = Value;
}

void CGUICreatureDisplay::SetColors(const int* ColorData) {
  Check(ColorData != nullptr, "ColorData!=NULL");
  for (size_t Index = 0; Index < Colors.size(); ++Index) Colors[Index] = ColorData[Index];
}

void CGUICreatureDisplay::SetAddOns(int Value) {
  Check(Value >= 0 && Value <= 7, "In(_AddOns,0,7)", {"AddOns", Value});
  AddOns = Value;
}

// Twice the natural size; outfit 0 shows the object type in the first colour.
void CGUICreatureDisplay::Draw(int Surface, int x, int y) {
  if (Outfit == 0 && Colors[0] == 0) return;
  const int Size = 2 * (Outfit != 0 ? GetOutfitDisplaySize(Outfit) : GetObjectDisplaySize(Colors[0]));
  const int Left = x + Width - (Width - CREATURE_FIELD) / 2 - Size;
  const int Top = y + Height - (Height - CREATURE_FIELD) / 2 - Size;
  DrawOutfitDisplay(Surface, Left, Top, Size, Outfit, Colors, AddOns, StageColor, NO_CLIP,
                    SkinProperties.Buttons.ObjectNumber);
}

// --- CGUISkinDisplay ---

CGUISkinDisplay::CGUISkinDisplay(int Skin, int X, int Y) {
  SetPosition(X, Y);
  SetSkin(Skin);
}

void CGUISkinDisplay::SetSkin(int Value) {
  const TSkin& Natural = GetSkin(Value);
  Skin = Value;
  StoreSize(Natural.width, Natural.height);
}

void CGUISkinDisplay::Draw(int Surface, int x, int y) { DrawSkin(Surface, x, y, Width, Height, Skin, 0, 0); }

// --- CGUITutorialHintImageDisplay ---

CGUITutorialHintImageDisplay::CGUITutorialHintImageDisplay(int Image, int X, int Y) {
  SetPosition(X, Y);
  SetImage(Image);
}

TRect CGUITutorialHintImageDisplay::ImageRect(int Image) {
  Check(Image >= 0 && Image < NumberOfImages, "In(_TutorialHintImage,0,28)", {"TutorialHintImage", Image});
  return TutorialImages[Image];
}

void CGUITutorialHintImageDisplay::SetImage(int Value) {
  const TRect Rect = ImageRect(Value);
  TutorialHintImage = Value;
  StoreSize(Rect.width, Rect.height);
}

void CGUITutorialHintImageDisplay::Draw(int Surface, int x, int y) {
  const TRect Rect = ImageRect(TutorialHintImage);
  DrawPicturePart(Surface, x, y, TUTORIAL_PICTURE, Rect.x, Rect.y, Rect.width, Rect.height);
}
