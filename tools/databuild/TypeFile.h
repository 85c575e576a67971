#pragma once
// What the data builder knows of Kelmo.dat: the signature and the records of
// the four tables, in file order.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "world/ObjectFile.h"

enum class TTypeKind : int { OBJECT = 0, OUTFIT = 1, EFFECT = 2, MISSILE = 3 };
constexpr std::array<TTypeKind, 4> TYPE_KINDS{TTypeKind::OBJECT, TTypeKind::OUTFIT,
                                              TTypeKind::EFFECT, TTypeKind::MISSILE};

// The word that opens a record of the kind in the sources: "object" and so on.
const char* KindName(TTypeKind Kind);
// 100 for objects, 1 for the others.
int FirstTypeNumber(TTypeKind Kind);

struct TTypeFile {
  std::uint32_t Signature = 0;
  std::array<std::vector<TObjectRecord>, 4> Tables;

  std::vector<TObjectRecord>& Table(TTypeKind Kind) { return Tables[static_cast<size_t>(Kind)]; }
  const std::vector<TObjectRecord>& Table(TTypeKind Kind) const {
    return Tables[static_cast<size_t>(Kind)];
  }
};

// Sprite numbers handed out when a source gives none: a running count over
// all records in file order, from 1, each picture slot taking the next.
class TSpriteCounter {
 public:
  std::vector<std::uint32_t> Take(long long Count);
  // True if Sprites is what Take would hand out next.
  bool IsNext(const std::vector<std::uint32_t>& Sprites) const;

 private:
  std::uint32_t m_Next = 1;
};

// Writes the file in one piece: a failure leaves no half-written file behind.
void WriteDatFile(const TTypeFile& File, const std::string& FileName);
// Reads a whole file; bytes after the last record are a failure.
TTypeFile ReadDatFile(const std::string& FileName);
