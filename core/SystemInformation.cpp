#include "core/SystemInformation.h"

#include <sys/sysinfo.h>
#include <sys/utsname.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <set>
#include <span>
#include <sstream>
#include <thread>
#include <utility>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#include <x86intrin.h>
#define KELMO_X86 1
#endif

#include "core/Exception.h"

namespace {

// The words of the two name tables, in their order. Each table goes on with
// the rows "Error" and "Undefined"; only "Undefined" (a name that holds none of
// the words) is used, since a name that cannot be read leaves its field at 0.
constexpr std::array<std::string_view, 27> PROCESSOR_WORDS = {
    "Mobile",   "Dual Core", "Quad Core", "Intel",   "Pentium",   "Extreme Edition",
    "Celeron",  "Atom",      "Xeon",      "Itanium", "Core 2",    "Core i7",
    "Core i5",  "Alchemy",   "Geode",     "Duron",   "Athlon",    "Sempron",
    "Phenom",   "Turion",    "Opteron",   "Fusion",  "Transmeta", "Crusoe",
    "Efficeon", "Cyrix",     "Eden"};
constexpr std::array<std::string_view, 28> VIDEO_WORDS = {
    "Mobility", "3D Rage",     "Rage",       "Radeon HD", "Radeon",           "NVIDIA",
    "Riva",     "GeForce GTX", "GeForce FX", "GeForce4",  "GeForce3",         "GeForce2",
    "GeForce",  "Quadro",      "Mobile",     "Intel",     "Extreme Graphics", "Matrox",
    "Marvel",   "Millennium",  "Parhelia",   "Voodoo",    "Velocity",         "Virge",
    "Savage",   "Chrome",      "Xabre",      "Volari"};

struct TVendor {
  std::string_view Text;
  std::uint8_t Value;
};

// CPUID vendor texts; texts of the same maker share a value.
constexpr std::array<TVendor, 16> PROCESSOR_VENDORS = {{
    {"GenuineIntel", 1},
    {"AuthenticAMD", 2},
    {"AMDisbetter!", 2},
    {"CyrixInstead", 3},
    {"CentaurHauls", 4},
    {"VIA VIA VIA ", 4},
    {"GenuineTMx86", 5},
    {"TransmetaCPU", 5},
    {"Geode by NSC", 6},
    {"NexGenDriven", 7},
    {"RiseRiseRise", 8},
    {"SiS SiS SiS ", 9},
    {"UMC UMC UMC ", 10},
    {"Vortex86 SoC", 11},
    {"HygonGenuine", 12},
    {"  Shanghai  ", 13},
}};

// Two-letter territories of locale names and their three-letter ISO 3166 codes.
constexpr std::array<std::pair<std::string_view, std::string_view>, 86> COUNTRIES = {{
    {"AE", "ARE"}, {"AR", "ARG"}, {"AT", "AUT"}, {"AU", "AUS"}, {"BA", "BIH"}, {"BE", "BEL"},
    {"BG", "BGR"}, {"BO", "BOL"}, {"BR", "BRA"}, {"BY", "BLR"}, {"CA", "CAN"}, {"CH", "CHE"},
    {"CL", "CHL"}, {"CN", "CHN"}, {"CO", "COL"}, {"CR", "CRI"}, {"CY", "CYP"}, {"CZ", "CZE"},
    {"DE", "DEU"}, {"DK", "DNK"}, {"DO", "DOM"}, {"DZ", "DZA"}, {"EC", "ECU"}, {"EE", "EST"},
    {"EG", "EGY"}, {"ES", "ESP"}, {"FI", "FIN"}, {"FR", "FRA"}, {"GB", "GBR"}, {"GR", "GRC"},
    {"GT", "GTM"}, {"HK", "HKG"}, {"HR", "HRV"}, {"HU", "HUN"}, {"ID", "IDN"}, {"IE", "IRL"},
    {"IL", "ISR"}, {"IN", "IND"}, {"IQ", "IRQ"}, {"IR", "IRN"}, {"IS", "ISL"}, {"IT", "ITA"},
    {"JP", "JPN"}, {"KE", "KEN"}, {"KR", "KOR"}, {"KZ", "KAZ"}, {"LT", "LTU"}, {"LU", "LUX"},
    {"LV", "LVA"}, {"MA", "MAR"}, {"MD", "MDA"}, {"ME", "MNE"}, {"MK", "MKD"}, {"MT", "MLT"},
    {"MX", "MEX"}, {"MY", "MYS"}, {"NG", "NGA"}, {"NL", "NLD"}, {"NO", "NOR"}, {"NZ", "NZL"},
    {"PA", "PAN"}, {"PE", "PER"}, {"PH", "PHL"}, {"PK", "PAK"}, {"PL", "POL"}, {"PR", "PRI"},
    {"PT", "PRT"}, {"PY", "PRY"}, {"RO", "ROU"}, {"RS", "SRB"}, {"RU", "RUS"}, {"SA", "SAU"},
    {"SE", "SWE"}, {"SG", "SGP"}, {"SI", "SVN"}, {"SK", "SVK"}, {"TH", "THA"}, {"TN", "TUN"},
    {"TR", "TUR"}, {"TW", "TWN"}, {"UA", "UKR"}, {"US", "USA"}, {"UY", "URY"}, {"VE", "VEN"},
    {"VN", "VNM"}, {"ZA", "ZAF"},
}};

const char* const BLOCK_SIZE_TEXT = "position in byte array not matching to byte array size";
constexpr int MODEL_FIELD_SIZE = 9;
constexpr int MODEL_LENGTH = 8;
constexpr int COUNT_LIMIT = 15;  // four bits

std::string Lower(std::string_view Text) {
  std::string Result(Text);
  for (char& Character : Result)
    Character = static_cast<char>(std::tolower(static_cast<unsigned char>(Character)));
  return Result;
}

std::string_view Trim(std::string_view Text) {
  const auto First = Text.find_first_not_of(" \t");
  if (First == std::string_view::npos) return {};
  return Text.substr(First, Text.find_last_not_of(" \t") - First + 1);
}

std::string CollapseSpaces(std::string_view Text) {
  std::istringstream Words{std::string(Text)};
  std::string Word;
  std::string Result;
  while (Words >> Word) Result += (Result.empty() ? "" : " ") + Word;
  return Result;
}

bool IsLetter(char Character) { return std::isalpha(static_cast<unsigned char>(Character)) != 0; }

// A device name for matching: bracketed notes such as "(R)", "(TM)" or
// "(KBL GT2)" become spaces, and what follows '@' or '/' (a clock rate, a bus)
// is dropped.
std::string PlainName(std::string_view Name) {
  std::string Result;
  int Depth = 0;
  for (const char Character : Name) {
    if (Character == '@' || Character == '/') break;
    if (Character == '(') ++Depth;
    if (Depth == 0) Result += Character;
    if (Character == '(') Result += ' ';
    if (Character == ')' && Depth > 0) --Depth;
  }
  return CollapseSpaces(Result);
}

// Blanks out every occurrence of the lower-case Word in the lower-case Text that
// has no letter directly before or after it; true if there was one.
bool EraseWord(std::string& Text, std::string_view Word) {
  bool Found = false;
  for (auto At = Text.find(Word); At != std::string::npos; At = Text.find(Word, At + 1)) {
    const std::size_t End = At + Word.size();
    if ((At > 0 && IsLetter(Text[At - 1])) || (End < Text.size() && IsLetter(Text[End]))) continue;
    std::fill_n(Text.begin() + static_cast<std::ptrdiff_t>(At), Word.size(), ' ');
    Found = true;
  }
  return Found;
}

// Bit I stands for word I of the table. The words are looked for in the
// table's order, and a word found is blanked out, so that "Radeon HD" does not
// count as "Radeon" as well. A name without any of them gets the bit of the
// "Undefined" row, which follows "Error" after the words.
std::uint32_t PackNameWords(std::string_view Name, std::span<const std::string_view> Words) {
  if (Name.empty()) return 0;
  std::string Text = Lower(PlainName(Name));
  std::uint32_t Packed = 0;
  for (std::size_t I = 0; I < Words.size(); ++I) {
    if (EraseWord(Text, Lower(Words[I]))) Packed |= std::uint32_t{1} << I;
  }
  return Packed != 0 ? Packed : std::uint32_t{1} << (Words.size() + 1);
}

// The model number of a device name: the longest word with a digit in it (of
// equals the later), leaving out clock rates and core counts ("8-Core").
std::string ModelOfName(std::string_view Name) {
  std::istringstream Words(PlainName(Name));
  std::string Word;
  std::string Model;
  while (Words >> Word) {
    const std::string Lowered = Lower(Word);
    const bool HasDigit =
        std::any_of(Word.begin(), Word.end(), [](char C) { return C >= '0' && C <= '9'; });
    if (!HasDigit || Lowered.ends_with("hz") || Lowered.ends_with("-core")) continue;
    if (Word.size() >= Model.size()) Model = Word;
  }
  return Model;
}

// The name with the word "Corporation" dropped, in any case.
std::string WithoutCorporation(std::string_view Name) {
  std::string Lowered = Lower(Name);
  EraseWord(Lowered, "corporation");
  std::string Kept(Name);
  for (std::size_t I = 0; I < Kept.size(); ++I) {
    if (Lowered[I] == ' ') Kept[I] = ' ';
  }
  return CollapseSpaces(Kept);
}

// "de_DE.UTF-8@euro": the territory stands between '_' and '.' or '@'.
std::string CountryOfLocale(std::string_view Locale) {
  const auto Underscore = Locale.find('_');
  if (Underscore == std::string_view::npos) return {};
  const std::string_view Rest = Locale.substr(Underscore + 1);
  std::string Territory(Rest.substr(0, Rest.find_first_of(".@")));
  for (char& Character : Territory)
    Character = static_cast<char>(std::toupper(static_cast<unsigned char>(Character)));
  const auto Found = std::find_if(COUNTRIES.begin(), COUNTRIES.end(),
                                  [&](const auto& Entry) { return Entry.first == Territory; });
  return Found == COUNTRIES.end() ? std::string() : std::string(Found->second);
}

std::uint8_t VendorOfText(std::string_view Text) {
  const auto Found = std::find_if(PROCESSOR_VENDORS.begin(), PROCESSOR_VENDORS.end(),
                                  [&](const TVendor& Vendor) { return Vendor.Text == Text; });
  return Found == PROCESSOR_VENDORS.end() ? 0 : Found->Value;
}

// The family of a CPUID signature, with the extended family bits counted in
// from base family 15 on.
std::uint8_t FamilyOfSignature(std::uint32_t Signature) {
  const std::uint32_t Base = Signature >> 8 & 0xF;
  const std::uint32_t Family = Base == 0xF ? Base + (Signature >> 20 & 0xFF) : Base;
  return static_cast<std::uint8_t>(std::min<std::uint32_t>(Family, 0xFF));
}

struct TCpuInfo {
  std::string ModelName;  // of the first processor
  double MHz = 0;         // likewise
  int Packages = 0;
  int Cores = 0;
  int LogicalProcessors = 0;
};

// Reads the "key : value" lines of /proc/cpuinfo. Packages are counted by
// their "physical id", cores by "physical id" and "core id" together.
TCpuInfo ParseCpuInfo(std::string_view Text) {
  TCpuInfo Info;
  std::set<std::string> PackageIds;
  std::set<std::pair<std::string, std::string>> CoreIds;
  std::string PackageId;
  std::istringstream Lines{std::string(Text)};
  for (std::string Line; std::getline(Lines, Line);) {
    const auto Colon = Line.find(':');
    if (Colon == std::string::npos) continue;
    const std::string_view Key = Trim(std::string_view(Line).substr(0, Colon));
    const std::string_view Value = Trim(std::string_view(Line).substr(Colon + 1));
    if (Key == "processor") ++Info.LogicalProcessors;
    if (Key == "physical id") PackageIds.insert(PackageId = std::string(Value));
    if (Key == "core id") CoreIds.emplace(PackageId, Value);
    if (Key == "model name" && Info.ModelName.empty()) Info.ModelName = Value;
    if (Key == "cpu MHz" && Info.MHz == 0)
      std::from_chars(Value.data(), Value.data() + Value.size(), Info.MHz);
  }
  Info.Packages = static_cast<int>(PackageIds.size());
  Info.Cores = static_cast<int>(CoreIds.size());
  return Info;
}

std::uint16_t ClampToU16(double Value) {
  return static_cast<std::uint16_t>(std::clamp(std::lround(Value), 0L, 0xFFFFL));
}

// Counts the bytes it writes; one too many, or too few at the end, is a fault
// of the block's layout.
class TBlockWriter {
 public:
  explicit TBlockWriter(std::uint8_t* Bytes) : m_Bytes(Bytes) {}

  void Number(std::uint64_t Value, int Width) {
    for (int I = 0; I < Width; ++I) Byte(static_cast<std::uint8_t>(Value >> (8 * I)));
  }
  // The text cut to Length characters, then zeros up to Width bytes.
  void Text(std::string_view Text, int Length, int Width) {
    const std::string_view Cut = Text.substr(0, static_cast<std::size_t>(Length));
    for (int I = 0; I < Width; ++I) {
      Byte(I < static_cast<int>(Cut.size()) ? static_cast<std::uint8_t>(Cut[I]) : 0);
    }
  }
  void Finish() const {
    Check(m_Position == TSystemInformation::BLOCK_SIZE, BLOCK_SIZE_TEXT, {"Position", m_Position},
          {"Size", TSystemInformation::BLOCK_SIZE});
  }

 private:
  void Byte(std::uint8_t Value) {
    Check(m_Position < TSystemInformation::BLOCK_SIZE, BLOCK_SIZE_TEXT, {"Position", m_Position},
          {"Size", TSystemInformation::BLOCK_SIZE});
    m_Bytes[m_Position++] = Value;
  }

  std::uint8_t* m_Bytes;
  int m_Position = 0;
};

// Two counts in the high and low four bits of one byte.
std::uint8_t PackCounts(int High, int Low) {
  return static_cast<std::uint8_t>(std::clamp(High, 0, COUNT_LIMIT) << 4 |
                                   std::clamp(Low, 0, COUNT_LIMIT));
}

// ---- Reading the machine

std::string ReadFile(const char* Path) {
  std::ifstream File(Path);
  std::ostringstream Text;
  Text << File.rdbuf();
  return Text.str();
}

std::string KernelName() {
  utsname Name{};
  if (uname(&Name) != 0) return {};
  return std::string(Name.sysname) + " " + Name.release;
}

std::string LocaleName() {
  for (const char* Variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* Value = std::getenv(Variable);
    if (Value != nullptr && *Value != '\0') return Value;
  }
  return {};
}

// sysinfo, else the total of /proc/meminfo.
std::uint64_t PhysicalMemory() {
  struct sysinfo Info {};
  if (sysinfo(&Info) == 0 && Info.totalram != 0)
    return std::uint64_t{Info.totalram} * Info.mem_unit;
  std::istringstream Lines(ReadFile("/proc/meminfo"));
  for (std::string Key; Lines >> Key;) {
    std::uint64_t Kilobytes = 0;
    if (Key == "MemTotal:" && Lines >> Kilobytes) return Kilobytes * 1024;
  }
  return 0;
}

#ifdef KELMO_X86
void ReadProcessorIdentity(TSystemSources& Sources) {
  std::array<unsigned, 4> R{};
  if (__get_cpuid(0, &R[0], &R[1], &R[2], &R[3]) == 0) return;
  for (const unsigned Word : {R[1], R[3], R[2]})
    Sources.ProcessorVendor.append(reinterpret_cast<const char*>(&Word), 4);
  if (__get_cpuid(1, &R[0], &R[1], &R[2], &R[3]) != 0) Sources.ProcessorSignature = R[0];
  if (__get_cpuid_max(0x80000000, nullptr) < 0x80000004) return;
  std::string Brand;
  for (unsigned Leaf = 0x80000002; Leaf <= 0x80000004; ++Leaf) {
    __get_cpuid(Leaf, &R[0], &R[1], &R[2], &R[3]);
    Brand.append(reinterpret_cast<const char*>(R.data()), sizeof(R));
  }
  Sources.ProcessorName = Trim(Brand.c_str());
}

// Time-stamp counter ticks per microsecond over a short wait.
std::uint32_t MeasureProcessorMHz() {
  const auto Start = std::chrono::steady_clock::now();
  const std::uint64_t StartTicks = __rdtsc();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  const std::uint64_t Ticks = __rdtsc() - StartTicks;
  const auto Nanoseconds =
      std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now() - Start)
          .count();
  if (Nanoseconds <= 0) return 0;
  return static_cast<std::uint32_t>(Ticks * 1000 / static_cast<std::uint64_t>(Nanoseconds));
}
#else
void ReadProcessorIdentity(TSystemSources&) {}
std::uint32_t MeasureProcessorMHz() { return 0; }
#endif

TSystemSources ReadSystemSources() {
  TSystemSources Sources;
  Sources.OperatingSystemName = KernelName();
  Sources.Locale = LocaleName();
  Sources.MemoryBytes = PhysicalMemory();
  ReadProcessorIdentity(Sources);
  Sources.CpuInfo = ReadFile("/proc/cpuinfo");
  Sources.MeasuredMHz = MeasureProcessorMHz();
  return Sources;
}

}  // namespace

void TSystemInformation::Gather() { Gather(ReadSystemSources()); }

void TSystemInformation::Gather(const TSystemSources& Sources) {
  OperatingSystem = OS_UNKNOWN;
  m_OperatingSystemName =
      Sources.OperatingSystemName.empty() ? "Unknown" : Sources.OperatingSystemName;
  Country = CountryOfLocale(Sources.Locale);
  MemoryMB = static_cast<std::uint16_t>(std::min<std::uint64_t>(Sources.MemoryBytes >> 20, 0xFFFF));
  const TCpuInfo CpuInfo = ParseCpuInfo(Sources.CpuInfo);
  ProcessorVendor = VendorOfText(Sources.ProcessorVendor);
  ProcessorFamily = FamilyOfSignature(Sources.ProcessorSignature);
  const std::string& Name =
      Sources.ProcessorName.empty() ? CpuInfo.ModelName : Sources.ProcessorName;
  m_ProcessorName = Name.empty() ? "Unknown" : Name;
  ProcessorType = PackNameWords(Name, PROCESSOR_WORDS);
  ProcessorModel = ModelOfName(Name);
  Packages = CpuInfo.Packages;
  Cores = CpuInfo.Cores;
  LogicalProcessors = CpuInfo.LogicalProcessors;
  ThreadsPerCore = Cores > 0 ? LogicalProcessors / Cores : 0;
  ProcessorMHzNominal = ClampToU16(CpuInfo.MHz);
  ProcessorMHzMeasured = ClampToU16(Sources.MeasuredMHz);
}

void TSystemInformation::SetVideoCard(std::string_view Name, std::uint16_t MemoryMB) {
  const std::string Cleaned = WithoutCorporation(Name);
  m_VideoCardName = Cleaned.empty() ? "Unknown" : Cleaned;
  VideoType = PackNameWords(Cleaned, VIDEO_WORDS);
  VideoModel = ModelOfName(Cleaned);
  VideoMemoryMB = MemoryMB;
}

void TSystemInformation::SetScreen(std::uint16_t Width, std::uint16_t Height,
                                   std::uint8_t BitsPerPixel) {
  ScreenWidth = Width;
  ScreenHeight = Height;
  ScreenBitsPerPixel = BitsPerPixel;
}

void TSystemInformation::WriteBlock(std::uint8_t* ByteArray) const try {
  Check(ByteArray != nullptr, "ByteArray != NULL");
  TBlockWriter Writer(ByteArray);
  Writer.Number(OperatingSystem, 1);
  Writer.Text(Country, 3, 3);
  Writer.Number(MemoryMB, 2);
  Writer.Number(ProcessorVendor, 1);
  Writer.Number(ProcessorFamily, 1);
  Writer.Number(ProcessorType, 4);
  Writer.Text(ProcessorModel, MODEL_LENGTH, MODEL_FIELD_SIZE);
  Writer.Number(PackCounts(Packages, Cores), 1);
  Writer.Number(PackCounts(LogicalProcessors, ThreadsPerCore), 1);
  Writer.Number(ProcessorMHzNominal, 2);
  Writer.Number(ProcessorMHzMeasured, 2);
  Writer.Number(VideoType, 4);
  Writer.Text(VideoModel, MODEL_LENGTH, MODEL_FIELD_SIZE);
  Writer.Number(VideoMemoryMB, 2);
  Writer.Number(ScreenWidth, 2);
  Writer.Number(ScreenHeight, 2);
  Writer.Number(ScreenBitsPerPixel, 1);
  Writer.Finish();
} catch (...) {
  RethrowGuarded("failed to write to byte array");
}

TSystemInformation& SystemInformation() {
  static TSystemInformation Survey = [] {
    TSystemInformation Gathered;
    Gathered.Gather();
    return Gathered;
  }();
  return Survey;
}
