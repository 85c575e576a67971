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

struct TSkinProperties {
  struct {
    TSkinPoint Texture{2, 2};
    TextStyle TextEnabled{3, 255, 255, 255, CENTER_ALIGN};
    TextStyle TextDisabled{3, 192, 192, 192, CENTER_ALIGN};
    int PressedTextOffset = 1;
    TextStyle ObjectNumber{2, 192, 192, 192, RIGHT_ALIGN};
  } Buttons;
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
};

inline constexpr TSkinProperties SkinProperties{};
