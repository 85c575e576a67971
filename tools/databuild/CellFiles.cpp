#include "tools/databuild/CellFiles.h"

#include <filesystem>

#include "core/Exception.h"
#include "core/Script.h"

namespace {

TColour OffKey(TColour C, TColour Key) {
  if (!(C == Key)) return C;
  C.g = static_cast<std::uint8_t>(C.g == 255 ? 254 : C.g + 1);
  return C;
}

void WriteWord(std::vector<std::uint8_t>& Out, size_t Value) {
  Out.push_back(static_cast<std::uint8_t>(Value & 0xFF));
  Out.push_back(static_cast<std::uint8_t>(Value >> 8));
}

void WriteColour(TBinaryFileWriter& Writer, TColour C) {
  for (std::uint8_t V : {C.r, C.g, C.b}) Writer.writeByte(V);
}

TColour ReadColour(TBinaryFileReader& Reader) {
  TColour C;
  C.r = Reader.readByte();
  C.g = Reader.readByte();
  C.b = Reader.readByte();
  return C;
}

// A cell record: DataLength, then the runs.
void WriteCellRuns(TBinaryFileWriter& Writer, const TCell& Cell) {
  const std::vector<std::uint8_t> Runs = EncodeRuns(Cell);
  Writer.writeWord(static_cast<std::uint16_t>(Runs.size()));
  Writer.writeBytes(Runs);
}

TCell ReadCellRuns(TBinaryFileReader& Reader, TColour Key) {
  std::vector<std::uint8_t> Runs(Reader.readWord());
  Reader.readBytes(Runs);
  return DecodeRuns(Runs, Key);
}

std::uint32_t Offset(long Position) {
  Check(Position >= 0 && Position <= static_cast<long>(UINT32_MAX), "Position fits 32 bits",
        {"Position", Position});
  return static_cast<std::uint32_t>(Position);
}

// Writes through Body into a temporary file, which then takes the name.
template <typename TBody>
void WriteInOnePiece(const std::string& FileName, TBody Body) {
  const std::string Temporary = FileName + ".tmp";
  {
    TBinaryFileWriter Writer;
    Writer.open(Temporary);
    Body(Writer);
    Writer.close();
  }
  std::filesystem::rename(Temporary, FileName);
}

}  // namespace

TCell CellFromImage(const TCanvas& Image, int X, int Y, TColour Key) {
  TCell Cell;
  Cell.Key = Key;
  for (int J = 0; J < CELL_SIZE; ++J) {
    for (int I = 0; I < CELL_SIZE; ++I) {
      TColour& Pixel = Cell.Pixels[static_cast<size_t>(J * CELL_SIZE + I)];
      const bool Inside = Image.contains(X + I, Y + J);
      const TRGBA P = Inside ? Image.at(X + I, Y + J) : TRGBA{};
      Pixel = P.a > 127 ? OffKey({P.r, P.g, P.b}, Key) : Key;
    }
  }
  return Cell;
}

TCanvas ImageFromCell(const TCell& Cell) {
  TCanvas Image(CELL_SIZE, CELL_SIZE);
  for (int I = 0; I < CELL_PIXELS; ++I) {
    const TColour P = Cell.Pixels[static_cast<size_t>(I)];
    if (!Cell.isTransparent(I)) Image.set(I % CELL_SIZE, I / CELL_SIZE, Opaque(P));
  }
  return Image;
}

std::vector<std::uint8_t> EncodeRuns(const TCell& Cell) {
  std::vector<std::uint8_t> Out;
  int Position = 0;
  while (true) {
    const int Start = Position;
    while (Position < CELL_PIXELS && Cell.isTransparent(Position)) ++Position;
    if (Position == CELL_PIXELS) return Out;
    const int Transparent = Position - Start;
    const int First = Position;
    while (Position < CELL_PIXELS && !Cell.isTransparent(Position)) ++Position;
    WriteWord(Out, static_cast<size_t>(Transparent));
    WriteWord(Out, static_cast<size_t>(Position - First));
    for (int I = First; I < Position; ++I) {
      const TColour P = Cell.Pixels[static_cast<size_t>(I)];
      Out.insert(Out.end(), {P.r, P.g, P.b});
    }
  }
}

TCell DecodeRuns(std::span<const std::uint8_t> Runs, TColour Key) {
  TCell Cell;
  Cell.Key = Key;
  Cell.Pixels.fill(Key);
  size_t Read = 0;
  const auto Word = [&Runs, &Read]() {
    if (Read + 2 > Runs.size()) ThrowException("run data cut short");
    const int Value = Runs[Read] | Runs[Read + 1] << 8;
    Read += 2;
    return Value;
  };
  int Position = 0;
  while (Read < Runs.size()) {
    Position += Word();
    const int Coloured = Word();
    if (Position + Coloured > CELL_PIXELS) {
      ThrowException("run passes pixel 1023", {{"Position", std::to_string(Position + Coloured)}});
    }
    if (Read + 3 * static_cast<size_t>(Coloured) > Runs.size()) {
      ThrowException("run data cut short");
    }
    for (int I = 0; I < Coloured; ++I, Read += 3) {
      Cell.Pixels[static_cast<size_t>(Position++)] = {Runs[Read], Runs[Read + 1], Runs[Read + 2]};
    }
  }
  return Cell;
}

TPicture PictureFromImage(const TCanvas& Image, TColour Key) {
  TPicture Picture;
  Picture.TilesX = (Image.width() + CELL_SIZE - 1) / CELL_SIZE;
  Picture.TilesY = (Image.height() + CELL_SIZE - 1) / CELL_SIZE;
  if (Picture.TilesX < 1 || Picture.TilesY < 1 || Picture.TilesX > 255 || Picture.TilesY > 255) {
    ThrowException("picture size out of range", {{"Width", std::to_string(Image.width())},
                                                 {"Height", std::to_string(Image.height())}});
  }
  Picture.Key = Key;
  for (int Y = 0; Y < Picture.TilesY; ++Y) {
    for (int X = 0; X < Picture.TilesX; ++X) {
      Picture.Tiles.push_back(CellFromImage(Image, X * CELL_SIZE, Y * CELL_SIZE, Key));
    }
  }
  return Picture;
}

TCanvas ImageFromPicture(const TPicture& Picture) {
  TCanvas Image(Picture.TilesX * CELL_SIZE, Picture.TilesY * CELL_SIZE);
  for (int Y = 0; Y < Picture.TilesY; ++Y) {
    for (int X = 0; X < Picture.TilesX; ++X) {
      Image.paste(ImageFromCell(Picture.tile(X, Y)), X * CELL_SIZE, Y * CELL_SIZE);
    }
  }
  return Image;
}

void WriteSpriteFile(const TSpriteFile& File, const std::string& FileName) {
  WriteInOnePiece(FileName, [&File](TBinaryFileWriter& Writer) {
    Writer.writeQuad(File.Signature);
    Writer.writeQuad(static_cast<std::uint32_t>(File.Sprites.size()));
    long Position = 8 + 4 * static_cast<long>(File.Sprites.size());
    for (const TCell& Sprite : File.Sprites) {
      Writer.writeQuad(Offset(Position));
      Position += 5 + static_cast<long>(EncodeRuns(Sprite).size());
    }
    for (const TCell& Sprite : File.Sprites) {
      WriteColour(Writer, Sprite.Key);
      WriteCellRuns(Writer, Sprite);
    }
  });
}

// All picture records with their tile tables come first, then the tiles, so a
// reader may take the records one after the other.
void WritePictureFile(const TPictureFile& File, const std::string& FileName) {
  if (File.Pictures.size() > UINT16_MAX) ThrowException("too many pictures");
  WriteInOnePiece(FileName, [&File](TBinaryFileWriter& Writer) {
    Writer.writeQuad(File.Signature);
    Writer.writeWord(static_cast<std::uint16_t>(File.Pictures.size()));
    long Position = 6;
    for (const TPicture& Picture : File.Pictures) Position += 5 + 4 * Picture.Tiles.size();
    for (const TPicture& Picture : File.Pictures) {
      Writer.writeByte(static_cast<std::uint8_t>(Picture.TilesX));
      Writer.writeByte(static_cast<std::uint8_t>(Picture.TilesY));
      WriteColour(Writer, Picture.Key);
      for (const TCell& Tile : Picture.Tiles) {
        Writer.writeQuad(Offset(Position));
        Position += 2 + static_cast<long>(EncodeRuns(Tile).size());
      }
    }
    for (const TPicture& Picture : File.Pictures) {
      for (const TCell& Tile : Picture.Tiles) WriteCellRuns(Writer, Tile);
    }
  });
}

TSpriteFile ReadSpriteFile(const std::string& FileName) {
  TBinaryFileReader Reader;
  Reader.open(FileName);
  TSpriteFile File;
  File.Signature = Reader.readQuad();
  std::vector<std::uint32_t> Offsets(Reader.readQuad());
  for (std::uint32_t& Offset : Offsets) Offset = Reader.readQuad();
  for (std::uint32_t Offset : Offsets) {
    if (Offset == 0) {
      TCell Empty;
      Empty.Pixels.fill({});
      File.Sprites.push_back(Empty);
      continue;
    }
    Reader.seek(static_cast<long>(Offset));
    const TColour Key = ReadColour(Reader);
    File.Sprites.push_back(ReadCellRuns(Reader, Key));
  }
  return File;
}

TPictureFile ReadPictureFile(const std::string& FileName) {
  TBinaryFileReader Reader;
  Reader.open(FileName);
  TPictureFile File;
  File.Signature = Reader.readQuad();
  File.Pictures.resize(Reader.readWord());
  std::vector<std::vector<std::uint32_t>> Offsets;
  for (TPicture& Picture : File.Pictures) {
    Picture.TilesX = Reader.readByte();
    Picture.TilesY = Reader.readByte();
    Picture.Key = ReadColour(Reader);
    Offsets.emplace_back(static_cast<size_t>(Picture.TilesX * Picture.TilesY));
    for (std::uint32_t& Offset : Offsets.back()) Offset = Reader.readQuad();
  }
  for (size_t P = 0; P < File.Pictures.size(); ++P) {
    for (std::uint32_t Offset : Offsets[P]) {
      Reader.seek(static_cast<long>(Offset));
      File.Pictures[P].Tiles.push_back(ReadCellRuns(Reader, File.Pictures[P].Key));
    }
  }
  return File;
}
