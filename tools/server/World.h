#pragma once
// The server's world: the map, the creatures on it and what they do. Players
// walk the steps their clients ask for, monsters wander round their homes,
// NPCs say their lines; each at the pace of the step-time rule. Tick() runs
// what is due; every change goes to the listeners, one call per change, with
// the map already in its new state.
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tools/server/Walking.h"
#include "tools/server/WorldMap.h"

namespace server {

// Players have ids below this, monsters and NPCs from it up.
constexpr std::uint32_t FIRST_NONPLAYER_ID = 0x40000000;

enum class ECreatureKind : std::uint8_t { PLAYER = 0, MONSTER = 1, NPC = 2 };

struct TOutfit {
  int Type = 0;
  int Head = 0;
  int Body = 0;
  int Legs = 0;
  int Feet = 0;
  int Addons = 0;
};

struct TCreatureSetup {
  std::string Name;
  ECreatureKind Kind = ECreatureKind::MONSTER;
  TPosition Position;
  int Direction = SOUTH;
  TOutfit Outfit;
  int Speed = 200;
  int Range = 0;   // how far a monster wanders from where it was placed
  int RestMs = 0;  // the longest pause between two of its steps
  std::vector<std::string> Lines;  // what an NPC says, in turn
  int TalkIntervalMs = 0;
};

struct TCreature {
  std::uint32_t Id = 0;
  TCreatureSetup Setup;
  TPosition Position;
  int Direction = SOUTH;
  int Health = 100;
  std::deque<TStep> Path;
  std::int64_t NextStepTime = 0;
  std::int64_t NextTalkTime = 0;
  std::size_t NextLine = 0;

  bool IsPlayer() const { return Id < FIRST_NONPLAYER_ID; }
};

struct TWorldSetup {
  TWorldMap Map;
  TCreatureSetup Player;  // where players enter, and how they look
  std::vector<TCreatureSetup> Creatures;
  std::set<int> WaysDown;   // stepping on one leads to the field below
  std::set<int> WaysUp;     // stepping on one leads a floor up, one field on
  std::map<int, int> Uses;  // using an object of the first type turns it into the second
};

// A step the world performed, for the log.
struct TStepRecord {
  std::uint32_t CreatureId;
  TPosition From;
  TPosition To;
  std::int64_t EndTime;
};

class TWorldListener {
 public:
  virtual ~TWorldListener() = default;
  virtual void CreatureAppeared(const TCreature& Creature, int Stack) = 0;
  virtual void CreatureDisappeared(const TCreature& Creature, int Stack) = 0;
  // From and Stack: where it stood before.
  virtual void CreatureMoved(const TCreature& Creature, const TPosition& From, int Stack) = 0;
  virtual void CreatureTurned(const TCreature& Creature, int Stack) = 0;
  virtual void CreatureTalked(const TCreature& Creature, std::uint32_t Statement, std::string_view Text) = 0;
  virtual void StepRefused(const TCreature& Creature) = 0;
  virtual void ObjectCreated(const TPosition& Position, int Stack) = 0;
  virtual void ObjectChanged(const TPosition& Position, int Stack) = 0;
  virtual void ObjectDeleted(const TPosition& Position, int Stack) = 0;
};

class TGameWorld {
 public:
  using TStepSink = std::function<void(const TStepRecord&)>;

  TGameWorld(TWorldSetup Setup, std::uint32_t Seed, TStepSink StepSink);
  TGameWorld(const TGameWorld&) = delete;
  TGameWorld& operator=(const TGameWorld&) = delete;

  const TWorldMap& Map() const { return m_Map; }
  const TObjectTypes& Types() const { return m_Map.Types(); }
  // Null for an id that is not in the world.
  const TCreature* Find(std::uint32_t Id) const;

  void AddListener(TWorldListener& Listener);
  void RemoveListener(TWorldListener& Listener);

  // A player enters at the start, or on a free field next to it.
  const TCreature& AddPlayer(std::uint32_t Id, const std::string& Name);
  void RemoveCreature(std::uint32_t Id);

  // The steps replace any that are still to go; the first begins when the
  // last one has ended.
  void Walk(std::uint32_t Id, const std::vector<TStep>& Steps);
  void Stop(std::uint32_t Id);
  void Turn(std::uint32_t Id, int Direction);
  // Using an object next to the player; false if nothing happens.
  bool Use(std::uint32_t Id, const TPosition& Position, int Type, int Stack);
  // Moves an object lying next to the player onto a field in its reach;
  // false if it can't be done.
  bool MoveObject(std::uint32_t Id, const TPosition& From, int Type, int Stack, const TPosition& To,
                  int Count);

  void Tick(std::int64_t Now);

 private:
  TCreature& Creature(std::uint32_t Id);
  std::uint32_t Place(TCreature Creature);
  void TakeStep(TCreature& Creature, std::int64_t Now);
  // Where a step onto Target ends: there, or a floor up or down.
  TPosition Landing(const TPosition& Target, const TStep& Step) const;
  void Wander(TCreature& Creature, std::int64_t Now);
  void Talk(TCreature& Creature, std::int64_t Now);
  bool NextToPlayer(const TCreature& Player, const TPosition& Position) const;
  template <typename TCall>
  void Notify(TCall&& Call);

  TWorldMap m_Map;
  TCreatureSetup m_PlayerSetup;
  std::set<int> m_WaysDown;
  std::set<int> m_WaysUp;
  std::map<int, int> m_Uses;
  std::map<std::uint32_t, TCreature> m_Creatures;
  std::vector<TWorldListener*> m_Listeners;
  std::mt19937 m_Random;
  TStepSink m_StepSink;
  std::uint32_t m_NextStatement = 1;
};

}  // namespace server
