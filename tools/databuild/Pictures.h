#pragma once
// The pictures of Kelmo.pic, in their fixed order: 1 title picture, 2 logo,
// 3 tutorial sheet, 4 font 1, 5 interface sheet, 6 font 2, 7 font 3, 8 the
// black cell, 9 font 4.
#include <string>

#include "tools/databuild/CellFiles.h"
#include "tools/databuild/Fonts.h"
#include "tools/databuild/Skins.h"

constexpr int TITLE_PICTURE = 1;
constexpr int LOGO_PICTURE = 2;
constexpr int TUTORIAL_PICTURE = 3;
constexpr int INTERFACE_PICTURE = 5;
constexpr int BLACK_PICTURE = 8;
constexpr int NUMBER_OF_PICTURES = 9;

constexpr int TITLE_WIDTH = 550;
constexpr int TITLE_HEIGHT = 440;
constexpr int TUTORIAL_WIDTH = 1045;
constexpr int TUTORIAL_HEIGHT = 982;

// The rectangles of the tutorial hint images on picture 3, as the client has them.
struct TTutorialImage {
  int X, Y, Width, Height;
};
extern const std::array<TTutorialImage, 29> TUTORIAL_IMAGES;

struct TPictureSources {
  TSkinTable Skins;
  TFontSources Fonts;
};

// Every picture as an image, picture 1 first.
std::vector<TCanvas> DrawPictures(const TPictureSources& Sources);
TPictureFile BuildPictureFile(const TPictureSources& Sources, std::uint32_t Signature);

// An art drawn outside of a type: its first pattern, or the one given, with
// the colour mask applied in the given outfit colours (head, body, legs, feet).
TCanvas ArtImage(const std::string& Art, int PatternX = 0, int PatternY = 0, int Phase = 0,
                std::array<TRGBA, 4> Colours = {});
