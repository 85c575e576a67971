#pragma once
// Elements that show one picture: an object, a creature's outfit, a skin or
// a cut of the tutorial picture. The two drawing functions serve the
// inventory and container windows too.
#include <array>

#include "graphics/Fonts.h"
#include "graphics/Surface.h"
#include "gui/GUI.h"
#include "world/Map.h"

// The object with its bottom right corner at (x + Size, y + Size); a
// stackable object's count at that corner if above 1 or if forced.
void DrawObjectDisplay(int Surface, int x, int y, int Size, const TObject& Object, TRGBColor StageColor,
                       TRect ClipRect, const TextStyle& Style, bool ForceCount);
// An outfit facing the viewer. Outfit 0 shows the object type Colors[0], if any.
void DrawOutfitDisplay(int Surface, int x, int y, int Size, int Outfit, const std::array<int, 4>& Colors, int AddOns,
                       TRGBColor StageColor, TRect ClipRect, const TextStyle& Style);

// A picture that ignores the mouse, so that what lies under it gets it.
class CGUIInertElement : public CGUIElement {
 public:
  bool MouseMove(int, int) override { return false; }
  bool LeftDown(int, int, int) override { return false; }
  bool LeftUp(int, int, int) override { return false; }
  bool LeftDouble(int, int, int) override { return false; }
  bool RightUp(int, int, int) override { return false; }
  bool MouseEvent(int, int, int) override { return false; }
};

// An object in a square element at the size of one field.
class CGUIObjectDisplay : public CGUIElement {
 public:
  CGUIObjectDisplay(int X, int Y, int Size);

  void Draw(int Surface, int x, int y) override;
  void SetObject(const TObject& NewObject) { Object = NewObject; }
  const TObject& GetObject() const { return Object; }
  void SetStageColor(TRGBColor Color) { StageColor = Color; }

 protected:
  TObject Object;
  TRGBColor StageColor{255, 255, 255};
};

// An object drawn at the element's own size, optionally on a framed ground.
class CGUISpriteResizer : public CGUIObjectDisplay {
 public:
  CGUISpriteResizer(int X, int Y, int Size, bool Framed);

  void Draw(int Surface, int x, int y) override;

 private:
  bool Framed = false;
};

// A creature twice its normal size, centred on a 128-pixel field.
class CGUICreatureDisplay : public CGUIInertElement {
 public:
  CGUICreatureDisplay(int X, int Y, int Width, int Height);

  void Draw(int Surface, int x, int y) override;

  void SetOutfit(int Value) { Outfit = Value; }
  // Mask 1 head, 2 body, 3 legs, 4 feet.
  void SetColor(int Mask, int Value);
  // Head, body, legs and feet in turn.
  void SetColors(const int* ColorData);
  void SetAddOns(int Value);
  void SetStageColor(TRGBColor Color) { StageColor = Color; }
  int GetOutfit() const { return Outfit; }
  const std::array<int, 4>& GetColors() const { return Colors; }
  int GetAddOns() const { return AddOns; }

 private:
  int Outfit = 0;
  std::array<int, 4> Colors{};
  int AddOns = 0;
  TRGBColor StageColor{255, 255, 255};
};

// A skin at its natural size.
class CGUISkinDisplay : public CGUIInertElement {
 public:
  CGUISkinDisplay(int Skin, int X, int Y);

  void Draw(int Surface, int x, int y) override;

  void SetSkin(int Value);

 private:
  int Skin = 0;
};

// One of the pictures of the tutorial hints, cut from their sheet.
class CGUITutorialHintImageDisplay : public CGUIInertElement {
 public:
  static constexpr int NumberOfImages = 29;

  CGUITutorialHintImageDisplay(int Image, int X, int Y);

  void Draw(int Surface, int x, int y) override;

  void SetImage(int Value);
  // The image's place on the sheet.
  static TRect ImageRect(int Image);

 private:
  int TutorialHintImage = 0;
};
