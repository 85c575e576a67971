#pragma once
// The application: start-up, the loop on the one thread, and the end.
#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "app/MainFrm.h"
#include "app/Messages.h"
#include "core/CommandLineHelper.h"
#include "core/MessageQueue.h"
#include "graphics/Recorder.h"
#include "platform/Timer.h"

class CPlayerApp : public IMessageHost {
 public:
  CPlayerApp();
  ~CPlayerApp() override;

  // Start-up; true when the window exists and the loop is to start.
  bool InitInstance(const std::string& CommandLine);
  // The loop until the window is gone; returns the exit code.
  int Run();

  bool OnIdle(long Count);
  void OnTimer();
  void MainStep();
  void RedrawNow();
  // Runs MainStep from inside a long transfer, at most every 51 ms unless forced.
  void RunMainStepThrottled(bool Force);

 private:
  bool CanTakeMessages() const override;
  void Terminate(bool Patch) override;

  void InitSteps();
  void StartDrawing();
  void InstallClientHooks();
  void InstallReportSources();
  void PumpOnce();
  void FinishPatchOnExit();
  void DrawFrame();
  void UpdateGameView();
  void SendTestWalk();

  CommandLineHelper m_CommandLine;
  std::unique_ptr<CMainFrame> m_Frame;
  platform::CPeriodicTimer m_Timer;
  CMessageHandler m_Messages;
  CFrameRecording m_Recording;
  std::array<int, 2> m_MousePosition{-1, -1};
  std::int64_t m_LastThrottledRun = 0;
  int m_ForcedEngine = -1;
  bool m_PatchOnExit = false;
  bool m_GameView = false;
};
