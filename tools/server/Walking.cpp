#include "tools/server/Walking.h"

#include <algorithm>
#include <cmath>

namespace server {

std::optional<TStep> StepOfCode(int Code) {
  static constexpr TStep STEPS[] = {{1, 0}, {1, -1}, {0, -1}, {-1, -1}, {-1, 0}, {-1, 1}, {0, 1}, {1, 1}};
  if (Code < 1 || Code > 8) return std::nullopt;
  return STEPS[Code - 1];
}

int FacingOf(const TStep& Step) {
  if (Step.DX > 0) return EAST;
  if (Step.DX < 0) return WEST;
  return Step.DY < 0 ? NORTH : SOUTH;
}

TStep StepOfDirection(int Direction) {
  static constexpr TStep STEPS[] = {{0, -1}, {1, 0}, {0, 1}, {-1, 0}};
  return STEPS[Direction & 3];
}

int Velocity(const TSpeedFormula& Formula, int Speed) {
  if (Speed <= -Formula.B) return 1;
  const double Value = Formula.A * std::log(Speed + Formula.B) + Formula.C + 0.5;
  return std::max(1, static_cast<int>(std::floor(Value)));
}

TStepTimes StepTimes(const TSpeedFormula& Formula, int Speed, int Waypoints, bool Diagonal) {
  const int V = Velocity(Formula, Speed);
  const int Raw = Waypoints * 1000 / V;
  const int Beat = Formula.Beat;
  const int Duration = (Raw + Beat - 1) / Beat * Beat;
  return {Duration, Diagonal ? Waypoints * 3000 / V : Duration};
}

}  // namespace server
