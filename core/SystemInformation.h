#pragma once
// A one-time survey of the machine: a block of 47 bytes for the login server's
// statistics, and readable names for failure reports. It does not influence
// the game.
#include <cstdint>
#include <string>
#include <string_view>

// What Gather reads from the machine, in the order in which it asks. An empty
// text or a zero stands for a query that failed.
struct TSystemSources {
  std::string OperatingSystemName;       // kernel name and release
  std::string Locale;                    // such as "de_DE.UTF-8"
  std::uint64_t MemoryBytes = 0;         // physical memory
  std::string ProcessorVendor;           // CPUID vendor text
  std::uint32_t ProcessorSignature = 0;  // CPUID leaf 1: stepping, model, family bits
  std::string ProcessorName;             // CPUID brand text
  std::string CpuInfo;                   // the text of /proc/cpuinfo
  std::uint32_t MeasuredMHz = 0;
};

// The states that open the operating system enumeration. The Windows rows
// that follow them are never produced by this build, which reports "Unknown".
enum EOperatingSystem : std::uint8_t {
  OS_UNAQUIRED = 0,
  OS_ERROR = 1,
  OS_UNKNOWN = 2,
};

class TSystemInformation {
 public:
  static constexpr int BLOCK_SIZE = 47;

  void Gather();
  void Gather(const TSystemSources& Sources);
  // Set by the graphics layer once it knows the renderer and the display mode.
  void SetVideoCard(std::string_view Name, std::uint16_t MemoryMB);
  void SetScreen(std::uint16_t Width, std::uint16_t Height, std::uint8_t BitsPerPixel);

  // Writes the BLOCK_SIZE bytes of the block, numbers little-endian.
  void WriteBlock(std::uint8_t* ByteArray) const;

  const std::string& GetOperatingSystemName() const { return m_OperatingSystemName; }
  const std::string& GetProcessorName() const { return m_ProcessorName; }
  const std::string& GetVideoCardName() const { return m_VideoCardName; }

  // The fields of the block, in its order. ProcessorType and VideoType hold one
  // bit per word of their name table that the device's name contains.
  std::uint8_t OperatingSystem = OS_UNAQUIRED;
  std::string Country;  // three letters; a shorter one is padded with zeros
  std::uint16_t MemoryMB = 0;
  std::uint8_t ProcessorVendor = 0;
  std::uint8_t ProcessorFamily = 0;
  std::uint32_t ProcessorType = 0;
  std::string ProcessorModel;  // the first 8 characters are sent
  int Packages = 0;            // the counts are sent in four bits each
  int Cores = 0;
  int LogicalProcessors = 0;
  int ThreadsPerCore = 0;
  std::uint16_t ProcessorMHzNominal = 0;
  std::uint16_t ProcessorMHzMeasured = 0;
  std::uint32_t VideoType = 0;
  std::string VideoModel;
  std::uint16_t VideoMemoryMB = 0;
  std::uint16_t ScreenWidth = 0;
  std::uint16_t ScreenHeight = 0;
  std::uint8_t ScreenBitsPerPixel = 0;

 private:
  std::string m_OperatingSystemName = "Unknown";
  std::string m_ProcessorName = "Unknown";
  std::string m_VideoCardName = "Unknown";
};

// The program's survey of the machine, gathered at its first use.
TSystemInformation& SystemInformation();
