// The map frame's size rule and the talkbox store, without a display.
#include <gtest/gtest.h>

#include <string>

#include "core/Clock.h"
#include "core/Preferences.h"
#include "graphics/MapWindow.h"
#include "graphics/Talkboxes.h"
#include "gui/GUI.h"

namespace {

class MapLayoutTest : public ::testing::Test {
 protected:
  MapLayoutTest() {
    SetClockSource(m_Clock);
    InitPreferences();
    InitGUI();
    ClearTalkboxes();
    SetStatusMessage("");
  }
  ~MapLayoutTest() override {
    ExitGUI();
    ExitPreferences();
    SetClockSource(nullptr);
  }

  std::shared_ptr<TManualClock> m_Clock = std::make_shared<TManualClock>(1'000'000'000);
};

TEST_F(MapLayoutTest, TheFrameKeepsTheMapAtFifteenToEleven) {
  CMapFrame Frame;
  Frame.SetSize(800, 600);
  // (600 - 10) * 15 / 11 + 2 = 806 is wider than 790.
  EXPECT_EQ(Frame.Map().getWidth(), 790);
  EXPECT_EQ(Frame.Map().getHeight(), 579);
  EXPECT_EQ(Frame.Map().getX(), 5);
  EXPECT_EQ(Frame.Map().getY(), 5);
  EXPECT_EQ(Frame.getHeight(), 589);

  Frame.SetSize(1920, 1080);
  EXPECT_EQ(Frame.Map().getWidth(), 1070 * 15 / 11 + 2);
  EXPECT_EQ(Frame.Map().getHeight(), 1461 * 11 / 15);
  EXPECT_EQ(Frame.Map().getX(), (1920 - 10 - 1461) / 2 + 5);
}

TEST_F(MapLayoutTest, WithoutStretchingTheMapIsAtMostItsPicture) {
  Preferences().NoStretching = 1;
  CMapFrame Frame;
  Frame.SetSize(1920, 1080);
  EXPECT_EQ(Frame.Map().getWidth(), 480);
  EXPECT_EQ(Frame.Map().getHeight(), 352);
  EXPECT_EQ(Frame.Map().getX(), (1920 - 10 - 480) / 2 + 5);
  EXPECT_EQ(Frame.GetMinimumWidth(), 240);
  EXPECT_EQ(Frame.GetMinimumHeight(), 176);
}

TEST_F(MapLayoutTest, ATalkboxHasItsHeaderAndBreaksLongLines) {
  const int Slot = SetTalkbox(TALK_SAY, "Tobias", 32000, 32000, 7,
                              "A word of more than thirty-nine characters: Supercalifragilisticexpialidociousnessity");
  EXPECT_EQ(Slot, 0);
  ASSERT_EQ(GetNumberOfTalkboxes(), 1);
  ASSERT_EQ(GetTalkboxLines(1), 5);
  EXPECT_STREQ(GetTalkboxLine(1, 0), "Tobias says:");
  EXPECT_STREQ(GetTalkboxLine(1, 1), "A word of more than thirty-nine");
  EXPECT_STREQ(GetTalkboxLine(1, 2), "characters:");
  EXPECT_STREQ(GetTalkboxLine(1, 3), "Supercalifragilisticexpialidociousness-");
  EXPECT_STREQ(GetTalkboxLine(1, 4), "ity");
  EXPECT_EQ(GetTalkboxColour(1), (TRGBColor{240, 240, 0}));
}

TEST_F(MapLayoutTest, TwoSaysOfOneSpeakerOnOneFieldShareABox) {
  SetTalkbox(TALK_SAY, "Tobias", 32000, 32000, 7, "Hello.");
  SetTalkbox(TALK_SAY, "Tobias", 32000, 32000, 7, "Anybody there?");
  ASSERT_EQ(GetNumberOfTalkboxes(), 1);
  ASSERT_EQ(GetTalkboxLines(1), 3);
  EXPECT_STREQ(GetTalkboxLine(1, 2), "Anybody there?");
}

TEST_F(MapLayoutTest, TalkboxesLiveByTheLengthOfTheirText) {
  SetTalkbox(TALK_YELL, "Ayla", 32000, 32000, 7, "Hi!");  // (3 / 2 + 30) * 100 milliseconds
  m_Clock->AdvanceMilliseconds(3099);
  ProcessTalkboxes();
  EXPECT_EQ(GetNumberOfTalkboxes(), 1);
  m_Clock->AdvanceMilliseconds(1);
  ProcessTalkboxes();
  EXPECT_EQ(GetNumberOfTalkboxes(), 0);
}

TEST_F(MapLayoutTest, AnEleventhTalkboxReplacesTheOldest) {
  for (int n = 0; n < TALKBOXES; ++n) SetTalkbox(TALK_SAY, "Speaker " + std::to_string(n), 32000 + n, 32000, 7, "Hi");
  EXPECT_STREQ(GetTalkboxLine(1, 0), "Speaker 0 says:");
  EXPECT_EQ(SetTalkbox(TALK_SAY, "Late", 32000, 32001, 7, "Hi"), 0);
  EXPECT_EQ(GetNumberOfTalkboxes(), TALKBOXES);
  EXPECT_STREQ(GetTalkboxLine(1, 0), "Late says:");
}

TEST_F(MapLayoutTest, TheMapKeysMoveCreatureInfoOnAndClearTheTalkboxes) {
  CMapWindow Map;
  SetTalkbox(TALK_SAY, "Tobias", 32000, 32000, 7, "Hello.");
  EXPECT_TRUE(DispatchKey(0x44E));
  EXPECT_EQ(Preferences().CreatureInfo, 0);
  EXPECT_TRUE(DispatchKey(0x457));
  EXPECT_EQ(GetNumberOfTalkboxes(), 0);
}

}  // namespace
