#include "tools/server/ClientView.h"

#include <algorithm>

#include "core/Exception.h"

namespace server {

namespace {
constexpr int LOWEST_FLOOR = 15;
constexpr int FLOORS_AROUND = 2;  // held above and below an underground player
}  // namespace

std::vector<int> TClientView::Floors() const {
  std::vector<int> Floors;
  if (MapPosition.Z <= SURFACE_FLOOR) {
    for (int Z = SURFACE_FLOOR; Z >= 0; --Z) Floors.push_back(Z);
  } else {
    const int Deepest = std::min(MapPosition.Z + FLOORS_AROUND, LOWEST_FLOOR);
    for (int Z = MapPosition.Z - FLOORS_AROUND; Z <= Deepest; ++Z) Floors.push_back(Z);
  }
  return Floors;
}

bool TClientView::HoldsFloor(int Z) const {
  if (MapPosition.Z <= SURFACE_FLOOR) return Z >= 0 && Z <= SURFACE_FLOOR;
  return Z >= MapPosition.Z - FLOORS_AROUND && Z <= std::min(MapPosition.Z + FLOORS_AROUND, LOWEST_FLOOR);
}

TPosition TClientView::FieldAt(int RX, int RY, int Z) const {
  const int Skew = MapPosition.Z - Z;
  return {RX + MapPosition.X - PLAYER_RX + Skew, RY + MapPosition.Y - PLAYER_RY + Skew, Z};
}

bool TClientView::Holds(const TPosition& Position) const {
  if (!HoldsFloor(Position.Z)) return false;
  const int Skew = MapPosition.Z - Position.Z;
  const int RX = Position.X + PLAYER_RX - MapPosition.X - Skew;
  const int RY = Position.Y + PLAYER_RY - MapPosition.Y - Skew;
  return RX >= 0 && RX < MAPSIZE_X && RY >= 0 && RY < MAPSIZE_Y;
}

bool TClientView::Knows(std::uint32_t Id) const {
  return std::find(m_Known.begin(), m_Known.end(), Id) != m_Known.end();
}

std::uint32_t TClientView::Learn(std::uint32_t Id, const std::function<bool(std::uint32_t)>& OnMap) {
  std::uint32_t Forgotten = 0;
  if (m_Known.size() >= KNOWN_CREATURES) {
    const auto Old = std::find_if(m_Known.begin(), m_Known.end(), [&](std::uint32_t K) { return !OnMap(K); });
    Check(Old != m_Known.end(), "every known creature is on the client's map");
    Forgotten = *Old;
    m_Known.erase(Old);
  }
  m_Known.push_back(Id);
  return Forgotten;
}

}  // namespace server
