#pragma once
// The main step's part of the internal queue: it takes messages in order and
// carries out what each one asks for.
#include <functional>

#include "core/MessageQueue.h"

// What the handler needs from the application.
class IMessageHost {
 public:
  virtual ~IMessageHost() = default;
  // False while messages must wait: no window, a mouse capture, an open dialog.
  virtual bool CanTakeMessages() const = 0;
  // Ends the program; with Patch, hands over to the patching program at exit.
  virtual void Terminate(bool Patch) = 0;
};

class CMessageHandler {
 public:
  explicit CMessageHandler(IMessageHost& Host) : m_Host(Host) {}

  // Takes messages until the queue is empty, the host can't take more, or a
  // message ends this step's drain.
  void Drain(CMessageQueue& Queue);
  // The type being handled, 0 between messages: failure reports name it.
  int CurrentType() const { return m_CurrentType; }
  // Sees every message as it is taken, before it is handled.
  void SetObserver(std::function<void(const TMessage&)> Observer) { m_Observer = std::move(Observer); }

 private:
  // False if the message ends the drain.
  bool Handle(CMessageQueue& Queue, TMessage& Message);
  void Postpone(const TMessage& Message);
  void ReplaceDataFile(CMessageQueue& Queue, int Type);

  IMessageHost& m_Host;
  std::function<void(const TMessage&)> m_Observer;
  int m_CurrentType = 0;
  int m_LastHandledType = 0;
};
