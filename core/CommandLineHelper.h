#pragma once
// The program's command line: bare words, some of which take a value.
#include <map>
#include <string>

class CommandLineHelper {
 public:
  // Only the first 1024 bytes of the line are looked at.
  void Parse(const std::string& CommandLine);
  bool HasOption(const std::string& Name) const;
  // Fails with "Parameter Key is invalid" for an empty or unknown name.
  const std::string& GetValue(const std::string& Name) const;

 private:
  std::map<std::string, std::string> m_Options;
};
