#pragma once
// The one record of layout constants: offsets, sizes, colours and text styles
// of the widgets and windows, grouped by widget. It is filled once and never
// changes; each widget reads its group. Groups join as their widgets are built.
#include "graphics/Fonts.h"

struct TSkinPoint {
  int x = 0;
  int y = 0;
};

struct TSkinSize {
  int Minimum = 0;  // along the axis
  int Breadth = 0;
};

struct TSkinMargins {
  int Left = 0;
  int Top = 0;
  int Right = 0;
  int Bottom = 0;
};

// Arguments of PlaceChild: a negative x or y counts from the far edge, a
// size below 1 is added to what remains.
struct TSkinPlace {
  int x = 0;
  int y = 0;
  int Width = 0;
  int Height = 0;
};

struct TSkinProperties {
  struct {
    TSkinPoint Texture{2, 2};
    TextStyle TextEnabled{3, 255, 255, 255, CENTER_ALIGN};
    TextStyle TextDisabled{3, 192, 192, 192, CENTER_ALIGN};
    int PressedTextOffset = 1;
    TextStyle ObjectNumber{2, 192, 192, 192, RIGHT_ALIGN};
  } Buttons;
  // The check box: where its mark lies, its text's styles and place.
  struct {
    TSkinPoint Item{6, 5};
    TextStyle TextEnabled{4, 176, 176, 176, LEFT_ALIGN};
    TextStyle TextDisabled{4, 112, 112, 112, LEFT_ALIGN};
    TSkinMargins Text{24, 4, -10, -6};
  } CheckBox;
  struct {
    TSkinSize Slider{14, 12};
    TSkinSize ButtonSlider{38, 12};
    TSkinSize Scrollbar{14, 12};
    TSkinSize ButtonScrollbar{38, 12};
  } Sliders;
  struct {
    int MinimumWidth = 162;
    int MinimumHeight = 68;
    TextStyle Title{4, 144, 144, 144, CENTER_ALIGN};
    TSkinMargins Body{18, 32, -18, -60};
    TSkinPoint FirstButton{-6, -30};
    int ButtonGap = 10;
    TSkinPlace TitlePlace{5, 5, -5, 10};
    TSkinPlace LinePlace{13, -40, -13, 2};
  } ModalDialog;
  // The box of a tooltip: font, colours and the margin round its lines.
  struct {
    TextStyle Text{1, 224, 224, 224, LEFT_ALIGN};
    TRGBColor Background{48, 48, 48};
    TRGBColor Frame{0, 0, 0};
    int Margin = 3;
    // Below the pointer's picture.
    int OffsetY = 20;
  } Tooltip;
  // The rows of a list box, its background and its selection bar.
  struct {
    TextStyle Item{4, 176, 176, 176, LEFT_ALIGN};
    TextStyle GreyItem{4, 128, 128, 128, LEFT_ALIGN};
    TextStyle WarningItem{4, 200, 125, 125, LEFT_ALIGN};
    TRGBColor Background{64, 64, 64};
    TRGBColor Selection{88, 88, 88};
    // Where the rows start within the frame, and what they leave at the far edges.
    int Margin = 3;
    int ScrollbarWidth = 12;
  } Listbox;
  // The side bar's content windows: where the frame puts its children.
  struct {
    int SideBarWidth = 176;
    TSkinPlace Body{4, 15, -4, -4};
    TSkinPlace Resizer{3, -16, 13, 13};
    TSkinPlace BottomResizer{0, -4, 0, 0};
    TSkinPoint CloseButton{-15, 2};
    TSkinPoint MinimiseButton{-28, 2};
    TSkinPoint ParentButton{-39, 2};
    TSkinPlace Icon{4, 2, 12, 12};
    TSkinPlace Title{20, 4, -41, 10};
    TextStyle TitleText{4, 144, 144, 144, LEFT_ALIGN};
  } ContentWindow;
};

inline constexpr TSkinProperties SkinProperties{};
