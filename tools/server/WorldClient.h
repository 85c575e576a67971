#pragma once
// One player in the world, seen from its connection: it enters the world
// with its client, carries out the client's walking and object commands,
// and turns every change of the world into the messages that this client
// needs, by what its view holds and which creatures it knows.
#include <cstdint>
#include <functional>
#include <string>

#include "tools/server/ClientView.h"
#include "tools/server/GameCommands.h"
#include "tools/server/World.h"
#include "tools/server/WorldMessages.h"

namespace server {

class TWorldClient : public TWorldListener {
 public:
  using TSend = std::function<void(const TMessageWriter&)>;

  // The player enters the world.
  TWorldClient(TGameWorld& World, std::uint32_t PlayerId, const std::string& Name, TSend Send);
  // The player leaves it.
  ~TWorldClient() override;
  TWorldClient(const TWorldClient&) = delete;
  TWorldClient& operator=(const TWorldClient&) = delete;

  // The whole block round the player.
  void WriteMap(TMessageWriter& Writer);
  // What the client has been told of the world so far.
  const TClientView& View() const { return m_View; }
  // Carries out a command of the world; false if it is none.
  bool Execute(const TGameCommand& Command);

  void CreatureAppeared(const TCreature& Creature, int Stack) override;
  void CreatureDisappeared(const TCreature& Creature, int Stack) override;
  void CreatureMoved(const TCreature& Creature, const TPosition& From, int Stack) override;
  void CreatureTurned(const TCreature& Creature, int Stack) override;
  void CreatureTalked(const TCreature& Creature, std::uint32_t Statement, std::string_view Text) override;
  void StepRefused(const TCreature& Creature) override;
  void ObjectCreated(const TPosition& Position, int Stack) override;
  void ObjectChanged(const TPosition& Position, int Stack) override;
  void ObjectDeleted(const TPosition& Position, int Stack) override;

 private:
  void OwnMove(const TPosition& From, int Stack);
  void OtherMove(const TCreature& Creature, const TPosition& From, int Stack);
  template <typename TWrite>
  void SendIf(bool Condition, TWrite&& Write);

  TGameWorld& m_World;
  std::uint32_t m_Id;
  TClientView m_View;
  TWorldMessages m_Messages{m_World, m_View};
  TSend m_Send;
};

}  // namespace server
