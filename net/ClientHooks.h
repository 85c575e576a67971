#pragma once
// What the connection asks of the layers above it: the window's title, the
// switch between title screen and game view, the open dialog, the saved
// configuration. The application fills these in at start; an empty one does
// nothing (and the view queries answer as for a title screen without dialogs).
#include <cstdint>
#include <functional>
#include <string>

struct TClientHooks {
  // The character's name, or empty for the plain title.
  std::function<void(const std::string& CharacterName)> SetTitle;
  std::function<void()> RedrawNow;
  std::function<bool()> IsGameView;
  std::function<void(std::uint32_t OwnCreatureId)> EnterGameView;
  std::function<void()> LeaveGameView;
  std::function<bool()> HasModalWindow;
  // Closes the open dialog; the main window is active again.
  std::function<void()> CloseModalWindow;
  std::function<void()> SaveConfiguration;
  // Sends the player's combat tactics on entering the world.
  std::function<void()> SendTactics;
  // Brings the open container and trade windows up to date.
  std::function<void()> UpdateSideBars;
};

TClientHooks& ClientHooks();
