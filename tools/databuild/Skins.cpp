#include "tools/databuild/Skins.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>

#include "core/Exception.h"
#include "core/Script.h"

namespace {

// Space between placed skins, so that no skin bleeds into its neighbour
// when a surface filters.
constexpr int GAP = 2;

bool Overlap(const TSkin& A, const TSkin& B) {
  return A.X < B.X + B.Width + GAP && B.X < A.X + A.Width + GAP && A.Y < B.Y + B.Height + GAP &&
         B.Y < A.Y + A.Height + GAP;
}

void ReadSkin(TScriptReader& Reader, TSkinTable& Table) {
  const int Number = Reader.readNumber();
  if (Number < 1 || Number >= SKIN_TABLE_SIZE) Reader.error("skin number out of range, 1 to 429");
  TSkin& Skin = Table.Skins[static_cast<size_t>(Number)];
  if (!Skin.Name.empty()) Reader.error("skin given twice");
  Skin.Number = Number;
  Reader.readSymbol('{');
  for (Reader.nextToken(); Reader.getToken() != TOKEN::SPECIAL || Reader.getSpecial() != '}';
       Reader.nextToken()) {
    const std::string Property = Reader.getIdentifier();
    Reader.readSymbol('=');
    if (Property == "name") {
      Skin.Name = Reader.readString();
    } else if (Property == "art") {
      Skin.Art = Reader.readString();
      if (!IsSkinArt(Skin.Art)) Reader.error("unknown skin art '" + Skin.Art + "'");
    } else if (Property == "size" || Property == "at") {
      Reader.readSymbol('(');
      const int A = Reader.readNumber();
      Reader.readSymbol(',');
      const int B = Reader.readNumber();
      Reader.readSymbol(')');
      if (Property == "size") Skin.Width = A, Skin.Height = B;
      else Skin.X = A, Skin.Y = B, Skin.Fixed = true;
    } else if (Property == "same") {
      Skin.SameAs = Reader.readNumber();
    } else {
      Reader.error("name, size, at, art or same expected");
    }
  }
  if (Skin.Name.empty()) Reader.error("skin without name");
  if (Skin.SameAs == 0 && (Skin.Width < 1 || Skin.Height < 1 || Skin.Art.empty())) {
    Reader.error("skin needs a size and art");
  }
}

// Shelves from the top, the tallest skins first, stepping round the skins
// whose place is given.
void Place(TSkinTable& Table) {
  std::vector<TSkin*> Free, Fixed;
  for (TSkin& Skin : Table.Skins) {
    if (Skin.Name.empty() || Skin.SameAs != 0) continue;
    (Skin.Fixed ? Fixed : Free).push_back(&Skin);
  }
  std::stable_sort(Free.begin(), Free.end(), [](const TSkin* A, const TSkin* B) {
    return A->Height != B->Height ? A->Height > B->Height : A->Width > B->Width;
  });
  int X = 0, Y = 0, ShelfHeight = 0;
  for (TSkin* Skin : Free) {
    while (true) {
      if (X + Skin->Width > SKIN_SHEET_WIDTH) X = 0, Y += ShelfHeight + GAP, ShelfHeight = 0;
      Skin->X = X, Skin->Y = Y;
      const auto Hit = std::find_if(Fixed.begin(), Fixed.end(),
                                    [Skin](const TSkin* Other) { return Overlap(*Skin, *Other); });
      if (Hit == Fixed.end()) break;
      X = (*Hit)->X + (*Hit)->Width + GAP;
    }
    X += Skin->Width + GAP;
    ShelfHeight = std::max(ShelfHeight, Skin->Height);
  }
}

void CheckPlaces(TSkinTable& Table) {
  for (TSkin& Skin : Table.Skins) {
    if (Skin.Name.empty()) continue;
    if (Skin.SameAs != 0) {
      if (Skin.SameAs < 1 || Skin.SameAs >= SKIN_TABLE_SIZE || Table[Skin.SameAs].Name.empty() ||
          Table[Skin.SameAs].SameAs != 0) {
        ThrowException("same names no skin of its own", {{"Skin", std::to_string(Skin.Number)}});
      }
      const TSkin& Other = Table[Skin.SameAs];
      Skin.X = Other.X, Skin.Y = Other.Y, Skin.Width = Other.Width, Skin.Height = Other.Height;
      continue;
    }
    if (Skin.X < 0 || Skin.Y < 0 || Skin.X + Skin.Width > SKIN_SHEET_WIDTH) {
      ThrowException("skin outside the sheet", {{"Skin", std::to_string(Skin.Number)}});
    }
    Table.SheetHeight = std::max(Table.SheetHeight, Skin.Y + Skin.Height);
    for (const TSkin& Other : Table.Skins) {
      if (&Other == &Skin || Other.Name.empty() || Other.SameAs != 0) continue;
      const bool Touch = Skin.X < Other.X + Other.Width && Other.X < Skin.X + Skin.Width &&
                         Skin.Y < Other.Y + Other.Height && Other.Y < Skin.Y + Skin.Height;
      if (Touch) {
        ThrowException("skins overlap", {{"Skin", std::to_string(Skin.Number)},
                                         {"Other", std::to_string(Other.Number)}});
      }
    }
  }
  Table.SheetHeight = (Table.SheetHeight + 31) / 32 * 32;
}

std::string ConstantName(const std::string& Name) {
  std::string Result = "SKIN_";
  for (char C : Name) {
    Result += std::isalnum(static_cast<unsigned char>(C))
                  ? static_cast<char>(std::toupper(static_cast<unsigned char>(C)))
                  : '_';
  }
  return Result;
}

}  // namespace

TSkinTable ReadSkinTable(const std::string& FileName) {
  TSkinTable Table;
  Table.Skins.resize(SKIN_TABLE_SIZE);
  TScriptReader Reader;
  Reader.open(FileName);
  for (Reader.nextToken(); Reader.getToken() != TOKEN::ENDOFFILE; Reader.nextToken()) {
    if (Reader.getIdentifier() != "skin") Reader.error("skin expected");
    ReadSkin(Reader, Table);
  }
  Reader.close();
  std::vector<std::string> Names;
  for (const TSkin& Skin : Table.Skins) {
    if (Skin.Name.empty()) continue;
    if (std::find(Names.begin(), Names.end(), ConstantName(Skin.Name)) != Names.end()) {
      ThrowException("skin name given twice", {{"Name", Skin.Name}});
    }
    Names.push_back(ConstantName(Skin.Name));
  }
  Place(Table);
  CheckPlaces(Table);
  return Table;
}

void WriteSkinHeader(const TSkinTable& Table, const std::string& FileName) {
  const std::string Temporary = FileName + ".tmp";
  {
    std::ofstream Out(Temporary, std::ios::binary);
    Out << "#pragma once\n"
           "// Written by kelmo-databuild from data/skins.txt: the skins of the interface\n"
           "// sheet (picture 5 of Kelmo.pic). Row 0 is no skin.\n"
           "#include <array>\n\n"
           "struct TSkinRect {\n  int x, y, width, height;\n};\n\n"
           "inline constexpr int LASTSKIN = "
        << SKIN_TABLE_SIZE << ";\n\n";
    for (const TSkin& Skin : Table.Skins) {
      if (!Skin.Name.empty()) Out << "inline constexpr int " << ConstantName(Skin.Name) << " = " << Skin.Number << ";\n";
    }
    Out << "\ninline constexpr std::array<TSkinRect, LASTSKIN> SkinTable{{\n";
    for (const TSkin& Skin : Table.Skins) {
      Out << "    {" << Skin.X << ", " << Skin.Y << ", " << Skin.Width << ", " << Skin.Height << "},  // "
          << Skin.Number << (Skin.Name.empty() ? "" : " " + Skin.Name) << "\n";
    }
    Out << "}};\n";
    if (!Out.flush()) ThrowException("failed to write file", {{"FileName", Temporary}});
  }
  std::filesystem::rename(Temporary, FileName);
}
