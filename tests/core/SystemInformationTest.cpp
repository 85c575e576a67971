#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>

#include "core/Exception.h"
#include "core/SystemInformation.h"

namespace {

using TBlock = std::array<std::uint8_t, TSystemInformation::BLOCK_SIZE>;

// Bits of the processor name table: word index, and "Undefined" after "Error".
constexpr std::uint32_t CPU_INTEL = 1u << 3;
constexpr std::uint32_t CPU_XEON = 1u << 8;
constexpr std::uint32_t CPU_CORE_2 = 1u << 10;
constexpr std::uint32_t CPU_CORE_I7 = 1u << 11;
constexpr std::uint32_t CPU_DUAL_CORE = 1u << 1;
constexpr std::uint32_t CPU_ATHLON = 1u << 16;
constexpr std::uint32_t CPU_UNDEFINED = 1u << 28;
// Bits of the video name table.
constexpr std::uint32_t VIDEO_RADEON_HD = 1u << 3;
constexpr std::uint32_t VIDEO_NVIDIA = 1u << 5;
constexpr std::uint32_t VIDEO_GEFORCE_GTX = 1u << 7;
constexpr std::uint32_t VIDEO_INTEL = 1u << 15;
constexpr std::uint32_t VIDEO_UNDEFINED = 1u << 29;

const char* const TWO_PACKAGES_CPUINFO =
    "processor\t: 0\nvendor_id\t: GenuineIntel\nmodel name\t: Intel(R) Xeon(R) CPU E5-2680 v4 @ "
    "2.40GHz\n"
    "cpu MHz\t\t: 2399.6\nphysical id\t: 0\ncore id\t\t: 0\n\n"
    "processor\t: 1\nmodel name\t: Intel(R) Xeon(R) CPU E5-2680 v4 @ 2.40GHz\ncpu MHz\t\t: 1200.0\n"
    "physical id\t: 0\ncore id\t\t: 0\n\n"
    "processor\t: 2\nphysical id\t: 0\ncore id\t\t: 1\n\n"
    "processor\t: 3\nphysical id\t: 0\ncore id\t\t: 1\n\n"
    "processor\t: 4\nphysical id\t: 1\ncore id\t\t: 0\n\n"
    "processor\t: 5\nphysical id\t: 1\ncore id\t\t: 0\n\n"
    "processor\t: 6\nphysical id\t: 1\ncore id\t\t: 1\n\n"
    "processor\t: 7\nphysical id\t: 1\ncore id\t\t: 1\n";

TBlock Written(const TSystemInformation& Information) {
  TBlock Block{};
  Information.WriteBlock(Block.data());
  return Block;
}

TSystemInformation Gathered(const TSystemSources& Sources) {
  TSystemInformation Information;
  Information.Gather(Sources);
  return Information;
}

TEST(SystemInformation, BlockHas47BytesAndLeavesTheRestAlone) {
  std::array<std::uint8_t, 64> Memory;
  Memory.fill(0xAA);
  TSystemInformation().WriteBlock(Memory.data());
  for (int I = 0; I < 47; ++I) EXPECT_EQ(Memory[I], 0) << I;
  for (int I = 47; I < 64; ++I) EXPECT_EQ(Memory[I], 0xAA) << I;
}

TEST(SystemInformation, FieldsLandAtTheirOffsets) {
  TSystemInformation Information;
  Information.OperatingSystem = OS_UNKNOWN;
  Information.Country = "DEU";
  Information.MemoryMB = 0x1234;
  Information.ProcessorVendor = 1;
  Information.ProcessorFamily = 6;
  Information.ProcessorType = 0x89ABCDEF;
  Information.ProcessorModel = "i7-8550U-extra";
  Information.Packages = 2;
  Information.Cores = 8;
  Information.LogicalProcessors = 16;  // four bits: 15
  Information.ThreadsPerCore = 2;
  Information.ProcessorMHzNominal = 2400;
  Information.ProcessorMHzMeasured = 0x0102;
  Information.VideoType = 0x00200080;
  Information.VideoModel = "1080";
  Information.VideoMemoryMB = 8192;
  Information.ScreenWidth = 1920;
  Information.ScreenHeight = 1080;
  Information.ScreenBitsPerPixel = 32;
  const TBlock Expected = {
      2,                                              // operating system
      'D',  'E',  'U',                                // country
      0x34, 0x12,                                     // memory
      1,    6,                                        // vendor, family
      0xEF, 0xCD, 0xAB, 0x89,                         // processor type
      'i',  '7',  '-',  '8',  '5', '5', '0', 'U', 0,  // processor model
      0x28, 0xF2,                                     // packages and cores, logical and threads
      0x60, 0x09, 0x02, 0x01,                         // nominal and measured MHz
      0x80, 0x00, 0x20, 0x00,                         // video type
      '1',  '0',  '8',  '0',  0,   0,   0,   0,   0,  // video model
      0x00, 0x20,                                     // video memory
      0x80, 0x07, 0x38, 0x04,                         // screen width and height
      32,                                             // bits per pixel
  };
  EXPECT_EQ(Written(Information), Expected);
}

TEST(SystemInformation, ShortCountryIsPaddedWithZeros) {
  TSystemInformation Information;
  Information.Country = "DE";
  const TBlock Block = Written(Information);
  EXPECT_EQ(Block[1], 'D');
  EXPECT_EQ(Block[2], 'E');
  EXPECT_EQ(Block[3], 0);
}

TEST(SystemInformation, NullTargetFails) {
  try {
    TSystemInformation().WriteBlock(nullptr);
    FAIL() << "no failure";
  } catch (const TMyException& E) {
    EXPECT_EQ(E.Text(), "failed to write to byte array");
    EXPECT_NE(E.Reason().find("ByteArray != NULL"), std::string::npos) << E.Reason();
  }
}

TEST(SystemInformation, FailedQueriesLeaveZerosAndUnknownNames) {
  const TSystemInformation Information = Gathered(TSystemSources{});
  TBlock Expected{};
  Expected[0] = OS_UNKNOWN;
  EXPECT_EQ(Written(Information), Expected);
  EXPECT_EQ(Information.GetOperatingSystemName(), "Unknown");
  EXPECT_EQ(Information.GetProcessorName(), "Unknown");
  EXPECT_EQ(Information.GetVideoCardName(), "Unknown");
}

TEST(SystemInformation, UngatheredOperatingSystemIsUnaquired) {
  EXPECT_EQ(TSystemInformation().OperatingSystem, OS_UNAQUIRED);
}

TEST(SystemInformation, CountryComesFromTheLocaleTerritory) {
  TSystemSources Sources;
  const std::pair<const char*, const char*> Cases[] = {{"de_DE.UTF-8", "DEU"},
                                                       {"en_GB", "GBR"},
                                                       {"pt_BR.utf8", "BRA"},
                                                       {"sv_se@euro", "SWE"},
                                                       {"en_US.ISO-8859-1", "USA"},
                                                       {"C.UTF-8", ""},
                                                       {"POSIX", ""},
                                                       {"xx_QQ.UTF-8", ""},
                                                       {"", ""}};
  for (const auto& [Locale, Country] : Cases) {
    Sources.Locale = Locale;
    EXPECT_EQ(Gathered(Sources).Country, Country) << Locale;
  }
}

TEST(SystemInformation, MemoryIsCountedInMegabytesUpTo65535) {
  TSystemSources Sources;
  Sources.MemoryBytes = 8ull << 30;
  EXPECT_EQ(Gathered(Sources).MemoryMB, 8192);
  Sources.MemoryBytes = 1ull << 40;
  EXPECT_EQ(Gathered(Sources).MemoryMB, 0xFFFF);
}

TEST(SystemInformation, VendorAndFamilyComeFromCpuid) {
  TSystemSources Sources;
  Sources.ProcessorVendor = "GenuineIntel";
  Sources.ProcessorSignature = 0x000906EA;  // family 6
  EXPECT_EQ(Gathered(Sources).ProcessorVendor, 1);
  EXPECT_EQ(Gathered(Sources).ProcessorFamily, 6);
  Sources.ProcessorVendor = "AuthenticAMD";
  Sources.ProcessorSignature = 0x00A20F12;  // base family 15 plus extended family 10
  EXPECT_EQ(Gathered(Sources).ProcessorVendor, 2);
  EXPECT_EQ(Gathered(Sources).ProcessorFamily, 25);
  Sources.ProcessorVendor = "SomethingNew";
  EXPECT_EQ(Gathered(Sources).ProcessorVendor, 0);
}

TEST(SystemInformation, CountsAndSpeedComeFromCpuInfo) {
  TSystemSources Sources;
  Sources.CpuInfo = TWO_PACKAGES_CPUINFO;
  Sources.MeasuredMHz = 2401;
  const TSystemInformation Information = Gathered(Sources);
  EXPECT_EQ(Information.Packages, 2);
  EXPECT_EQ(Information.Cores, 4);
  EXPECT_EQ(Information.LogicalProcessors, 8);
  EXPECT_EQ(Information.ThreadsPerCore, 2);
  EXPECT_EQ(Information.ProcessorMHzNominal, 2400);
  EXPECT_EQ(Information.ProcessorMHzMeasured, 2401);
  const TBlock Block = Written(Information);
  EXPECT_EQ(Block[21], 0x24);
  EXPECT_EQ(Block[22], 0x82);
  // Without CPUID the name is the first "model name".
  EXPECT_EQ(Information.GetProcessorName(), "Intel(R) Xeon(R) CPU E5-2680 v4 @ 2.40GHz");
  EXPECT_EQ(Information.ProcessorType, CPU_INTEL | CPU_XEON);
  EXPECT_EQ(Information.ProcessorModel, "E5-2680");
}

TEST(SystemInformation, ProcessorNameWordsAndModel) {
  TSystemSources Sources;
  const struct {
    const char* Name;
    std::uint32_t Type;
    const char* Model;
  } Cases[] = {
      {"Intel(R) Core(TM) i7-8550U CPU @ 1.80GHz", CPU_INTEL | CPU_CORE_I7, "i7-8550U"},
      {"Intel(R) Core(TM)2 Duo CPU     E8400  @ 3.00GHz", CPU_INTEL | CPU_CORE_2, "E8400"},
      {"AMD Athlon(tm) 64 X2 Dual Core Processor 4200+", CPU_ATHLON | CPU_DUAL_CORE, "4200+"},
      {"AMD Ryzen 7 5800X 8-Core Processor", CPU_UNDEFINED, "5800X"},
      {"AMD EPYC", CPU_UNDEFINED, ""},
  };
  for (const auto& Case : Cases) {
    Sources.ProcessorName = Case.Name;
    const TSystemInformation Information = Gathered(Sources);
    EXPECT_EQ(Information.ProcessorType, Case.Type) << Case.Name;
    EXPECT_EQ(Information.ProcessorModel, Case.Model) << Case.Name;
    EXPECT_EQ(Information.GetProcessorName(), Case.Name);
  }
}

TEST(SystemInformation, VideoCardIsSetByTheGraphicsLayer) {
  TSystemInformation Information;
  Information.SetVideoCard("NVIDIA GeForce GTX 1080/PCIe/SSE2", 8192);
  Information.SetScreen(1920, 1080, 24);
  EXPECT_EQ(Information.GetVideoCardName(), "NVIDIA GeForce GTX 1080/PCIe/SSE2");
  EXPECT_EQ(Information.VideoType, VIDEO_NVIDIA | VIDEO_GEFORCE_GTX);
  EXPECT_EQ(Information.VideoModel, "1080");
  const TBlock Block = Written(Information);
  EXPECT_EQ(Block[27], VIDEO_NVIDIA | VIDEO_GEFORCE_GTX);
  EXPECT_EQ(Block[31], '1');
  EXPECT_EQ(Block[40] | Block[41] << 8, 8192);
  EXPECT_EQ(Block[42] | Block[43] << 8, 1920);
  EXPECT_EQ(Block[44] | Block[45] << 8, 1080);
  EXPECT_EQ(Block[46], 24);
}

// "Radeon HD" is found first and does not count as "Radeon" as well.
TEST(SystemInformation, VideoNameWordsAreTakenInTableOrder) {
  TSystemInformation Information;
  Information.SetVideoCard("ATI Radeon HD 7970", 0);
  EXPECT_EQ(Information.VideoType, VIDEO_RADEON_HD);
  EXPECT_EQ(Information.VideoModel, "7970");
  Information.SetVideoCard("Mesa Intel(R) UHD Graphics 620 (KBL GT2)", 0);
  EXPECT_EQ(Information.VideoType, VIDEO_INTEL);
  EXPECT_EQ(Information.VideoModel, "620");
  Information.SetVideoCard("llvmpipe (LLVM 15.0.6, 256 bits)", 0);
  EXPECT_EQ(Information.VideoType, VIDEO_UNDEFINED);
  EXPECT_EQ(Information.VideoModel, "");
}

TEST(SystemInformation, CorporationIsDroppedFromTheVideoCardName) {
  TSystemInformation Information;
  Information.SetVideoCard("NVIDIA CORPORATION GeForce GTX 1080", 0);
  EXPECT_EQ(Information.GetVideoCardName(), "NVIDIA GeForce GTX 1080");
  Information.SetVideoCard("", 0);
  EXPECT_EQ(Information.GetVideoCardName(), "Unknown");
  EXPECT_EQ(Information.VideoType, 0u);
}

TEST(SystemInformation, GatherOnThisMachine) {
  TSystemInformation Information;
  Information.Gather();
  EXPECT_EQ(Information.OperatingSystem, OS_UNKNOWN);
  EXPECT_EQ(Information.GetOperatingSystemName().rfind("Linux ", 0), 0u)
      << Information.GetOperatingSystemName();
  EXPECT_GT(Information.MemoryMB, 0);
  EXPECT_GT(Information.LogicalProcessors, 0);
  std::array<std::uint8_t, 48> Memory;
  Memory.fill(0xAA);
  Information.WriteBlock(Memory.data());
  EXPECT_EQ(Memory[47], 0xAA);
}

}  // namespace
