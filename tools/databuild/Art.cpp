#include "tools/databuild/Art.h"

#include <algorithm>
#include <optional>

#include "core/Exception.h"
#include "core/Script.h"

namespace {

TArtCatalogue BuildCatalogue() {
  TArtCatalogue Catalogue;
  AddGroundArt(Catalogue);
  AddStructureArt(Catalogue);
  AddItemArt(Catalogue);
  AddCreatureArt(Catalogue);
  AddEffectArt(Catalogue);
  return Catalogue;
}

void CheckShape(const TObjectRecord& R, const TArtShape& S) {
  const bool LayersFit = R.Layers == S.Layers || (S.IsOutfit && S.Layers == 2 && R.Layers == 1);
  const bool RowsFit = S.IsOutfit ? R.PatternHeight <= S.PatternHeight
                                  : R.PatternHeight == S.PatternHeight;
  if (R.Width != S.Width || R.Height != S.Height || !LayersFit || R.PatternWidth != S.PatternWidth ||
      !RowsFit || R.PatternDepth != S.PatternDepth || R.Phases < S.MinimumPhases ||
      R.Phases > S.MaximumPhases) {
    ThrowException("the art can't draw this picture geometry");
  }
}

}  // namespace

const TArtCatalogue& TArtCatalogue::Instance() {
  static const TArtCatalogue Catalogue = BuildCatalogue();
  return Catalogue;
}

void TArtCatalogue::add(const std::string& Name, TArtShape Shape, TArtDrawer Draw) {
  if (!m_Art.emplace(Name, TArt{Shape, std::move(Draw)}).second) {
    ThrowException("art added twice", {{"Art", Name}});
  }
}

const TArt& TArtCatalogue::find(const std::string& Name) const {
  const auto Found = m_Art.find(Name);
  if (Found == m_Art.end()) ThrowException("unknown art", {{"Art", Name}});
  return Found->second;
}

std::vector<TCell> DrawRecord(const TObjectRecord& R, const TArt& Art) {
  CheckShape(R, Art.Shape);
  std::vector<TCell> Cells;
  for (int Phase = 0; Phase < R.Phases; ++Phase) {
    for (int PZ = 0; PZ < R.PatternDepth; ++PZ) {
      for (int PY = 0; PY < R.PatternHeight; ++PY) {
        for (int PX = 0; PX < R.PatternWidth; ++PX) {
          const std::vector<TCanvas> Layers = Art.Draw(TArtFrame{R, PX, PY, PZ, Phase});
          Check(static_cast<int>(Layers.size()) >= R.Layers, "Layers.size()>=Record.Layers",
                {"Size", static_cast<long long>(Layers.size())}, {"Layers", R.Layers});
          for (int Layer = 0; Layer < R.Layers; ++Layer) {
            const TCanvas& Image = Layers[static_cast<size_t>(Layer)];
            for (int Y = 0; Y < R.Height; ++Y) {
              for (int X = 0; X < R.Width; ++X) {
                Cells.push_back(CellFromImage(Image, (R.Width - 1 - X) * CELL_SIZE,
                                              (R.Height - 1 - Y) * CELL_SIZE));
              }
            }
          }
        }
      }
    }
  }
  return Cells;
}

TSpriteFile DrawSprites(const TTypeSources& Sources, std::uint32_t Signature) {
  // Every sprite number that a type holds needs art, with or without art of its own.
  std::uint32_t Highest = 0;
  for (TTypeKind Kind : TYPE_KINDS) {
    for (const TObjectRecord& Record : Sources.File.Table(Kind)) {
      for (std::uint32_t Number : Record.Sprites) Highest = std::max(Highest, Number);
    }
  }
  std::vector<std::optional<TCell>> Cells(Highest);
  const TArtCatalogue& Catalogue = TArtCatalogue::Instance();
  for (TTypeKind Kind : TYPE_KINDS) {
    const std::vector<TObjectRecord>& Table = Sources.File.Table(Kind);
    for (size_t I = 0; I < Table.size(); ++I) {
      const std::string& Name = Sources.art(Kind)[I];
      if (Name.empty()) continue;
      const std::string Type =
          std::string(KindName(Kind)) + " " + std::to_string(FirstTypeNumber(Kind) + static_cast<int>(I));
      try {
        const std::vector<TCell> Drawn = DrawRecord(Table[I], Catalogue.find(Name));
        for (size_t S = 0; S < Drawn.size(); ++S) {
          const std::uint32_t Number = Table[I].Sprites[S];
          if (Number == 0) ThrowException("sprite number 0");
          Cells[Number - 1] = Drawn[S];
        }
      } catch (const TMyException& Failure) {
        ThrowException("art of " + Type + " (" + Name + "): " + Failure.Text());
      }
    }
  }
  TSpriteFile File;
  File.Signature = Signature;
  for (size_t N = 0; N < Cells.size(); ++N) {
    if (!Cells[N]) ThrowException("sprite without art", {{"Sprite", std::to_string(N + 1)}});
    File.Sprites.push_back(*Cells[N]);
  }
  return File;
}

TArtSignatures ReadArtSignatures(const std::string& FileName) {
  TArtSignatures Signatures;
  bool Sprites = false, Pictures = false;
  TScriptReader Reader;
  Reader.open(FileName);
  for (Reader.nextToken(); Reader.getToken() != TOKEN::ENDOFFILE; Reader.nextToken()) {
    const std::string Word = Reader.getIdentifier();
    Reader.readSymbol('=');
    const auto Value = static_cast<std::uint32_t>(Reader.readNumber());
    if (Word == "sprites" && !Sprites) Signatures.Sprites = Value, Sprites = true;
    else if (Word == "pictures" && !Pictures) Signatures.Pictures = Value, Pictures = true;
    else Reader.error("sprites or pictures expected, each once");
  }
  Reader.close();
  if (!Sprites || !Pictures) ThrowException("signatures of sprites and pictures expected");
  return Signatures;
}
