#pragma once
// Commands the client sends in a running game.
#include <cstdint>
#include <vector>

enum TClientCommand : int {
  CLOGINADMIN = 1,
  CLOGINGAME = 10,
  CENTERWORLD = 15,
  CQUITGAME = 20,
  CPING = 29,
  CPINGBACK = 30,
  CGOPATH = 100,
  CGONORTH = 101,
  CGOEAST = 102,
  CGOSOUTH = 103,
  CGOWEST = 104,
  CSTOP = 105,
  CGONORTHEAST = 106,
  CGOSOUTHEAST = 107,
  CGOSOUTHWEST = 108,
  CGONORTHWEST = 109,
  CSETTACTICS = 160,
  CFOLLOW = 162,
  CCANCEL = 190,
  CERRORREPORT = 232,
};

void SendPing();
void SendPingBack();
void SendEnterWorld();
void SendQuitGame();
void SendSetTactics(int AttackMode, int ChaseMode, int SecureMode, int PvPMode);
// One command per entry of the error file; the entries are gone afterwards.
void SendErrorReports();

// The creatures that the player attacks and follows; 0 for none. AttackSequence
// counts the attack and follow commands, so that a late SCLEARTARGET for an
// older one can be told apart.
struct TCombatTargets {
  std::uint32_t AttackTarget = 0;
  std::uint32_t FollowTarget = 0;
  std::uint32_t AttackSequence = 0;
};
TCombatTargets& CombatTargets();

// A walk by step codes: 1 east, 2 north-east, 3 north, and so on
// anticlockwise to 8 south-east. One step goes out as its own command, more
// as CGOPATH. An empty walk fails with "Steps>0". A walk ends a follow.
void SendGoPath(const std::vector<int>& Steps);
void SendStop();
void SendCancel();
// CFOLLOW with the next AttackSequence; 0 ends a follow. Following a creature
// also ends an automatic walk, which is the caller's to stop.
void SendFollow(std::uint32_t CreatureId);
