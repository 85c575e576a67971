#pragma once
// The 216-colour cube of light colours, the automap and marks: red x 36 +
// green x 6 + blue, each from 0 to 5, one step being 51 of 255.

struct TRGB {
  int Red = 0;
  int Green = 0;
  int Blue = 0;
  bool operator==(const TRGB&) const = default;
};

// Numbers above 215 have no place in the cube; their red part is cut at 255
// rather than wrapped, so that byte 255 (the "no colour" of the wire) reads
// as a bright colour and never as black.
constexpr TRGB Color216(int Color) {
  const auto Part = [](int Steps) { return Steps * 51 > 255 ? 255 : Steps * 51; };
  return {Part(Color / 36), Part(Color / 6 % 6), Part(Color % 6)};
}
