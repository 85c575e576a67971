#pragma once
// Contact sheets: PNG pictures of what the built files hold, for people to
// look at. They are drawn from the files themselves, through the readers.
#include <string>

// Writes into Directory: sprites.png (every sprite, numbered rows of 32),
// picture-<n>.png (each picture), skins.png (the interface sheet with every
// skin's rectangle framed) and font-<n>.png (each font's glyphs with their
// measured widths marked, and a sample line set with those widths), and
// preview.png, a little of each on one page.
void WriteContactSheets(const std::string& Directory, const std::string& SpriteFile,
                        const std::string& PictureFile, const std::string& SkinSource);
