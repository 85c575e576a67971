// kelmo-databuild: turns the readable sources of data/ into the client's data
// files, dumps a Kelmo.dat back into source form, and draws contact sheets.
//
//   kelmo-databuild -o <Kelmo.dat> <type source>...
//   kelmo-databuild --dump <Kelmo.dat>
//   kelmo-databuild --sprites <Kelmo.spr> <signatures> <type source>...
//   kelmo-databuild --pictures <Kelmo.pic> <signatures> <skins> <fonts>
//   kelmo-databuild --skins-header <header> <skins>
//   kelmo-databuild --png <directory> <Kelmo.spr> <Kelmo.pic> <skins>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "tools/databuild/Art.h"
#include "tools/databuild/ContactSheets.h"
#include "tools/databuild/Pictures.h"
#include "tools/databuild/TypeSources.h"

namespace {

using TArguments = std::vector<std::string>;

int Usage() {
  std::cerr << "usage: kelmo-databuild -o <Kelmo.dat> <type source>...\n"
               "       kelmo-databuild --dump <Kelmo.dat>\n"
               "       kelmo-databuild --sprites <Kelmo.spr> <signatures> <type source>...\n"
               "       kelmo-databuild --pictures <Kelmo.pic> <signatures> <skins> <fonts>\n"
               "       kelmo-databuild --skins-header <header> <skins>\n"
               "       kelmo-databuild --png <directory> <Kelmo.spr> <Kelmo.pic> <skins>\n";
  return 2;
}

void Sprites(const TArguments& A) {
  const TArguments Sources(A.begin() + 3, A.end());
  WriteSpriteFile(DrawSprites(ReadTypeSourcesWithArt(Sources), ReadArtSignatures(A[2]).Sprites), A[1]);
}

void Pictures(const TArguments& A) {
  const TPictureSources Sources{ReadSkinTable(A[3]), ReadFontSources(A[4])};
  WritePictureFile(BuildPictureFile(Sources, ReadArtSignatures(A[2]).Pictures), A[1]);
}

int Run(const TArguments& A) {
  const std::string Mode = A.empty() ? "" : A[0];
  if (Mode == "--dump" && A.size() == 2) {
    WriteTypeSource(ReadDatFile(A[1]), std::cout);
    return std::cout.flush() ? 0 : 1;
  }
  if (Mode == "-o" && A.size() >= 3) {
    WriteDatFile(ReadTypeSources(TArguments(A.begin() + 2, A.end())), A[1]);
  } else if (Mode == "--sprites" && A.size() >= 4) {
    Sprites(A);
  } else if (Mode == "--pictures" && A.size() == 5) {
    Pictures(A);
  } else if (Mode == "--skins-header" && A.size() == 3) {
    WriteSkinHeader(ReadSkinTable(A[2]), A[1]);
  } else if (Mode == "--png" && A.size() == 5) {
    WriteContactSheets(A[1], A[2], A[3], A[4]);
  } else {
    return Usage();
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(TArguments(argv + 1, argv + argc));
  } catch (const std::exception& Failure) {
    std::cerr << "kelmo-databuild: " << Failure.what() << "\n";
    return 1;
  }
}
