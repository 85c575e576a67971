#pragma once
// Steps and their times. The client draws a step over the time that the
// speed formula and the ground's waypoints give, rounded up to the beat, and
// lets the next one begin only then (after a diagonal one, three times the
// unrounded time); the server paces its creatures by the same rule.
#include <cstdint>
#include <optional>

namespace server {

enum EDirection : int { NORTH = 0, EAST = 1, SOUTH = 2, WEST = 3 };

struct TStep {
  int DX = 0;
  int DY = 0;
  bool Diagonal() const { return DX != 0 && DY != 0; }
  bool operator==(const TStep&) const = default;
};

// Path step codes: 1 east, then anticlockwise to 8 south-east.
std::optional<TStep> StepOfCode(int Code);
// The way a creature faces after a step: east or west wins over north and south.
int FacingOf(const TStep& Step);
TStep StepOfDirection(int Direction);

struct TSpeedFormula {
  std::uint16_t Beat;
  double A;
  double B;
  double C;
};
// The formula this server hands the client at login.
constexpr TSpeedFormula SPEED_FORMULA{50, 857.36, 261.29, -4795.01};

// Waypoints per second; at least 1.
int Velocity(const TSpeedFormula& Formula, int Speed);

struct TStepTimes {
  int Duration;  // the walk, in milliseconds, a whole number of beats
  int Pause;     // until the next step may begin
};
TStepTimes StepTimes(const TSpeedFormula& Formula, int Speed, int Waypoints, bool Diagonal);

}  // namespace server
