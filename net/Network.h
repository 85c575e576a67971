#pragma once
// The receive handler: every command of every complete packet goes through
// here, keeps the state machine moving, and reaches its reader. The
// connection reads its own rows; the layers above install the readers of
// theirs at start, so that a row without a reader fails like an unknown type.
#include <vector>

// Commands of the game server.
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
  SDEAD = 40,
  SFULLMAP = 100,
  STOPROW = 101,
  SRIGHTROW = 102,
  SBOTTOMROW = 103,
  SLEFTROW = 104,
  SFIELDDATA = 105,
  SCREATEONMAP = 106,
  SCHANGEONMAP = 107,
  SDELETEONMAP = 108,
  SMOVECREATURE = 109,
  SCONTAINER = 110,
  SCLOSECONTAINER = 111,
  SCREATEINCONTAINER = 112,
  SCHANGEINCONTAINER = 113,
  SDELETEINCONTAINER = 114,
  SSETINVENTORY = 120,
  SDELETEINVENTORY = 121,
  SNPCOFFER = 122,
  SPLAYERGOODS = 123,
  SCLOSENPCTRADE = 124,
  SOWNOFFER = 125,
  SCOUNTEROFFER = 126,
  SCLOSETRADE = 127,
  SAMBIENTE = 130,
  SGRAPHICALEFFECT = 131,
  SMISSILEEFFECT = 133,
  SMARKCREATURE = 134,
  STRAPPERS = 135,
  SCREATUREHEALTH = 140,
  SCREATURELIGHT = 141,
  SCREATUREOUTFIT = 142,
  SCREATURESPEED = 143,
  SCREATURESKULL = 144,
  SCREATUREPARTY = 145,
  SCREATUREUNPASS = 146,
  SCREATUREMARKS = 147,
  SCREATUREPVPHELPERS = 148,
  SCREATURETYPE = 149,
  SEDITTEXT = 150,
  SEDITLIST = 151,
  SPREMIUMTRIGGER = 158,
  SPLAYERDATABASIC = 159,
  SPLAYERDATACURRENT = 160,
  SPLAYERSKILLS = 161,
  SPLAYERSTATE = 162,
  SCLEARTARGET = 163,
  SSPELLDELAY = 164,
  SSPELLGROUPDELAY = 165,
  SMULTIUSEDELAY = 166,
  SSETTACTICS = 167,
  STALK = 170,
  SCHANNELS = 171,
  SOPENCHANNEL = 172,
  SPRIVATECHANNEL = 173,
  SOPENOWNCHANNEL = 178,
  SCLOSECHANNEL = 179,
  SMESSAGE = 180,
  SSNAPBACK = 181,
  SWAIT = 182,
  SUNJUSTIFIEDPOINTS = 183,
  SPVPSITUATIONS = 184,
  STOPFLOOR = 190,
  SBOTTOMFLOOR = 191,
  SOUTFIT = 200,
  SBUDDYDATA = 210,
  SBUDDYSTATUSCHANGE = 211,
  STUTORIALHINT = 220,
  SAUTOMAPFLAG = 221,
  SQUESTLOG = 240,
  SQUESTLINE = 241,
  SCHANNELEVENT = 243,
  SOBJECTINFO = 244,
  SPLAYERINVENTORY = 245,
  SMARKETENTER = 246,
  SMARKETLEAVE = 247,
  SMARKETDETAIL = 248,
  SMARKETBROWSE = 249,
  SSHOWMODALDIALOG = 250,
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
// Every game command that has a name, in number order.
std::vector<int> GetGameCommandTypes();

// A reader consumes exactly its command's fields from the receive buffer.
using TCommandReader = void (*)();
// Installs the reader of a game command; null removes it.
void SetCommandReader(int Type, TCommandReader Reader);
bool HasCommandReader(int Type);
