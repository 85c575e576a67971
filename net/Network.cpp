#include "net/Network.h"

#include <array>
#include <string>

#include "core/Exception.h"
#include "net/ClientHooks.h"
#include "net/Commands.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"

namespace {

struct TCommandName {
  int Type;
  const char* Name;
};

constexpr TCommandName GAME_COMMANDS[] = {
    {SPENDINGSTATEENTERED, "SPENDINGSTATEENTERED"},
    {SWORLDENTERED, "SWORLDENTERED"},
    {SLOGINERROR, "SLOGINERROR"},
    {SLOGINADVICE, "SLOGINADVICE"},
    {SLOGINWAIT, "SLOGINWAIT"},
    {SLOGINSUCCESS, "SLOGINSUCCESS"},
    {SPING, "SPING"},
    {SPINGBACK, "SPINGBACK"},
    {SLOGINCHALLENGE, "SLOGINCHALLENGE"},
    {SDEAD, "SDEAD"},
    {SFULLMAP, "SFULLMAP"},
    {STOPROW, "STOPROW"},
    {SRIGHTROW, "SRIGHTROW"},
    {SBOTTOMROW, "SBOTTOMROW"},
    {SLEFTROW, "SLEFTROW"},
    {SFIELDDATA, "SFIELDDATA"},
    {SCREATEONMAP, "SCREATEONMAP"},
    {SCHANGEONMAP, "SCHANGEONMAP"},
    {SDELETEONMAP, "SDELETEONMAP"},
    {SMOVECREATURE, "SMOVECREATURE"},
    {SCONTAINER, "SCONTAINER"},
    {SCLOSECONTAINER, "SCLOSECONTAINER"},
    {SCREATEINCONTAINER, "SCREATEINCONTAINER"},
    {SCHANGEINCONTAINER, "SCHANGEINCONTAINER"},
    {SDELETEINCONTAINER, "SDELETEINCONTAINER"},
    {SSETINVENTORY, "SSETINVENTORY"},
    {SDELETEINVENTORY, "SDELETEINVENTORY"},
    {SNPCOFFER, "SNPCOFFER"},
    {SPLAYERGOODS, "SPLAYERGOODS"},
    {SCLOSENPCTRADE, "SCLOSENPCTRADE"},
    {SOWNOFFER, "SOWNOFFER"},
    {SCOUNTEROFFER, "SCOUNTEROFFER"},
    {SCLOSETRADE, "SCLOSETRADE"},
    {SAMBIENTE, "SAMBIENTE"},
    {SGRAPHICALEFFECT, "SGRAPHICALEFFECT"},
    {SMISSILEEFFECT, "SMISSILEEFFECT"},
    {SMARKCREATURE, "SMARKCREATURE"},
    {STRAPPERS, "STRAPPERS"},
    {SCREATUREHEALTH, "SCREATUREHEALTH"},
    {SCREATURELIGHT, "SCREATURELIGHT"},
    {SCREATUREOUTFIT, "SCREATUREOUTFIT"},
    {SCREATURESPEED, "SCREATURESPEED"},
    {SCREATURESKULL, "SCREATURESKULL"},
    {SCREATUREPARTY, "SCREATUREPARTY"},
    {SCREATUREUNPASS, "SCREATUREUNPASS"},
    {SCREATUREMARKS, "SCREATUREMARKS"},
    {SCREATUREPVPHELPERS, "SCREATUREPVPHELPERS"},
    {SCREATURETYPE, "SCREATURETYPE"},
    {SEDITTEXT, "SEDITTEXT"},
    {SEDITLIST, "SEDITLIST"},
    {SPREMIUMTRIGGER, "SPREMIUMTRIGGER"},
    {SPLAYERDATABASIC, "SPLAYERDATABASIC"},
    {SPLAYERDATACURRENT, "SPLAYERDATACURRENT"},
    {SPLAYERSKILLS, "SPLAYERSKILLS"},
    {SPLAYERSTATE, "SPLAYERSTATE"},
    {SCLEARTARGET, "SCLEARTARGET"},
    {SSPELLDELAY, "SSPELLDELAY"},
    {SSPELLGROUPDELAY, "SSPELLGROUPDELAY"},
    {SMULTIUSEDELAY, "SMULTIUSEDELAY"},
    {SSETTACTICS, "SSETTACTICS"},
    {STALK, "STALK"},
    {SCHANNELS, "SCHANNELS"},
    {SOPENCHANNEL, "SOPENCHANNEL"},
    {SPRIVATECHANNEL, "SPRIVATECHANNEL"},
    {SOPENOWNCHANNEL, "SOPENOWNCHANNEL"},
    {SCLOSECHANNEL, "SCLOSECHANNEL"},
    {SMESSAGE, "SMESSAGE"},
    {SSNAPBACK, "SSNAPBACK"},
    {SWAIT, "SWAIT"},
    {SUNJUSTIFIEDPOINTS, "SUNJUSTIFIEDPOINTS"},
    {SPVPSITUATIONS, "SPVPSITUATIONS"},
    {STOPFLOOR, "STOPFLOOR"},
    {SBOTTOMFLOOR, "SBOTTOMFLOOR"},
    {SOUTFIT, "SOUTFIT"},
    {SBUDDYDATA, "SBUDDYDATA"},
    {SBUDDYSTATUSCHANGE, "SBUDDYSTATUSCHANGE"},
    {STUTORIALHINT, "STUTORIALHINT"},
    {SAUTOMAPFLAG, "SAUTOMAPFLAG"},
    {SQUESTLOG, "SQUESTLOG"},
    {SQUESTLINE, "SQUESTLINE"},
    {SCHANNELEVENT, "SCHANNELEVENT"},
    {SOBJECTINFO, "SOBJECTINFO"},
    {SPLAYERINVENTORY, "SPLAYERINVENTORY"},
    {SMARKETENTER, "SMARKETENTER"},
    {SMARKETLEAVE, "SMARKETLEAVE"},
    {SMARKETDETAIL, "SMARKETDETAIL"},
    {SMARKETBROWSE, "SMARKETBROWSE"},
    {SSHOWMODALDIALOG, "SSHOWMODALDIALOG"},
};

std::array<TCommandReader, 256> Readers{};

// The rows whose readers the connection itself has.
bool IsConnectionCommand(int Type) {
  switch (Type) {
    case SPENDINGSTATEENTERED: case SWORLDENTERED: case SLOGINERROR: case SLOGINADVICE:
    case SLOGINWAIT: case SLOGINSUCCESS: case SPING: case SPINGBACK: case SLOGINCHALLENGE:
      return true;
    default:
      return false;
  }
}

void ReadConnectionCommand(int Type) {
  if (Type == SPING) {
    SendPingBack();
  } else if (Type != SPINGBACK) {  // only the liveness check acts on SPINGBACK
    ReadEntryCommand(Type);
  }
}

// The side bar windows show containers and trades; they follow these at once.
bool ChangesSideBars(int Type) {
  switch (Type) {
    case SCONTAINER: case SCLOSECONTAINER: case SOWNOFFER: case SCOUNTEROFFER: case SCLOSETRADE:
      return true;
    default:
      return false;
  }
}

void ReadGameCommand(int Type) {
  if (IsConnectionCommand(Type)) {
    ReadConnectionCommand(Type);
    return;
  }
  const TCommandReader Reader = Readers[static_cast<size_t>(Type)];
  if (Reader == nullptr) {
    ThrowException("unknown packet type during game", {{"Type", std::to_string(Type)}});
  }
  Reader();
  if (ChangesSideBars(Type) && ClientHooks().UpdateSideBars) ClientHooks().UpdateSideBars();
}

void HandleCommand(int Type) {
  if (GetConnectionState() == CONNECTED_ADMIN) SetConnectionState(ADMIN_RECEIVED);
  if (GetConnectionState() == ADMIN_RECEIVED) {
    ReadLoginCommand(Type);
    return;
  }
  if (GetConnectionState() == CONNECTED_GAME) SetConnectionState(GAME_RECEIVED);
  const int State = GetConnectionState();
  if (State == GAME_RUNNING || State == CONNECTED_PENDING || State == GAME_DEAD) {
    MarkConnectionAlive(Type);
  }
  ReadGameCommand(Type);
}

}  // namespace

// The transport records each command type for failure reports as it hands it out.
void EventPacketReceived() {
  for (int Type = NextCommandType(); Type != -1; Type = NextCommandType()) {
    try {
      HandleCommand(Type);
    } catch (...) {
      RethrowGuarded("exception occurred (Type: " + std::to_string(Type) + ")");
    }
  }
}

const char* GetCommandName(int Type) {
  for (const TCommandName& Command : GAME_COMMANDS) {
    if (Command.Type == Type) return Command.Name;
  }
  return "unknown packet type during game";
}

std::vector<int> GetGameCommandTypes() {
  std::vector<int> Types;
  for (const TCommandName& Command : GAME_COMMANDS) Types.push_back(Command.Type);
  return Types;
}

void SetCommandReader(int Type, TCommandReader Reader) {
  Check(Type >= 0 && Type <= 255, "In(Type,0,255)", {"Type", Type});
  Readers[static_cast<size_t>(Type)] = Reader;
}

bool HasCommandReader(int Type) {
  if (Type < 0 || Type > 255) return false;
  return IsConnectionCommand(Type) || Readers[static_cast<size_t>(Type)] != nullptr;
}
