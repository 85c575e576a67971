#pragma once
// Small pictograms for the icons of the interface: drawn as vector shapes
// into any box, so the same heart serves an 11-pixel state icon and a
// 32-pixel advertisement.
#include <string>

#include "tools/databuild/Image.h"

// red, green, blue, yellow, orange, purple, white, grey, black, brown, cyan,
// gold, pink. Fails with "unknown colour".
TRGBA ColourByName(const std::string& Name);

// Draws the symbol centred on (CX, CY) within a square of Size pixels.
// Fails with "unknown symbol".
void DrawSymbol(TCanvas& Image, const std::string& Symbol, double CX, double CY, double Size,
                TRGBA Colour);

// A W x H icon: the symbol in white on a rounded plate of the colour, or,
// with no colour, the symbol in its own colour on nothing.
TCanvas Icon(int W, int H, const std::string& Symbol, const std::string& Colour);
// A mark for the automap and the map: the symbol in the colour, with a rim.
TCanvas Mark(int W, int H, const std::string& Symbol, const std::string& Colour);
