#pragma once
// Screenshots: the presented frame as a PNG in the user directory's
// Screenshots folder, numbered from Screenshot0001.png on.
#include <string>

#include "graphics/Surface.h"

// The file's name, or an empty text if it could not be written.
std::string SaveScreenshot(const TImage& Image);
