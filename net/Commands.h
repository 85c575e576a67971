#pragma once
// Commands the client sends in a running game.
#include <cstdint>

enum TClientCommand : int {
  CLOGINADMIN = 1,
  CLOGINGAME = 10,
  CENTERWORLD = 15,
  CQUITGAME = 20,
  CPING = 29,
  CPINGBACK = 30,
  CSETTACTICS = 160,
  CERRORREPORT = 232,
};

void SendPing();
void SendPingBack();
void SendEnterWorld();
void SendQuitGame();
void SendSetTactics(int AttackMode, int ChaseMode, int SecureMode, int PvPMode);
// One command per entry of the error file; the entries are gone afterwards.
void SendErrorReports();
