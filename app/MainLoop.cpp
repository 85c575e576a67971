#include "app/MainLoop.h"

#include "core/ProgramState.h"
#include "gui/GUI.h"
#include "gui/Routing.h"
#include "net/Connection.h"
#include "platform/AsyncSocket.h"
#include "platform/NameLookup.h"

void PollNetwork() {
  PollSocketEvents();
  platform::PollNameLookups();
}

// The tick's order: tooltip, talk, automap slice, map, held button, connect
// time-out, GUI, liveness. The others join at their places as they are built.
void RunTimerTick() {
  AdvanceTickCounter();
  TooltipTick();
  ConnectTimeOutTick();
  TickTimers();
  ConnectionAliveTick();
}
