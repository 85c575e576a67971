#pragma once
// The test card: fills, lines, frames, keyed copies, tinted copies, stretched
// and unstretched sprites and pictures, and a map with light, on the screen
// surface of whatever engine is current.
#include <string>

#include "graphics/Surface.h"
#include "tests/graphics/TestFiles.h"

namespace testcard {

// Writes the card's Kelmo.spr and Kelmo.pic into Directory and loads them.
void LoadCardFiles(const testfiles::CTempDirectory& Directory);
// Draws the card on SCREEN_SURFACE; the stores must be loaded and the video
// cache set up for the current surface.
void DrawTestCard();

// Where the light lies on the card; pixels there may differ by a little
// between rasterisers.
constexpr TRect LIGHT_AREA{400, 300, 320, 224};

// Compares with the golden image of Name. Outside LIGHT_AREA every pixel
// must match; inside, each channel within LightTolerance. A failure writes
// the actual image and a difference image into the build directory and
// returns a description; success returns an empty text. With
// KELMO_UPDATE_GOLDEN=1 the golden image is written instead.
std::string CompareWithGolden(const TImage& Actual, const std::string& Name, int LightTolerance);
// The same rule between two images.
std::string CompareImages(const TImage& Expected, const TImage& Actual, int LightTolerance);

}  // namespace testcard
