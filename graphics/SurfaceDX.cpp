#include "graphics/SurfaceDX.h"

#include <algorithm>
#include <cstring>

#include "core/Exception.h"
#include "platform/Window.h"

void CSurfaceDX::SetRenderTarget(int Surface) { CheckSurface(Surface); }

CSurfaceDX::TPixels& CSurfaceDX::Target(int Surface) {
  CheckSurface(Surface);
  TPixels& Pixels = m_Surfaces[Surface];
  Check(!Pixels.Data.empty(), "Surface[ToSurface]!=NULL", {"ToSurface", Surface});
  return Pixels;
}

CSurfaceDX::TPixels& CSurfaceDX::Source(int Surface) {
  Check(Surface != SCREEN_SURFACE, "FromSurface != SCREEN_SURFACE");
  CheckSurface(Surface);
  TPixels& Pixels = m_Surfaces[Surface];
  Check(!Pixels.Data.empty(), "Surface[FromSurface]!=NULL", {"FromSurface", Surface});
  return Pixels;
}

void CSurfaceDX::Fill(int ToSurface, TEdges Area, TRGBColor Color) {
  TPixels& To = Target(ToSurface);
  Area = Intersect(Area, {0, 0, To.Width, To.Height});
  const std::uint32_t Value = PackColor(Color);
  for (int y = Area.top; y < Area.bottom; ++y) {
    std::fill_n(&To.At(Area.left, y), Area.right - Area.left, Value);
  }
  CountOperation(Area.IsEmpty() ? 0 : static_cast<long long>(Area.right - Area.left) * (Area.bottom - Area.top));
}

// Without blending the alpha plays no part.
void CSurfaceDX::ClearSurface(int Surface, TRGBColor Color, int) {
  const TPixels& Pixels = Target(Surface);
  Fill(Surface, {0, 0, Pixels.Width, Pixels.Height}, Color);
}

void CSurfaceDX::DrawPixel(int ToSurface, int x, int y, TRGBColor Color) {
  Fill(ToSurface, {x, y, x + 1, y + 1}, Color);
}

void CSurfaceDX::FillRectClipped(int ToSurface, int x, int y, int Width, int Height, TRGBColor Color,
                                 TRect ClipRect, int) {
  TEdges To{x, y, x + Width, y + Height};
  TEdges From = To;
  if (!ClipRects(ClipRect, To, From)) return;
  Fill(ToSurface, To, Color);
}

void CSurfaceDX::FillRect(int ToSurface, int x, int y, int Width, int Height, TRGBColor Color, int) {
  Fill(ToSurface, {x, y, x + Width, y + Height}, Color);
}

void CSurfaceDX::DrawHorizontalLine(int ToSurface, int x, int y, int Length, TRGBColor Color) {
  Fill(ToSurface, {x, y, x + Length, y + 1}, Color);
}

void CSurfaceDX::DrawVerticalLine(int ToSurface, int x, int y, int Length, TRGBColor Color) {
  Fill(ToSurface, {x, y, x + 1, y + Length}, Color);
}

// The cell keeps its own transparent colour; the keyed copy skips it later.
void CSurfaceDX::WriteImage(int ToSurface, int x, int y, int Width, int Height,
                            std::span<const std::uint8_t> Pixels) {
  WritePixels(ToSurface, x, y, Width, Height, Pixels, {}, nullptr);
}

void CSurfaceDX::WriteColoredImage(int ToSurface, int x, int y, int Width, int Height,
                                   std::span<const std::uint8_t> Pixels, std::span<const std::uint8_t> Mask,
                                   const TOutfitColors& Colors) {
  Check(ToSurface != SCREEN_SURFACE, "ToSurface!=SCREEN_SURFACE");
  WritePixels(ToSurface, x, y, Width, Height, Pixels, Mask, &Colors);
}

void CSurfaceDX::WritePixels(int ToSurface, int x, int y, int Width, int Height,
                             std::span<const std::uint8_t> Pixels, std::span<const std::uint8_t> Mask,
                             const TOutfitColors* Colors) {
  TPixels& To = Target(ToSurface);
  CheckImageArea(x, y, Width, Height, To.Width, To.Height, Pixels.size(), Mask.size());
  for (int Row = 0; Row < Height; ++Row) {
    for (int Column = 0; Column < Width; ++Column) {
      const size_t Index = (static_cast<size_t>(Row) * Width + Column) * 3;
      const TRGBColor Source = ColorAt(Pixels, Index);
      const int Channel = Colors != nullptr ? SelectChannel(Source, Mask, Index, *Colors) : -1;
      To.At(x + Column, y + Row) = PackColor(Channel < 0 ? Source : Tint(Source, (*Colors)[Channel]));
    }
  }
  CountOperation(static_cast<long long>(Width) * Height);
}

void CSurfaceDX::Copy(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width, int Height,
                      TRect ClipRect, const TRGBColor* Key) {
  Check(Width > 0 && Height > 0, "FromRect.width>0 && FromRect.height>0", {"Width", Width}, {"Height", Height});
  TPixels& From = Source(FromSurface);
  TPixels& To = Target(ToSurface);
  TEdges ToEdges{x, y, x + Width, y + Height};
  TEdges FromEdges{fx, fy, fx + Width, fy + Height};
  if (!ClipRects(ClipRect, ToEdges, FromEdges)) return;
  if (!ClipRects({0, 0, To.Width, To.Height}, ToEdges, FromEdges)) return;
  if (!ClipRects({0, 0, From.Width, From.Height}, FromEdges, ToEdges)) return;
  const int Columns = ToEdges.right - ToEdges.left;
  const int Rows = ToEdges.bottom - ToEdges.top;
  const std::uint32_t* Source = &From.At(FromEdges.left, FromEdges.top);
  std::uint32_t* Destination = &To.At(ToEdges.left, ToEdges.top);
  const std::uint32_t KeyValue = Key != nullptr ? PackColor(*Key) : 0;
  for (int Row = 0; Row < Rows; ++Row, Source += From.Width, Destination += To.Width) {
    if (Key == nullptr) {
      std::memmove(Destination, Source, static_cast<size_t>(Columns) * sizeof(std::uint32_t));
      continue;
    }
    // A select rather than a branch, so that the row goes in vector steps.
    for (int Column = 0; Column < Columns; ++Column) {
      const std::uint32_t Value = Source[Column];
      Destination[Column] = Value != KeyValue ? Value : Destination[Column];
    }
  }
  CountOperation(static_cast<long long>(Columns) * Rows);
}

void CSurfaceDX::BlitClipped(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width, int Height,
                             TRect ClipRect) {
  Copy(ToSurface, x, y, FromSurface, fx, fy, Width, Height, ClipRect, nullptr);
}

void CSurfaceDX::BlitKeyedClipped(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width,
                                  int Height, TRGBColor KeyColor, TRect ClipRect) {
  Copy(ToSurface, x, y, FromSurface, fx, fy, Width, Height, ClipRect, &KeyColor);
}

void CSurfaceDX::StretchBlit(int ToSurface, int x, int y, int ToWidth, int ToHeight, int FromSurface, int fx,
                             int fy, int FromWidth, int FromHeight) {
  Check(FromWidth > 0 && FromHeight > 0 && ToWidth > 0 && ToHeight > 0, "FromRect.width>0 && FromRect.height>0");
  TPixels& From = Source(FromSurface);
  TPixels& To = Target(ToSurface);
  const TEdges Area = Intersect({x, y, x + ToWidth, y + ToHeight}, {0, 0, To.Width, To.Height});
  if (Area.IsEmpty()) {
    CountOperation(0);
    return;
  }
  const int Width = Area.right - Area.left;
  m_SourceColumns.resize(static_cast<size_t>(Width));
  for (int tx = Area.left; tx < Area.right; ++tx) {
    m_SourceColumns[tx - Area.left] = std::clamp(fx + SampleOffset(tx - x, FromWidth, ToWidth), 0, From.Width - 1);
  }
  // Enlarging repeats source rows: a repeated row is the row above again.
  int LastSourceRow = -1;
  for (int ty = Area.top; ty < Area.bottom; ++ty) {
    const int sy = std::clamp(fy + SampleOffset(ty - y, FromHeight, ToHeight), 0, From.Height - 1);
    std::uint32_t* Destination = &To.At(Area.left, ty);
    if (sy == LastSourceRow) {
      std::memcpy(Destination, Destination - To.Width, static_cast<size_t>(Width) * sizeof(std::uint32_t));
      continue;
    }
    const std::uint32_t* Source = &From.At(0, sy);
    for (int Column = 0; Column < Width; ++Column) Destination[Column] = Source[m_SourceColumns[Column]];
    LastSourceRow = sy;
  }
  CountOperation(static_cast<long long>(Width) * (Area.bottom - Area.top));
}

void CSurfaceDX::CheckStages(int ToSurface, int FromSurface, int ToWidth, int ToHeight, int FromWidth,
                             int FromHeight) const {
  Check(FromSurface != TEMP_SURFACE, "FromSurface!=TEMP_SURFACE");
  Check(ToSurface != TEMP_SURFACE, "ToSurface!=TEMP_SURFACE");
  Check(FromSurface != STRETCH_SURFACE, "FromSurface!=STRETCH_SURFACE");
  Check(ToSurface != STRETCH_SURFACE, "ToSurface!=STRETCH_SURFACE");
  Check(FromWidth + 1 <= m_Rect[TEMP_SURFACE].right && FromHeight + 1 <= m_Rect[TEMP_SURFACE].bottom,
        "FromRect.width+1<=Rect[TEMP_SURFACE].right && FromRect.height+1<=Rect[TEMP_SURFACE].bottom");
  Check(ToWidth <= m_Rect[STRETCH_SURFACE].right && ToHeight <= m_Rect[STRETCH_SURFACE].bottom,
        "ToRect.width<=Rect[STRETCH_SURFACE].right && ToRect.height<=Rect[STRETCH_SURFACE].bottom");
}

// A keyed copy cannot scale in one pass. The key colour is one that the
// source doesn't show, so it also serves as the stage colour here.
void CSurfaceDX::StretchBlitKeyed(int ToSurface, int x, int y, int ToWidth, int ToHeight, int FromSurface, int fx,
                                  int fy, int FromWidth, int FromHeight, TRGBColor KeyColor) {
  if (ToWidth == FromWidth && ToHeight == FromHeight) {
    BlitKeyed(ToSurface, x, y, FromSurface, fx, fy, FromWidth, FromHeight, KeyColor);
    return;
  }
  StretchBlitKeyedClipped(ToSurface, x, y, ToWidth, ToHeight, FromSurface, fx, fy, FromWidth, FromHeight,
                          KeyColor, KeyColor, GetSurfaceRect(ToSurface));
}

void CSurfaceDX::StretchBlitKeyedClipped(int ToSurface, int x, int y, int ToWidth, int ToHeight, int FromSurface,
                                         int fx, int fy, int FromWidth, int FromHeight, TRGBColor KeyColor,
                                         TRGBColor StageColor, TRect ClipRect) {
  if (ToWidth == FromWidth && ToHeight == FromHeight) {
    BlitKeyedClipped(ToSurface, x, y, FromSurface, fx, fy, FromWidth, FromHeight, KeyColor, ClipRect);
    return;
  }
  CheckStages(ToSurface, FromSurface, ToWidth, ToHeight, FromWidth, FromHeight);
  FillRect(TEMP_SURFACE, 0, 0, FromWidth + 1, FromHeight + 1, StageColor, 255);
  BlitKeyed(TEMP_SURFACE, 0, 0, FromSurface, fx, fy, FromWidth, FromHeight, KeyColor);
  StretchBlit(STRETCH_SURFACE, 0, 0, ToWidth, ToHeight, TEMP_SURFACE, 0, 0, FromWidth, FromHeight);
  BlitKeyedClipped(ToSurface, x, y, STRETCH_SURFACE, 0, 0, ToWidth, ToHeight, StageColor, ClipRect);
}

// Light works only on the map's surface, as on the engine this one stands in for.
void CSurfaceDX::DrawLightMap(int ToSurface, std::span<const TRect> Rects, std::span<const TLightCorners> Colors) {
  if (ToSurface != TEMP_SURFACE) return;
  TPixels& To = Target(ToSurface);
  for (size_t Index = 0; Index < Rects.size() && Index < Colors.size(); ++Index) {
    const TRect& R = Rects[Index];
    const TEdges Area = Intersect({R.x, R.y, R.x + R.width, R.y + R.height}, {0, 0, To.Width, To.Height});
    if (!Area.IsEmpty()) LightRect(To, R, Area, Colors[Index]);
    CountOperation(Area.IsEmpty() ? 0 : static_cast<long long>(Area.right - Area.left) * (Area.bottom - Area.top));
  }
}

// Each pixel takes the corners' colours interpolated at its centre; the
// interpolation across is the same for every row, so it is done once.
void CSurfaceDX::LightRect(TPixels& To, const TRect& Rect, TEdges Area, const TLightCorners& Corners) {
  const int Width = Area.right - Area.left;
  m_LightColumns.resize(static_cast<size_t>(Width));
  for (int x = Area.left; x < Area.right; ++x) {
    m_LightColumns[x - Area.left] = LightColumn(Corners, (x - Rect.x + 0.5) / Rect.width);
  }
  for (int y = Area.top; y < Area.bottom; ++y) {
    const double v = (y - Rect.y + 0.5) / Rect.height;
    std::uint32_t* Row = &To.At(Area.left, y);
    for (int Column = 0; Column < Width; ++Column) {
      Row[Column] = PackColor(MultiplyLight(UnpackColor(Row[Column]), LightAt(m_LightColumns[Column], v)));
    }
  }
}

void CSurfaceDX::SetSurfaceColorKey(int Surface, int r, int g, int b) {
  CheckSurface(Surface);
  m_Surfaces[Surface].Key = {r, g, b};
}

void CSurfaceDX::UpdateWindowRect() {
  if (m_Window == nullptr) return;
  const auto [Width, Height] = m_Window->GetClientSize();
  m_Rect[PRIMARY_SURFACE] = m_Rect[SCREEN_SURFACE] = {0, 0, Width, Height};
  if (m_DeviceReady) ResizeScreen();
}

void CSurfaceDX::ResizeScreen() {
  TPixels& Screen = m_Surfaces[SCREEN_SURFACE];
  const int Width = m_Rect[SCREEN_SURFACE].right;
  const int Height = m_Rect[SCREEN_SURFACE].bottom;
  if (Screen.Width == Width && Screen.Height == Height) return;
  Screen.Width = Width;
  Screen.Height = Height;
  Screen.Data.assign(static_cast<size_t>(Width) * Height, 0);
}

void CSurfaceDX::SetViewMode(int VMode, TGraphicMode* GMode) { ChooseViewMode(VMode, GMode); }

void CSurfaceDX::ReleaseSurfaces() {
  for (TPixels& Pixels : m_Surfaces) Pixels = {};
  m_NumberOfSpriteSurfaces = 0;
  m_ViewMode = 0;
  m_DeviceReady = false;
}

// New surfaces start black.
void CSurfaceDX::CreateSurfaces() {
  for (int Surface = TEMP_SURFACE; Surface < NUMBER_OF_SURFACES; ++Surface) {
    TPixels& Pixels = m_Surfaces[Surface];
    Pixels.Width = m_Rect[Surface].right;
    Pixels.Height = m_Rect[Surface].bottom;
    Pixels.Data.assign(static_cast<size_t>(Pixels.Width) * Pixels.Height, 0);
  }
  m_NumberOfSpriteSurfaces = NUMBER_OF_SPRITE_SURFACES;
  m_DeviceReady = true;
  ResizeScreen();
  SetAllLost();
}

void CSurfaceDX::Present() {
  if (m_ViewMode == 0) return;
  Limiter().MeasureFrame();
  EndFrame();
  const TPixels& Screen = m_Surfaces[SCREEN_SURFACE];
  if (m_Window != nullptr && !Screen.Data.empty()) {
    m_Window->PresentPixels(Screen.Data.data(), Screen.Width, Screen.Height, Screen.Width);
  }
}

bool CSurfaceDX::Validate(platform::CWindow* Window, int ViewMode, TGraphicMode* GMode, bool Force) {
  if (Window == nullptr) return false;
  if (!ValidateCommon(Window, ViewMode, Force, m_DeviceReady)) return true;
  ReleaseSurfaces();
  RestoreViewMode(ViewMode, GMode);
  ResumeSurfaces();
  return true;
}

int CSurfaceDX::GetSurfaceLocation(int Index) const {
  CheckSurface(Index);
  return m_Surfaces[Index].Data.empty() ? 0 : 2;
}

void CSurfaceDX::Startup() {
  StartupCommon();
  m_Surfaces = {};
  m_DeviceReady = false;
}

void CSurfaceDX::Shutdown() { ReleaseSurfaces(); }

TImage CSurfaceDX::ReadScreen() { return ReadSurfaceImage(SCREEN_SURFACE); }

TImage CSurfaceDX::ReadSurfaceImage(int Surface) {
  CheckSurface(Surface);
  const TPixels& Pixels = m_Surfaces[Surface];
  TImage Image{Pixels.Width, Pixels.Height, {}};
  Image.Pixels.reserve(Pixels.Data.size() * 3);
  for (const std::uint32_t Value : Pixels.Data) {
    const TRGBColor Color = UnpackColor(Value);
    Image.Pixels.insert(Image.Pixels.end(), {static_cast<std::uint8_t>(Color.r), static_cast<std::uint8_t>(Color.g),
                                             static_cast<std::uint8_t>(Color.b)});
  }
  return Image;
}
