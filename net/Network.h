#pragma once
// The receive handler: every command of every complete packet goes through
// here, keeps the state machine moving, and reaches its reader.

// Commands of the game server that the connection itself reads.
enum TGameCommand : int {
  SPENDINGSTATEENTERED = 10,
  SWORLDENTERED = 15,
  SLOGINERROR = 20,
  SLOGINADVICE = 21,
  SLOGINWAIT = 22,
  SLOGINSUCCESS = 23,
  SPING = 29,
  SPINGBACK = 30,
  SLOGINCHALLENGE = 31,
};

// Commands of the login server.
enum TLoginCommand : int {
  SLOGINERROR_ADMIN = 10,
  SLOGINADVICE_ADMIN = 11,
  SMOTD = 20,
  SPATCHFILE = 30,
  SPATCHDATAFILE = 31,
  SPATCHBLOCK = 32,
  SCHARACTERLIST = 100,
};

void EventPacketReceived();
// The name of a game command, "unknown packet type during game" if it has none.
const char* GetCommandName(int Type);
