#pragma once
// Shared means of the art files: canvases, tiling textures and the shading
// that gives the flat shapes some volume. Light comes from the upper left.
#include <functional>
#include <vector>

#include "tools/databuild/Art.h"
#include "tools/databuild/Image.h"

// The rim round objects and creatures that keeps them readable on any ground.
constexpr TRGBA RIM = {28, 22, 18, 255};

inline TCanvas Canvas(const TArtFrame& Frame) {
  return TCanvas(Frame.pixelWidth(), Frame.pixelHeight());
}
inline std::vector<TCanvas> One(TCanvas Image) { return {std::move(Image)}; }

// A texture of Width x Height that tiles: Paint gets the coordinates and
// must itself wrap at the size (TNoise does with its period).
TCanvas Texture(int Width, int Height, const std::function<TRGBA(int, int)>& Paint);
// The cell of a tiling texture for the pattern (PX, PY).
TCanvas PatternCell(const TCanvas& Texture, int PX, int PY);
// Sets a pixel of a tiling texture, wrapping round its edges.
void WrapSet(TCanvas& Texture, int X, int Y, TRGBA C);

// A light factor for a point of a shape with centre (CX, CY) and radii: 1.25
// at the upper left rim, 0.7 at the lower right.
double Light(double X, double Y, double CX, double CY, double RX, double RY);
void ShadedEllipse(TCanvas& Image, double CX, double CY, double RX, double RY, TRGBA C);
void ShadedRect(TCanvas& Image, int X, int Y, int Width, int Height, TRGBA C);
void ShadedPolygon(TCanvas& Image, const std::vector<std::pair<double, double>>& Points, TRGBA C);
// The rim, then the shadow under it; for things lying or standing on a field.
void FinishThing(TCanvas& Image);
