#pragma once
// The program's two kinds of failure. Every broken check throws TMyException;
// PROGRAM_ERROR is thrown by value for the numbered start-up and platform
// failures. Guards rethrow a TMyException wrapped with their own place, so a
// report reads as a chain from the fault to the main loop.

#include <exception>
#include <source_location>
#include <string>
#include <vector>

enum class PROGRAM_ERROR : int {
  DAT_NOT_FOUND = 1,
  SPR_NOT_FOUND = 2,
  PIC_NOT_FOUND = 3,
  DAT_NOT_OPENED = 4,
  SPR_NOT_OPENED = 5,
  PIC_NOT_OPENED = 6,
  SOCKETS_NOT_INITIALIZED = 7,
  DIRECTX_NOT_INITIALIZED = 8,
  COLOR_DEPTH_TOO_LOW = 9,
  VIDEO_MODE_FAILED = 10,  // 10 to 12
  SURFACE_ALLOCATION_FAILED = 13,  // 13 to 19
  NO_APPLICATION_DIRECTORY = 20,
  NO_TEMPORARY_DIRECTORY = 21,
  NO_USER_DIRECTORY = 22,
  USER_FOLDER_NOT_CREATED = 23,
  PATCH_NOT_FOUND = 24,
  PATCH_NOT_EXECUTED = 25,
  PATCH_NOT_RENAMED = 26,
  ERROR_DISPLAY_NOT_RENAMED = 27,
  APPLICATION_CORRUPTED = 28,
  ALREADY_RUNNING = 29,
  NO_X_DISPLAY = 30,
  NO_OPENGL_EXTENSION = 31,
  NO_TRUECOLOR = 32,
  NO_OPENGL_CONTEXT = 33,
  SEGMENTATION_FAULT = 34,
  BUS_ERROR = 35,
  SURFACE_LOST = 36,
};

// One "name: value" pair of an assertion report, formatted only on failure.
struct TCheckValue {
  const char* Name;
  long long Value;
};

struct TNamedValue {
  std::string Name;
  std::string Value;
};

class TMyException : public std::exception {
 public:
  // Up to two named values; Reason is the text of a wrapped exception.
  TMyException(const std::source_location& Where, std::string Text,
               std::vector<TNamedValue> Values = {}, std::string Reason = {});

  const char* what() const noexcept override { return m_What.c_str(); }
  const std::string& File() const { return m_File; }
  int Line() const { return m_Line; }
  const std::string& Text() const { return m_Text; }
  const std::vector<TNamedValue>& Values() const { return m_Values; }
  const std::string& Reason() const { return m_Reason; }

 private:
  std::string m_File;
  int m_Line;
  std::string m_Text;
  std::vector<TNamedValue> m_Values;
  std::string m_Reason;
  std::string m_What;
};

[[noreturn]] void ThrowException(std::string Text, std::vector<TNamedValue> Values = {},
                                 std::source_location Where = std::source_location::current());
[[noreturn]] void ThrowCheck(const char* Text, std::initializer_list<TCheckValue> Values,
                             std::source_location Where);

// Check(Position <= Size - 1, "Position<=Size-1", {"Position", Position}, {"Size", Size})
// throws TMyException with the text as written and the values.
inline void Check(bool Ok, const char* Text,
                  std::source_location Where = std::source_location::current()) {
  if (!Ok) [[unlikely]] ThrowCheck(Text, {}, Where);
}
inline void Check(bool Ok, const char* Text, TCheckValue V1,
                  std::source_location Where = std::source_location::current()) {
  if (!Ok) [[unlikely]] ThrowCheck(Text, {V1}, Where);
}
inline void Check(bool Ok, const char* Text, TCheckValue V1, TCheckValue V2,
                  std::source_location Where = std::source_location::current()) {
  if (!Ok) [[unlikely]] ThrowCheck(Text, {V1, V2}, Where);
}

// For use in a catch (...) block: a PROGRAM_ERROR passes unchanged, a
// TMyException is wrapped as "exception occurred", a standard exception as
// "standard exception occurred", each with this place and the old text as reason.
[[noreturn]] void RethrowGuarded(std::source_location Where = std::source_location::current());
// The same with a text of the guard's own instead of "exception occurred".
[[noreturn]] void RethrowGuarded(std::string Text,
                                 std::source_location Where = std::source_location::current());
