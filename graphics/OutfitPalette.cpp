#include "graphics/OutfitPalette.h"

#include <algorithm>

// By hue, saturation and value: 19 hues in 7 rows, the first column grey.
TRGBColor OutfitColor(int Number) {
  if (Number < 0 || Number > 132) Number = 0;
  const int n = Number % 19;
  const int Row = Number / 19;
  double Hue = 0, Saturation = 0, Value = 1.0 - Row / 7.0;
  if (n != 0) {
    static constexpr double SV[7][2] = {{0.25, 1}, {0.25, 0.75}, {0.5, 0.75}, {0.667, 0.75},
                                        {1, 1},    {1, 0.75},    {1, 0.5}};
    Hue = n / 18.0;
    Saturation = SV[Row][0];
    Value = SV[Row][1];
  }
  if (Value == 0) return {0, 0, 0};
  if (Saturation == 0) {
    const int V = static_cast<int>(Value * 255);
    return {V, V, V};
  }
  const double H = Hue * 6.0;
  const int Sector = std::min(5, static_cast<int>(H));
  const double f = H - Sector;
  const double p = Value * (1 - Saturation);
  const double q = Value * (1 - Saturation * f);
  const double t = Value * (1 - Saturation * (1 - f));
  double r = 0, g = 0, b = 0;
  switch (Sector) {
    case 0: r = Value, g = t, b = p; break;
    case 1: r = q, g = Value, b = p; break;
    case 2: r = p, g = Value, b = t; break;
    case 3: r = p, g = q, b = Value; break;
    case 4: r = t, g = p, b = Value; break;
    default: r = Value, g = p, b = q; break;
  }
  return {static_cast<int>(r * 255), static_cast<int>(g * 255), static_cast<int>(b * 255)};
}
