#pragma once
// PNG files of 24-bit images: screenshots, and the golden images of tests.
#include <optional>
#include <string>

#include "graphics/Surface.h"

// False if the file could not be written.
bool WritePng(const std::string& FileName, const TImage& Image);
// The image, or nothing if the file is missing or not a PNG.
std::optional<TImage> ReadPng(const std::string& FileName);
