#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "net/LargeNumber.h"
#include "tests/net/TestSupport.h"

// The expected values were computed with Python's integers and pow().
namespace {

using testing_net::FailureText;

TLargeNumber Decimal(const char* Text) { return TLargeNumber::FromDecimal(Text); }

std::string Hex(const TLargeNumber& Number, int Bytes) {
  std::vector<std::uint8_t> Data(static_cast<std::size_t>(Bytes));
  Number.ToBigEndian(Data);
  std::string Text;
  for (const std::uint8_t Byte : Data) {
    Text += "0123456789abcdef"[Byte >> 4];
    Text += "0123456789abcdef"[Byte & 15];
  }
  return Text;
}

TEST(LargeNumber, DecimalRoundTrips) {
  for (const char* Text :
       {"0", "1", "9", "10", "999999999", "1000000000", "1000000001", "4294967295", "4294967296",
        "18446744073709551615", "18446744073709551616", "340282366920938463463374607431768211457",
        "1000000000000000000000000000000000000000000000000000000000000000000000000000000001"}) {
    EXPECT_EQ(Decimal(Text).ToDecimal(), Text);
  }
}

TEST(LargeNumber, LeadingZerosAndEmptyTextAreAccepted) {
  EXPECT_EQ(Decimal("000123").ToDecimal(), "123");
  EXPECT_TRUE(Decimal("0000").IsZero());
  EXPECT_TRUE(Decimal("").IsZero());
}

TEST(LargeNumber, NonDigitFails) {
  EXPECT_EQ(FailureText([] { Decimal("12a4"); }), "digit out of range");
  EXPECT_EQ(FailureText([] { Decimal("-1"); }), "digit out of range");
  EXPECT_EQ(FailureText([] { Decimal("1 2"); }), "digit out of range");
}

TEST(LargeNumber, SixtyFourBitValuesMatchTheirDecimalText) {
  EXPECT_EQ(TLargeNumber(0).ToDecimal(), "0");
  EXPECT_EQ(TLargeNumber(0xFFFFFFFFFFFFFFFF).ToDecimal(), "18446744073709551615");
  EXPECT_EQ(TLargeNumber(0x100000000), Decimal("4294967296"));
}

TEST(LargeNumber, BigEndianBytesRoundTripWithPadding) {
  const std::array<std::uint8_t, 9> Bytes = {0x00, 0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07};
  const TLargeNumber Number = TLargeNumber::FromBigEndian(Bytes);
  EXPECT_EQ(Number, TLargeNumber(0x01020304050607));
  EXPECT_EQ(Hex(Number, 12), "000000000001020304050607");
  EXPECT_EQ(Hex(Number, 7), "01020304050607");
  EXPECT_TRUE(TLargeNumber::FromBigEndian(std::span<const std::uint8_t>()).IsZero());
}

TEST(LargeNumber, ToBigEndianFailsIfTheNumberDoesNotFit) {
  const TLargeNumber Number(0x1234);
  std::array<std::uint8_t, 1> Small{};
  EXPECT_EQ(FailureText([&] { Number.ToBigEndian(Small); }), "number does not fit into byte array");
  std::array<std::uint8_t, 2> Exact{};
  Number.ToBigEndian(Exact);
  EXPECT_EQ(Exact, (std::array<std::uint8_t, 2>{0x12, 0x34}));
}

TEST(LargeNumber, CarriesRunAcrossWords) {
  const TLargeNumber AllOnes = Decimal("79228162514264337593543950335");  // 2^96 - 1
  EXPECT_EQ((AllOnes + TLargeNumber(1)).ToDecimal(), "79228162514264337593543950336");
  EXPECT_EQ((TLargeNumber(1) + AllOnes).BitLength(), 97);
  EXPECT_EQ((AllOnes + AllOnes).ToDecimal(), "158456325028528675187087900670");
  const TLargeNumber Max64(0xFFFFFFFFFFFFFFFF);
  EXPECT_EQ((Max64 * Max64).ToDecimal(), "340282366920938463426481119284349108225");
  EXPECT_TRUE((Max64 * TLargeNumber()).IsZero());
}

TEST(LargeNumber, SubtractionBorrowsAcrossWordsAndDropsHighZeros) {
  const TLargeNumber PowerOf96 = Decimal("79228162514264337593543950336");
  EXPECT_EQ((PowerOf96 - TLargeNumber(1)).ToDecimal(), "79228162514264337593543950335");
  EXPECT_EQ((PowerOf96 - TLargeNumber(1)).BitLength(), 96);
  EXPECT_EQ(PowerOf96 - PowerOf96, TLargeNumber());
  EXPECT_EQ((PowerOf96 + TLargeNumber(5)) - PowerOf96, TLargeNumber(5));
  EXPECT_EQ(FailureText([&] { (void)(TLargeNumber(1) - PowerOf96); }),
            "subtrahend is larger than minuend");
}

TEST(LargeNumber, ComparesByValue) {
  EXPECT_LT(TLargeNumber(5), TLargeNumber(6));
  EXPECT_LT(TLargeNumber(0xFFFFFFFF), TLargeNumber(0x100000000));
  EXPECT_GT(Decimal("18446744073709551616"), TLargeNumber(0xFFFFFFFFFFFFFFFF));
  EXPECT_GT(TLargeNumber(0x200000001), TLargeNumber(0x100000002));
  EXPECT_EQ(Decimal("00042"), TLargeNumber(42));
  EXPECT_EQ(TLargeNumber(), TLargeNumber(0));
}

TEST(LargeNumber, ShiftsAndBits) {
  const TLargeNumber PowerOf100 = TLargeNumber(1) << 100;
  EXPECT_EQ(PowerOf100.ToDecimal(), "1267650600228229401496703205376");
  EXPECT_EQ(PowerOf100.BitLength(), 101);
  EXPECT_TRUE(PowerOf100.Bit(100));
  EXPECT_FALSE(PowerOf100.Bit(99));
  EXPECT_FALSE(PowerOf100.Bit(1000));
  EXPECT_EQ(PowerOf100 >> 99, TLargeNumber(2));
  EXPECT_TRUE((PowerOf100 >> 101).IsZero());
  EXPECT_EQ((TLargeNumber(0xF0F0F0F0F) << 36) >> 36, TLargeNumber(0xF0F0F0F0F));
  EXPECT_EQ(TLargeNumber(0xF0F0F0F0F) >> 4, TLargeNumber(0xF0F0F0F0));
  EXPECT_EQ(TLargeNumber().BitLength(), 0);
}

TEST(LargeNumber, LowBitsKeepTheNumberModuloAPowerOfTwo) {
  const TLargeNumber Number = (TLargeNumber(1) << 128) - TLargeNumber(1);
  EXPECT_EQ(Number.LowBits(0), TLargeNumber());
  EXPECT_EQ(Number.LowBits(5), TLargeNumber(31));
  EXPECT_EQ(Number.LowBits(64), TLargeNumber(0xFFFFFFFFFFFFFFFF));
  EXPECT_EQ(Number.LowBits(200), Number);
}

TEST(LargeNumber, DivisionAndMultiplicationKnownAnswer) {
  const TLargeNumber A = Decimal(
      "552363232339570870160591351782120490714066688643809699999532679789761722001336708060"
      "013979570737003846974596639711692011696821389348215958962240820413755577148587519814"
      "301473665168474532463141265013554139181874");
  const TLargeNumber B = Decimal(
      "982778843066786217412630459391125867871469345395993529068665283131432385820408677856"
      "9538763344913953");
  TLargeNumber Quotient;
  TLargeNumber Remainder;
  TLargeNumber::Divide(A, B, Quotient, Remainder);
  EXPECT_EQ(Quotient.ToDecimal(),
            "562042250132193977488970643465693438560561081069901498415798523426784655632826901101"
            "55179139178689229034030159");
  EXPECT_EQ(Remainder.ToDecimal(),
            "710360476994584286871011581910481832771994218183329035536043835344421200524460134225"
            "8810523477273347");
  EXPECT_EQ((A * B).ToDecimal(),
            "542850898431313893818703085032706763465505672607754156174941548546767560793024858446"
            "520036093520299352147970712220397202604931150476313094123645657047122433054736830285"
            "481531702823957598130835670594239548308956908019113796719794521863250430440811456175"
            "7339229651657857234987771085847903838391906706594347287922");
}

// The first estimate of the quotient word is too large and is corrected
// before the multiply and subtract.
TEST(LargeNumber, DivisionCorrectsAnOverestimatedQuotientWord) {
  const std::array<std::uint8_t, 12> Dividend = {0x80, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFE, 0, 0, 0, 0};
  const std::array<std::uint8_t, 8> Divisor = {0x80, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF};
  TLargeNumber Quotient;
  TLargeNumber Remainder;
  TLargeNumber::Divide(TLargeNumber::FromBigEndian(Dividend), TLargeNumber::FromBigEndian(Divisor),
                       Quotient, Remainder);
  EXPECT_EQ(Quotient, TLargeNumber(0xFFFFFFFF));
  EXPECT_EQ(Remainder, TLargeNumber(0x7FFFFFFFFFFFFFFF));
}

// 2^65 / (2^64 + 1): the quotient word survives the estimate's test but the
// subtraction goes below zero, so the divisor is added back once.
TEST(LargeNumber, DivisionAddsTheDivisorBackAfterANegativeSubtraction) {
  TLargeNumber Quotient;
  TLargeNumber Remainder;
  TLargeNumber::Divide(TLargeNumber(2) << 64, (TLargeNumber(1) << 64) + TLargeNumber(1), Quotient,
                       Remainder);
  EXPECT_EQ(Quotient, TLargeNumber(1));
  EXPECT_EQ(Remainder, TLargeNumber(0xFFFFFFFFFFFFFFFF));
}

TEST(LargeNumber, DivisionEdgeCases) {
  TLargeNumber Quotient(99);
  TLargeNumber Remainder(99);
  TLargeNumber::Divide(TLargeNumber(5), TLargeNumber(7), Quotient, Remainder);
  EXPECT_TRUE(Quotient.IsZero());
  EXPECT_EQ(Remainder, TLargeNumber(5));
  const TLargeNumber PowerOf128 = TLargeNumber(1) << 128;
  TLargeNumber::Divide(PowerOf128, PowerOf128, Quotient, Remainder);
  EXPECT_EQ(Quotient, TLargeNumber(1));
  EXPECT_TRUE(Remainder.IsZero());
  TLargeNumber::Divide(PowerOf128, TLargeNumber(1000000007), Quotient, Remainder);
  EXPECT_EQ(Remainder, Decimal("279632277"));
  EXPECT_EQ(Quotient * TLargeNumber(1000000007) + Remainder, PowerOf128);
  TLargeNumber::Divide(TLargeNumber(), PowerOf128, Quotient, Remainder);
  EXPECT_TRUE(Quotient.IsZero());
  EXPECT_TRUE(Remainder.IsZero());
  EXPECT_EQ(
      FailureText([&] { TLargeNumber::Divide(PowerOf128, TLargeNumber(), Quotient, Remainder); }),
      "division by zero");
}

// Quotient times divisor plus remainder gives the dividend back, with the
// remainder below the divisor, for numbers of many lengths, some all ones.
TEST(LargeNumber, DivisionIdentityHoldsForManyShapes) {
  std::mt19937 Random(1053);
  for (int Trial = 0; Trial < 400; ++Trial) {
    std::vector<std::uint8_t> A(1 + Random() % 80);
    std::vector<std::uint8_t> B(1 + Random() % 40);
    for (std::uint8_t& Byte : A) Byte = static_cast<std::uint8_t>(Trial % 3 == 0 ? 0xFF : Random());
    for (std::uint8_t& Byte : B) Byte = static_cast<std::uint8_t>(Trial % 5 == 0 ? 0xFF : Random());
    const TLargeNumber Dividend = TLargeNumber::FromBigEndian(A);
    const TLargeNumber Divisor = TLargeNumber::FromBigEndian(B) + TLargeNumber(1);
    TLargeNumber Quotient;
    TLargeNumber Remainder;
    TLargeNumber::Divide(Dividend, Divisor, Quotient, Remainder);
    ASSERT_EQ(Quotient * Divisor + Remainder, Dividend) << "trial " << Trial;
    ASSERT_LT(Remainder, Divisor) << "trial " << Trial;
  }
}

TEST(LargeNumber, PowModSmallKnownAnswers) {
  EXPECT_EQ(PowMod(TLargeNumber(4), TLargeNumber(13), TLargeNumber(497)), TLargeNumber(445));
  EXPECT_EQ(PowMod(TLargeNumber(65), TLargeNumber(65537), TLargeNumber(3233)), TLargeNumber(2790));
  const TLargeNumber Exponent = (TLargeNumber(1) << 70) + TLargeNumber(5);
  EXPECT_EQ(PowMod(TLargeNumber(7), Exponent, Decimal("1000000000000000000000000000000")),
            Decimal("727506034484119296793169117607"));
}

TEST(LargeNumber, PowModEdgeCases) {
  EXPECT_EQ(PowMod(TLargeNumber(12345), TLargeNumber(0), TLargeNumber(497)), TLargeNumber(1));
  EXPECT_EQ(PowMod(TLargeNumber(12345), TLargeNumber(0), TLargeNumber(496)), TLargeNumber(1));
  EXPECT_TRUE(PowMod(TLargeNumber(12345), TLargeNumber(7), TLargeNumber(1)).IsZero());
  EXPECT_TRUE(PowMod(TLargeNumber(), TLargeNumber(7), TLargeNumber(497)).IsZero());
  // A base above the modulus is reduced first.
  EXPECT_EQ(PowMod(TLargeNumber(4 + 497 * 1000), TLargeNumber(13), TLargeNumber(497)),
            TLargeNumber(445));
  EXPECT_EQ(FailureText([] { PowMod(TLargeNumber(2), TLargeNumber(3), TLargeNumber()); }),
            "modulus is 0");
}

// An odd modulus whose bit length is no multiple of the word size.
TEST(LargeNumber, PowModMersenneModulus) {
  const TLargeNumber Modulus = (TLargeNumber(1) << 127) - TLargeNumber(1);
  const TLargeNumber Exponent = (TLargeNumber(1) << 126) + TLargeNumber(12345);
  EXPECT_EQ(PowMod(TLargeNumber(3), Exponent, Modulus),
            Decimal("27987787288272612529808736826079460936"));
}

TEST(LargeNumber, PowModOdd1024BitKnownAnswer) {
  const TLargeNumber Modulus = Decimal(
      "141010303418393889797355964859102835536081424811056991454253633418482434527239261407"
      "229537406626229789747084835366746722122001531559294778826294742258212552315225589370"
      "413818408001900397218483283186384290844291478727946278147215585061719081034322112997"
      "285760228251385520139185662971000240381847924909498824191");
  const TLargeNumber Base = Decimal(
      "253258636783305365995497206943480448804616970701712123222188528353000751244627586104"
      "958211941204754302871415288539263370311809645244337658451475910767242424057382024881"
      "588445096044680806811573947999587743121645630077356389556097359157631733801383739706"
      "4322175401228444913135791694680361835189544027973663222731513602416116764603674");
  const TLargeNumber Exponent = Decimal(
      "559268420558132394219342820139827593201562148997748745405669900286154576965715905336"
      "696201615619919202290333708935623124874745123293919903579855022655403894039567624826"
      "419767614498602294104457999855265256632770924389964230971874894430260999876372815686"
      "32086829077752713123560319147076676738383306833612185365");
  EXPECT_EQ(PowMod(Base, Exponent, Modulus).ToDecimal(),
            "840328259455413542157803384686353281102841215811624682053805734603802404894453935792"
            "389471272410273865731107547217642947535621009008855899448906349918287194353348763531"
            "512814751116580121349617032547355517162385296280248083022865163439506597889295472908"
            "00693023342951670023775469152105677134946448849285142771");
}

// An even modulus of 1000 bits goes the way without Montgomery form.
TEST(LargeNumber, PowModEvenModulusKnownAnswer) {
  const TLargeNumber Modulus = Decimal(
      "985686892148098348162739462292011310282284825328005008446790318207177246974834279274"
      "105713114487050864713833475056915379003735816668530835451729736163329665027241969576"
      "340853856830658640459856335685466296763411891970608254528326659838268001833710996639"
      "3005320463497292322812756523867108065914889901492");
  const TLargeNumber Base = Decimal(
      "179394830591294738073780578970649751657727085069846074759812114709570337410455791171"
      "078432828677802948078005997262409641429767298615667252579992150854567943797069999620"
      "321917643094356124488405452354044515673836268486819322083038734287130377594751721818"
      "9907665865861209968720964384021510195719631472");
  const TLargeNumber Exponent = Decimal(
      "117900476545579567939299363664792491894705776411102129893841150701110122245570477324"
      "5291628");
  EXPECT_EQ(PowMod(Base, Exponent, Modulus).ToDecimal(),
            "603136046075859623035132504624663866321114958077292745585593192915047991927721282217"
            "230463246198735715755154022588458848765727751543237463007708197038575562038750614490"
            "267111041944746476204494003594308612378018309076410933644812055342027428853774571887"
            "6244343433145132712748210497849869856937117250188");
}

TEST(LargeNumber, CopiesAndMovesKeepTheValue) {
  const TLargeNumber Original = Decimal("123456789012345678901234567890");
  TLargeNumber Copy = Original;
  EXPECT_EQ(Copy, Original);
  TLargeNumber Moved = std::move(Copy);
  EXPECT_EQ(Moved, Original);
  Copy = Moved;
  EXPECT_EQ(Copy, Original);
  Moved = TLargeNumber(7);
  EXPECT_EQ(Moved, TLargeNumber(7));
}

TEST(LargeNumber, WipeMemoryZerosEveryWord) {
  std::array<std::uint32_t, 6> Words;
  Words.fill(0xDEADBEEF);
  WipeMemory(Words.data(), 5);
  EXPECT_EQ(Words, (std::array<std::uint32_t, 6>{0, 0, 0, 0, 0, 0xDEADBEEF}));
}

}  // namespace
