#pragma once
// Bounds-checked arrays whose indices start where their owner says: the object
// tables at 100, the path finder's grid at -111. A fixed vector fails on an
// index outside its bounds; a growing one extends its storage towards it.
#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "core/Exception.h"

namespace container_detail {

// The position of Index in Count elements that start at Min, or the failure
// that names all three.
inline std::size_t CheckedOffset(int Index, int Min, int Count) {
  const long long Offset = static_cast<long long>(Index) - Min;
  if (Offset < 0 || Offset >= Count) {
    ThrowException("index out of range (original i:" + std::to_string(Index) +
                   ", i:" + std::to_string(Offset) + ", min:" + std::to_string(Min) +
                   ", d:" + std::to_string(Count) + ")");
  }
  return static_cast<std::size_t>(Offset);
}

}  // namespace container_detail

template <class T>
class vector {
 public:
  // Fixed, with the bounds Low..High; High = Low - 1 makes it empty.
  vector(int Low, int High) : vector(Low, High, 0, false) {}
  // Growing by Block elements at a time; Block 0 doubles the space.
  vector(int Low, int High, int Block) : vector(Low, High, Block, true) {}

  int low() const { return m_Low; }
  int high() const { return m_High; }

  T& at(int Index) {
    if (m_Growing) Extend(Index);
    return m_Elements[container_detail::CheckedOffset(Index, m_Min, Space())];
  }
  const T& at(int Index) const {
    return m_Elements[container_detail::CheckedOffset(Index, m_Min, Space())];
  }

 private:
  vector(int Low, int High, int Block, bool Growing)
      : m_Min(Low), m_Block(Block), m_Low(Low), m_High(High), m_Growing(Growing) {
    Check(High >= Low - 1, "High>=Low-1", {"Low", Low}, {"High", High});
    Check(Block >= 0, "Block>=0", {"Block", Block});
    m_Elements.resize(static_cast<std::size_t>(High - Low + 1));
  }

  int Space() const { return static_cast<int>(m_Elements.size()); }

  // Grows the storage at the end where Index lies until it holds Index, and
  // widens the bounds in use to it. New elements are cleared.
  void Extend(int Index) {
    while (Index < m_Min || Index >= m_Min + Space()) {
      const int Step = m_Block != 0 ? m_Block : Space();
      // An empty vector that doubles has nothing to double.
      Check(Step > 0, "extend>0", {"space", Space()}, {"extend", Step});
      // A space beyond the int range wraps to a negative sum, which the check reports.
      const int Grown = static_cast<int>(static_cast<long long>(Space()) + Step);
      Check(Grown >= 0, "space+extend>=0", {"space", Space()}, {"extend", Step});
      std::vector<T> Storage(static_cast<std::size_t>(Grown));
      const std::size_t First = Index < m_Min ? static_cast<std::size_t>(Step) : 0;
      for (std::size_t I = 0; I < m_Elements.size(); ++I) Storage[First + I] = std::move(m_Elements[I]);
      m_Elements = std::move(Storage);
      if (Index < m_Min) m_Min -= Step;
    }
    m_Low = std::min(m_Low, Index);
    m_High = std::max(m_High, Index);
  }

  std::vector<T> m_Elements;
  int m_Min;
  int m_Block;
  int m_Low;
  int m_High;
  bool m_Growing;
};

// The fixed vector in two dimensions: each axis has its own bounds, and both
// are checked on every access.
template <class T>
class matrix {
 public:
  matrix(int LowX, int HighX, int LowY, int HighY)
      : m_LowX(LowX), m_HighX(HighX), m_LowY(LowY), m_HighY(HighY) {
    Check(HighX >= LowX - 1, "HighX>=LowX-1", {"LowX", LowX}, {"HighX", HighX});
    Check(HighY >= LowY - 1, "HighY>=LowY-1", {"LowY", LowY}, {"HighY", HighY});
    m_Elements.resize(static_cast<std::size_t>(Width()) * static_cast<std::size_t>(Height()));
  }

  int lowX() const { return m_LowX; }
  int highX() const { return m_HighX; }
  int lowY() const { return m_LowY; }
  int highY() const { return m_HighY; }

  T& at(int X, int Y) { return m_Elements[Position(X, Y)]; }
  const T& at(int X, int Y) const { return m_Elements[Position(X, Y)]; }

 private:
  int Width() const { return m_HighX - m_LowX + 1; }
  int Height() const { return m_HighY - m_LowY + 1; }

  std::size_t Position(int X, int Y) const {
    const std::size_t Column = container_detail::CheckedOffset(X, m_LowX, Width());
    const std::size_t Row = container_detail::CheckedOffset(Y, m_LowY, Height());
    return Row * static_cast<std::size_t>(Width()) + Column;
  }

  std::vector<T> m_Elements;
  int m_LowX;
  int m_HighX;
  int m_LowY;
  int m_HighY;
};
