#include "tools/databuild/ContactSheets.h"

#include <algorithm>
#include <filesystem>

#include "tools/databuild/CellFiles.h"
#include "tools/databuild/Fonts.h"
#include "tools/databuild/Pictures.h"
#include "tools/databuild/Png.h"
#include "tools/databuild/Skins.h"

namespace {

// A dark checkerboard, so that transparent pixels show as such.
TCanvas Board(int W, int H) {
  TCanvas I(W, H);
  for (int Y = 0; Y < H; ++Y) {
    for (int X = 0; X < W; ++X) I.set(X, Y, ((X / 8 + Y / 8) % 2) ? Rgb(48, 48, 52) : Rgb(60, 60, 66));
  }
  return I;
}

TCanvas SpriteSheet(const TSpriteFile& File) {
  constexpr int COLUMNS = 32, STEP = CELL_SIZE + 2;
  const int Rows = (static_cast<int>(File.Sprites.size()) + COLUMNS - 1) / COLUMNS;
  TCanvas Sheet = Board(COLUMNS * STEP + 2, Rows * STEP + 2);
  for (size_t N = 0; N < File.Sprites.size(); ++N) {
    const int X = 2 + static_cast<int>(N % COLUMNS) * STEP, Y = 2 + static_cast<int>(N / COLUMNS) * STEP;
    Sheet.paste(ImageFromCell(File.Sprites[N]), X, Y);
  }
  return Sheet;
}

TCanvas OnBoard(const TCanvas& Image) {
  TCanvas Sheet = Board(Image.width(), Image.height());
  Sheet.paste(Image, 0, 0);
  return Sheet;
}

TCanvas SkinSheet(const TCanvas& Interface, const TSkinTable& Table) {
  TCanvas Sheet = OnBoard(Interface);
  for (const TSkin& Skin : Table.Skins) {
    if (Skin.Name.empty() || Skin.SameAs != 0) continue;
    const TRGBA C = Skin.Fixed ? Rgb(255, 80, 80) : Rgb(80, 255, 120);
    for (int X = Skin.X - 1; X <= Skin.X + Skin.Width; X += 2) {
      Sheet.set(X, Skin.Y - 1, C);
      Sheet.set(X, Skin.Y + Skin.Height, C);
    }
    for (int Y = Skin.Y - 1; Y <= Skin.Y + Skin.Height; Y += 2) {
      Sheet.set(Skin.X - 1, Y, C);
      Sheet.set(Skin.X + Skin.Width, Y, C);
    }
  }
  return Sheet;
}

// The glyphs twice their size, each with a red line as long as its measured
// width under it; below, a sample text set with the measured advances.
TCanvas FontSheet(int Font, const TPicture& Picture) {
  const TFontGrid& Grid = FONT_GRIDS[static_cast<size_t>(Font - 1)];
  const TFontMetrics M = MeasureFont(Font, Picture);
  const TCanvas Glyphs = ImageFromPicture(Picture);
  const int CellW = Grid.CellWidth * 2 + 4, CellH = Grid.CellHeight * 2 + 6;
  TCanvas Sheet(CHARS_PER_ROW * CellW + 8, 7 * CellH + 3 * (Grid.LineHeight * 2) + 24, Rgb(36, 34, 38));
  const auto Blit = [&](int I, int X, int Y, int Scale, TRGBA Colour) {
    const int GX = (I % CHARS_PER_ROW) * Grid.CellWidth, GY = (I / CHARS_PER_ROW) * Grid.CellHeight;
    for (int J = 0; J < Grid.CellHeight; ++J) {
      for (int K = 0; K < Grid.CellWidth; ++K) {
        const TRGBA P = Glyphs.at(GX + K, GY + J);
        if (!P.a) continue;
        const TRGBA Tinted = {static_cast<std::uint8_t>(Colour.r * P.r / 256), static_cast<std::uint8_t>(Colour.g * P.g / 256),
                              static_cast<std::uint8_t>(Colour.b * P.b / 256), 255};
        Sheet.fillRect(X + K * Scale, Y + J * Scale, Scale, Scale, Tinted);
      }
    }
  };
  for (int I = 1; I < GLYPHS; ++I) {
    const int X = 4 + (I % CHARS_PER_ROW) * CellW, Y = 4 + (I / CHARS_PER_ROW) * CellH;
    Sheet.fillRect(X, Y, Grid.CellWidth * 2, Grid.CellHeight * 2, Rgb(60, 58, 64));
    Blit(I, X, Y, 2, Rgb(255, 255, 255));
    Sheet.fillRect(X, Y + Grid.CellHeight * 2 + 1, M.CharWidth[static_cast<size_t>(I)] * 2, 2, Rgb(230, 60, 50));
  }
  const std::array<std::string, 3> Lines{"The quick brown fox jumps over the lazy dog. 0123456789",
                                         "Enter Game, Options, Skills: Level 42 (+7%) - \"Hello!\"",
                                         "\xC4rger \xFC" "ber \xD6l, Gr\xFC\xDF" "e, \xE9t\xE9, \xA9 \xBD \xF1 \xC5\xE6\xF8"};
  for (size_t L = 0; L < Lines.size(); ++L) {
    int X = 8;
    const int Y = 8 + 7 * CellH + static_cast<int>(L) * Grid.LineHeight * 2;
    for (unsigned char C : Lines[L]) {
      const int I = C - 0x20;
      if (C == ' ') {
        X += (Grid.CharSpacing + M.CharWidth[12]) * 2;
        continue;
      }
      Blit(I, X, Y, 2, Rgb(230, 210, 150));
      X += (M.CharWidth[static_cast<size_t>(I)] + Grid.CharSpacing) * 2;
    }
  }
  return Sheet;
}

// One picture of the whole: the title at half size beside the interface
// sheet, the first rows of sprites, and a sample of the dialog font.
TCanvas Preview(const TCanvas& Sprites, const TPictureFile& Pictures) {
  const TCanvas Title = ImageFromPicture(Pictures.Pictures[TITLE_PICTURE - 1]);
  const TCanvas Interface = ImageFromPicture(Pictures.Pictures[INTERFACE_PICTURE - 1]);
  const TCanvas Font = FontSheet(4, Pictures.Pictures[static_cast<size_t>(FONT_GRIDS[3].PictureNumber - 1)]);
  const int Top = std::max(TITLE_HEIGHT / 2, Interface.height());
  const int SpriteRows = std::min(Sprites.height(), 14 * (CELL_SIZE + 2) + 2);
  const int FontRows = Font.height() - (7 * (FONT_GRIDS[3].CellHeight * 2 + 6) + 4);
  TCanvas Sheet(std::max(Sprites.width(), TITLE_WIDTH / 2 + 8 + Interface.width()), Top + 8 + SpriteRows + FontRows,
               Rgb(36, 34, 38));
  for (int Y = 0; Y < TITLE_HEIGHT / 2; ++Y) {
    for (int X = 0; X < TITLE_WIDTH / 2; ++X) Sheet.set(X, Y, Title.at(2 * X, 2 * Y));
  }
  Sheet.paste(OnBoard(Interface), TITLE_WIDTH / 2 + 8, 0);
  Sheet.paste(Sprites.crop(0, 0, Sprites.width(), SpriteRows), 0, Top + 8);
  Sheet.paste(Font.crop(0, Font.height() - FontRows, Font.width(), FontRows), 0, Top + 8 + SpriteRows);
  return Sheet;
}

}  // namespace

void WriteContactSheets(const std::string& Directory, const std::string& SpriteFile,
                        const std::string& PictureFile, const std::string& SkinSource) {
  std::filesystem::create_directories(Directory);
  const std::string Base = Directory + "/";
  const TCanvas Sprites = SpriteSheet(ReadSpriteFile(SpriteFile));
  WritePng(Sprites, Base + "sprites.png");
  const TPictureFile Pictures = ReadPictureFile(PictureFile);
  WritePng(Preview(Sprites, Pictures), Base + "preview.png");
  for (size_t P = 0; P < Pictures.Pictures.size(); ++P) {
    WritePng(OnBoard(ImageFromPicture(Pictures.Pictures[P])), Base + "picture-" + std::to_string(P + 1) + ".png");
  }
  WritePng(SkinSheet(ImageFromPicture(Pictures.Pictures[INTERFACE_PICTURE - 1]), ReadSkinTable(SkinSource)),
           Base + "skins.png");
  for (int Font = 1; Font <= NUMBER_OF_FONTS; ++Font) {
    const TPicture& Picture = Pictures.Pictures[static_cast<size_t>(FONT_GRIDS[static_cast<size_t>(Font - 1)].PictureNumber - 1)];
    WritePng(FontSheet(Font, Picture), Base + "font-" + std::to_string(Font) + ".png");
  }
}
