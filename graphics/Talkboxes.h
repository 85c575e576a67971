#pragma once
// The talkboxes: up to ten texts drawn over the map, each tied to a field or
// to the screen, with a lifetime, and the one-line status message under the
// map. Only what the map needs to show speech; the console and its buffers
// are the chat's.
#include <string>

#include "graphics/Surface.h"

constexpr int TALKBOXES = 10;
constexpr int TALKBOX_LINES = 10;
constexpr int TALKBOX_LINE_LENGTH = 40;
constexpr int STATUSMESSAGE_LENGTH = 512;

enum : int {
  TALK_SAY = 1,
  TALK_WHISPER = 2,
  TALK_YELL = 3,
  TALK_FROM_NPC = 6,
  TALK_PRIVATE_MESSAGE = 7,
  TALK_GAMEMASTER_BROADCAST = 10,
  TALK_GAMEMASTER_MESSAGE = 12,
  TALK_ANIMAL_LOW = 14,
  TALK_ANIMAL_LOUD = 15,
  TALK_ADMIN_MESSAGE = 16,
  TALK_EVENT_MESSAGE = 17,
  TALK_INFO_MESSAGE = 20,
};

// Where the map placed a box: x is the box's centre line, Top its first
// line; Flags bit 0 and 1 keep it from following the player's step.
struct TTalkboxBounds {
  int x = 0;
  int Top = 0;
  int Alignment = 0;
  int Flags = 0;
  bool operator==(const TTalkboxBounds&) const = default;
};

// Returns the slot, or -1 if no box was made.
int SetTalkbox(int Mode, const std::string& Speaker, int X, int Y, int Z, const std::string& Text);
void SetCentreTalkbox(int Mode, const std::string& Text);
void ClearTalkbox(int Position);
void ClearTalkboxes();
// Each beat: the time since the last call is taken from every box.
void ProcessTalkboxes();

// Number runs from 1 to GetNumberOfTalkboxes() over the shown boxes.
int GetNumberOfTalkboxes();
int GetTalkboxMode(int Number);
void GetTalkboxPosition(int Number, int& X, int& Y, int& Z);
TRGBColor GetTalkboxColour(int Number);
int GetTalkboxLines(int Number);
const char* GetTalkboxLine(int Number, int Line);
TTalkboxBounds GetTalkboxBounds(int Number);
void SetTalkboxBounds(int Number, const TTalkboxBounds& Bounds);

// Talkboxes or status line changed since the map's last layout.
bool TalkboxesChanged();
void SetTalkboxesChanged(bool Changed);

// An empty text clears the status line; it lives 50 beats.
void SetStatusMessage(const std::string& Text);
const std::string& GetStatusMessage();
void ProcessStatusMessage();

// The talk modes of the wire's chat modes that make a talkbox; 0 for the rest.
int TalkboxModeOfChatMode(int ChatMessageMode);
