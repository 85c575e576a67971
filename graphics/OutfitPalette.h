#pragma once
// The outfit palette: the colour numbers of a creature's head, body, legs and
// feet, 0 to 132, turned into colours.
#include "graphics/Surface.h"

constexpr int NumberOfOutfitColors = 133;

// A number outside 0 .. 132 counts as 0.
TRGBColor OutfitColor(int Number);
