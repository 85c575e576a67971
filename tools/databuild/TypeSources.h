#pragma once
// The readable sources of Kelmo.dat, in the project's script format (see
// data/objects/README.md), and the dump that writes a type file back in that form.
#include <array>
#include <iosfwd>
#include <string>
#include <vector>

#include "tools/databuild/TypeFile.h"

// The type file and, per record, the name of the art that draws its sprites
// ("" where the source names none).
struct TTypeSources {
  TTypeFile File;
  std::array<std::vector<std::string>, 4> Art;

  const std::vector<std::string>& art(TTypeKind Kind) const {
    return Art[static_cast<size_t>(Kind)];
  }
};

// Reads the source files in the given order. A mistake fails with the script
// reader's "error in script file '<name>' in line <n>" and what is wrong.
TTypeSources ReadTypeSourcesWithArt(const std::vector<std::string>& FileNames);
TTypeFile ReadTypeSources(const std::vector<std::string>& FileNames);

// Writes File as one source that ReadTypeSources turns into the same bytes.
void WriteTypeSource(const TTypeFile& File, std::ostream& Out);
