#include "tools/server/World.h"

#include <algorithm>
#include <cstdlib>

#include "core/Exception.h"

namespace server {

namespace {

constexpr int LOWEST_FLOOR = 15;

int Distance(const TPosition& A, const TPosition& B) { return std::max(std::abs(A.X - B.X), std::abs(A.Y - B.Y)); }

TCreature MakeCreature(std::uint32_t Id, TCreatureSetup Setup, const TPosition& Position) {
  TCreature Creature;
  Creature.Id = Id;
  Creature.Position = Position;
  Creature.Direction = Setup.Direction;
  Creature.Setup = std::move(Setup);
  return Creature;
}

TPosition Beside(const TPosition& Position, const TStep& Step) {
  return {Position.X + Step.DX, Position.Y + Step.DY, Position.Z};
}

}  // namespace

TGameWorld::TGameWorld(TWorldSetup Setup, std::uint32_t Seed, TStepSink StepSink)
    : m_Map(std::move(Setup.Map)),
      m_PlayerSetup(std::move(Setup.Player)),
      m_WaysDown(std::move(Setup.WaysDown)),
      m_WaysUp(std::move(Setup.WaysUp)),
      m_Uses(std::move(Setup.Uses)),
      m_Random(Seed),
      m_StepSink(std::move(StepSink)) {
  std::uint32_t Id = FIRST_NONPLAYER_ID;
  for (TCreatureSetup& Creature : Setup.Creatures) {
    const TPosition Position = Creature.Position;
    Place(MakeCreature(Id++, std::move(Creature), Position));
  }
}

const TCreature* TGameWorld::Find(std::uint32_t Id) const {
  const auto Found = m_Creatures.find(Id);
  return Found == m_Creatures.end() ? nullptr : &Found->second;
}

TCreature& TGameWorld::Creature(std::uint32_t Id) {
  const auto Found = m_Creatures.find(Id);
  if (Found == m_Creatures.end()) ThrowException("no such creature", {{"Id", std::to_string(Id)}});
  return Found->second;
}

void TGameWorld::AddListener(TWorldListener& Listener) { m_Listeners.push_back(&Listener); }

void TGameWorld::RemoveListener(TWorldListener& Listener) { std::erase(m_Listeners, &Listener); }

template <typename TCall>
void TGameWorld::Notify(TCall&& Call) {
  const std::vector<TWorldListener*> Listeners = m_Listeners;
  for (TWorldListener* Listener : Listeners) Call(*Listener);
}

std::uint32_t TGameWorld::Place(TCreature Creature) {
  const std::uint32_t Id = Creature.Id;
  if (m_Creatures.contains(Id)) ThrowException("creature is in the world already", {{"Id", std::to_string(Id)}});
  m_Map.Insert(Creature.Position, CreatureItem(Id));
  m_Creatures.emplace(Id, std::move(Creature));
  return Id;
}

const TCreature& TGameWorld::AddPlayer(std::uint32_t Id, const std::string& Name) {
  Check(Id != 0 && Id < FIRST_NONPLAYER_ID, "player id out of range", {"Id", Id});
  TPosition Position = m_PlayerSetup.Position;
  for (const TStep Step : {TStep{}, TStep{0, -1}, TStep{1, 0}, TStep{0, 1}, TStep{-1, 0}})
    if (m_Map.IsWalkable(Beside(m_PlayerSetup.Position, Step))) {
      Position = Beside(m_PlayerSetup.Position, Step);
      break;
    }
  TCreatureSetup Setup = m_PlayerSetup;
  Setup.Name = Name;
  Setup.Kind = ECreatureKind::PLAYER;
  Place(MakeCreature(Id, std::move(Setup), Position));
  const TCreature& Player = m_Creatures.at(Id);
  const int Stack = *m_Map.StackOf(Position, Id);
  Notify([&](TWorldListener& Listener) { Listener.CreatureAppeared(Player, Stack); });
  return Player;
}

void TGameWorld::RemoveCreature(std::uint32_t Id) {
  const TCreature& Gone = Creature(Id);
  const int Stack = *m_Map.StackOf(Gone.Position, Id);
  m_Map.Remove(Gone.Position, Stack);
  Notify([&](TWorldListener& Listener) { Listener.CreatureDisappeared(Gone, Stack); });
  m_Creatures.erase(Id);
}

void TGameWorld::Walk(std::uint32_t Id, const std::vector<TStep>& Steps) {
  TCreature& Walker = Creature(Id);
  Walker.Path.assign(Steps.begin(), Steps.end());
}

void TGameWorld::Stop(std::uint32_t Id) { Creature(Id).Path.clear(); }

void TGameWorld::Turn(std::uint32_t Id, int Direction) {
  TCreature& Turner = Creature(Id);
  Turner.Direction = Direction;
  const int Stack = *m_Map.StackOf(Turner.Position, Id);
  Notify([&](TWorldListener& Listener) { Listener.CreatureTurned(Turner, Stack); });
}

bool TGameWorld::NextToPlayer(const TCreature& Player, const TPosition& Position) const {
  return Position.Z == Player.Position.Z && Distance(Position, Player.Position) <= 1;
}

bool TGameWorld::Use(std::uint32_t Id, const TPosition& Position, int Type, int Stack) {
  const TPile& Pile = m_Map.Pile(Position);
  if (!NextToPlayer(Creature(Id), Position) || Stack < 0 || Stack >= static_cast<int>(Pile.size())) return false;
  const TItem Item = Pile[static_cast<std::size_t>(Stack)];
  const auto Use = m_Uses.find(Item.Type);
  if (Item.Type != Type || Use == m_Uses.end()) return false;
  // Nothing closes on a creature.
  if (std::any_of(Pile.begin(), Pile.end(), [](const TItem& I) { return I.IsCreature(); })) return false;
  m_Map.Change(Position, Stack, {Use->second, Item.Data});
  Notify([&](TWorldListener& Listener) { Listener.ObjectChanged(Position, Stack); });
  return true;
}

bool TGameWorld::MoveObject(std::uint32_t Id, const TPosition& From, int Type, int Stack, const TPosition& To,
                            int Count) {
  const TCreature& Player = Creature(Id);
  const TPile& Source = m_Map.Pile(From);
  if (!NextToPlayer(Player, From) || Stack < 0 || Stack >= static_cast<int>(Source.size())) return false;
  const TItem Item = Source[static_cast<std::size_t>(Stack)];
  const TPile& Target = m_Map.Pile(To);
  const bool Fits = To.Z == Player.Position.Z && Distance(To, Player.Position) <= 7 && !Target.empty() &&
                    m_Map.ItemHas(Target.front(), BANK) && !m_Map.AnyHas(To, UNPASSABLE) &&
                    static_cast<int>(Target.size()) < ITEMS_PER_FIELD;
  if (Item.Type != Type || Item.IsCreature() || m_Map.ItemHas(Item, UNMOVABLE) || !Fits || From == To) return false;
  const bool Part = m_Map.ItemHas(Item, CUMULATIVE) && Count > 0 && Count < static_cast<int>(Item.Data);
  if (Part) {
    m_Map.Change(From, Stack, {Item.Type, Item.Data - static_cast<std::uint32_t>(Count)});
    Notify([&](TWorldListener& Listener) { Listener.ObjectChanged(From, Stack); });
  } else {
    m_Map.Remove(From, Stack);
    Notify([&](TWorldListener& Listener) { Listener.ObjectDeleted(From, Stack); });
  }
  const TItem Moved{Item.Type, Part ? static_cast<std::uint32_t>(Count) : Item.Data};
  const int NewStack = m_Map.Insert(To, Moved);
  Notify([&](TWorldListener& Listener) { Listener.ObjectCreated(To, NewStack); });
  return true;
}

TPosition TGameWorld::Landing(const TPosition& Target, const TStep& Step) const {
  for (const TItem& Item : m_Map.Pile(Target)) {
    if (m_WaysDown.contains(Item.Type) && Target.Z < LOWEST_FLOOR) return {Target.X, Target.Y, Target.Z + 1};
    if (m_WaysUp.contains(Item.Type) && Target.Z > 0)
      return {Target.X + Step.DX, Target.Y + Step.DY, Target.Z - 1};
  }
  return Target;
}

void TGameWorld::TakeStep(TCreature& Walker, std::int64_t Now) {
  const TStep Step = Walker.Path.front();
  Walker.Path.pop_front();
  const TPosition From = Walker.Position;
  const TPosition Target = Beside(From, Step);
  const TPosition To = Landing(Target, Step);
  if (!m_Map.IsWalkable(Target) || (To != Target && !m_Map.IsLandable(To))) {
    Walker.Path.clear();
    Notify([&](TWorldListener& Listener) { Listener.StepRefused(Walker); });
    return;
  }
  const TStepTimes Times =
      StepTimes(SPEED_FORMULA, Walker.Setup.Speed, Types().Object(m_Map.Pile(Target).front().Type).Waypoints,
                Step.Diagonal());
  const int Stack = *m_Map.StackOf(From, Walker.Id);
  m_Map.Remove(From, Stack);
  m_Map.Insert(To, CreatureItem(Walker.Id));
  Walker.Position = To;
  Walker.Direction = FacingOf(Step);
  Walker.NextStepTime = Now + Times.Pause;
  m_StepSink({Walker.Id, From, To, Now + Times.Duration});
  Notify([&](TWorldListener& Listener) { Listener.CreatureMoved(Walker, From, Stack); });
}

void TGameWorld::Wander(TCreature& Monster, std::int64_t Now) {
  const TStep Step = StepOfDirection(static_cast<int>(m_Random() % 4));
  const TPosition Target = Beside(Monster.Position, Step);
  const bool Allowed = m_Map.IsWalkable(Target) && Landing(Target, Step) == Target &&
                       !m_Map.AnyHas(Target, AVOID) && Distance(Target, Monster.Setup.Position) <= Monster.Setup.Range;
  const int Rest = Monster.Setup.RestMs > 0 ? static_cast<int>(m_Random() % (Monster.Setup.RestMs + 1)) : 0;
  if (!Allowed) {
    Monster.NextStepTime = Now + Rest;
    return;
  }
  Monster.Path.assign(1, Step);
  TakeStep(Monster, Now);
  Monster.NextStepTime += Rest;
}

void TGameWorld::Talk(TCreature& Speaker, std::int64_t Now) {
  const std::string& Line = Speaker.Setup.Lines[Speaker.NextLine];
  Speaker.NextLine = (Speaker.NextLine + 1) % Speaker.Setup.Lines.size();
  Speaker.NextTalkTime = Now + Speaker.Setup.TalkIntervalMs;
  const std::uint32_t Statement = m_NextStatement++;
  Notify([&](TWorldListener& Listener) { Listener.CreatureTalked(Speaker, Statement, Line); });
}

void TGameWorld::Tick(std::int64_t Now) {
  for (auto& [Id, Creature] : m_Creatures) {
    if (Now >= Creature.NextStepTime) {
      if (!Creature.Path.empty())
        TakeStep(Creature, Now);
      else if (Creature.Setup.Range > 0)
        Wander(Creature, Now);
    }
    if (!Creature.Setup.Lines.empty() && Now >= Creature.NextTalkTime) Talk(Creature, Now);
  }
}

}  // namespace server
