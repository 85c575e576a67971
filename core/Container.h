#pragma once
// Bounds-checked arrays whose indices start where their owner says: the object
// tables at 100, the path finder's grid at -111. A fixed vector fails on an
// index outside its bounds; a growing one extends its storage towards it.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "core/Exception.h"

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
    return m_Elements[Position(Index)];
  }
  const T& at(int Index) const { return m_Elements[Position(Index)]; }

 private:
  vector(int Low, int High, int Block, bool Growing)
      : m_Min(Low), m_Block(Block), m_Low(Low), m_High(High), m_Growing(Growing) {
    Check(High >= Low - 1, "High>=Low-1", {"Low", Low}, {"High", High});
    Check(Block >= 0, "Block>=0", {"Block", Block});
    m_Elements.resize(static_cast<size_t>(High - Low + 1));
  }

  int Space() const { return static_cast<int>(m_Elements.size()); }

  size_t Position(int Index) const {
    const long long Offset = static_cast<long long>(Index) - m_Min;
    if (Offset < 0 || Offset >= Space()) {
      ThrowException("index out of range (original i:" + std::to_string(Index) +
                     ", i:" + std::to_string(Offset) + ", min:" + std::to_string(m_Min) +
                     ", d:" + std::to_string(Space()) + ")");
    }
    return static_cast<size_t>(Offset);
  }

  // Grows the storage at the end where Index lies until it holds Index, and
  // widens the bounds in use to it. New elements are cleared.
  void Extend(int Index) {
    while (Index < m_Min || Index >= m_Min + Space()) {
      const int Step = m_Block != 0 ? m_Block : Space();
      // An empty vector that doubles has nothing to double.
      Check(Step > 0, "extend>0", {"space", Space()}, {"extend", Step});
      std::vector<T> Grown(static_cast<size_t>(Space() + Step));
      const size_t First = Index < m_Min ? static_cast<size_t>(Step) : 0;
      for (size_t I = 0; I < m_Elements.size(); ++I) Grown[First + I] = std::move(m_Elements[I]);
      m_Elements = std::move(Grown);
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
