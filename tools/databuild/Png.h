#pragma once
// PNG files, for the contact sheets that people look at.
#include <string>

#include "tools/databuild/Image.h"

// Writes Image as an 8-bit RGBA PNG; fails with "failed to write PNG file".
void WritePng(const TCanvas& Image, const std::string& FileName);
