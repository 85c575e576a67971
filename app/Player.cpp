#include "app/Player.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "core/Clock.h"
#include "core/ErrorReport.h"
#include "core/Exception.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/ProgramState.h"
#include "app/AutoLogin.h"
#include "app/MainLoop.h"
#include "core/Preferences.h"
#include "core/SystemInformation.h"
#include "graphics/Engines.h"
#include "graphics/Fonts.h"
#include "graphics/MapWindow.h"
#include "graphics/Talkboxes.h"
#include "gui/GUI.h"
#include "gui/RootWindow.h"
#include "gui/Edit.h"
#include "gui/Routing.h"
#include "graphics/Screenshot.h"
#include "net/AccountManager.h"
#include "net/ClientHooks.h"
#include "net/Commands.h"
#include "net/Connection.h"
#include "platform/Clock.h"
#include "platform/CrashSignals.h"
#include "platform/InstanceLock.h"
#include "platform/Shell.h"
#include "platform/Signals.h"
#include "world/Creatures.h"
#include "world/Map.h"
#include "world/WorldMessages.h"

namespace {

constexpr auto TICK_PERIOD = std::chrono::milliseconds(100);
constexpr std::int64_t THROTTLE_MILLISECONDS = 51;

// The edits copy and paste through the desktop's clipboard.
class CDesktopClipboard : public IClipboard {
 public:
  bool HasText() const override { return !platform::GetClipboardText().empty(); }
  std::string GetText() const override { return platform::GetClipboardText(); }
  void SetText(const std::string& Text) override { platform::SetClipboardText(Text); }
};

}  // namespace

CPlayerApp::CPlayerApp() : m_Timer(TICK_PERIOD), m_Messages(*this) {}

CPlayerApp::~CPlayerApp() = default;

bool CPlayerApp::InitInstance(const std::string& CommandLine) {
  try {
    m_CommandLine.Parse(CommandLine);
    InitSteps();
    return m_Frame != nullptr;
  } catch (...) {
    ReportCurrentException();
  }
  return false;
}

void CPlayerApp::InitSteps() {
  const bool Gamemaster = m_CommandLine.HasOption("gamemaster");
  InitPaths(m_CommandLine.HasOption("path") ? m_CommandLine.GetValue("path") : "");
  if (m_CommandLine.HasOption("engine")) {
    m_ForcedEngine = std::atoi(m_CommandLine.GetValue("engine").c_str());
  }
  ScanErrorFile();

  std::string DisplayError;
  if (!platform::CWindow::InitDisplay("KelmoClient", DisplayError)) {
    LogInfo("no display: " + DisplayError);
    throw PROGRAM_ERROR::NO_X_DISPLAY;
  }
  platform::InstallWindowMessageBox();
  SetClipboard(std::make_unique<CDesktopClipboard>());

  m_Frame = std::make_unique<CMainFrame>(Gamemaster);
  if (!m_Frame->Create()) {
    m_Frame.reset();
    return;
  }
  InstallReportSources();
  if (!Gamemaster && !platform::AcquireInstanceLock("KelmoPlayerMutex")) {
    throw PROGRAM_ERROR::ALREADY_RUNNING;
  }
  InstallClientHooks();
  StartDrawing();
  m_Frame->Show();
  m_MousePosition = m_Frame->Window().GetMousePosition();
  MessageQueue().Post(MSG_ERROR_REPORT);
  StartAutoLogin();
}

// The engine is chosen for the window and started; the surfaces and the
// video cache come with the first frame. Any failure here that isn't the
// program's own is program error 13.
void CPlayerApp::StartDrawing() {
  try {
    SelectEngine(m_ForcedEngine, m_Frame->Window());
    GetSurface()->Startup();
    platform::InstallScreenshotSignal();
    RedrawNow();
  } catch (const TMyException&) {
    throw;
  } catch (const PROGRAM_ERROR&) {
    throw;
  } catch (...) {
    throw PROGRAM_ERROR::SURFACE_ALLOCATION_FAILED;
  }
}

int CPlayerApp::Run() {
  try {
    while (m_Frame->IsOpen()) PumpOnce();
    m_Frame.reset();
    FinishPatchOnExit();
  } catch (...) {
    ReportCurrentException();
  }
  return 0;
}

void CPlayerApp::PumpOnce() {
  m_Frame->Window().PumpEvents(*m_Frame);
  if (const int Signal = platform::TakeSentCrashSignal()) ReportCrashSignal(Signal, nullptr, false);
  if (platform::TakeCloseRequest()) m_Frame->OnCloseRequest();
  if (!m_Frame->IsOpen()) return;
  PollNetwork();
  if (m_Timer.TakeTick(NowNanoseconds())) {
    OnTimer();
  } else {
    OnIdle(0);
  }
}

bool CPlayerApp::OnIdle(long) {
  try {
    m_MousePosition = m_Frame->Window().GetMousePosition();
    m_Frame->ApplyCursorShape(GetMouseCursor());
    MainStep();
  } catch (...) {
    RethrowGuarded();
  }
  return true;
}

void CPlayerApp::OnTimer() {
  try {
    RunTimerTick();
    if (m_GameView) {
      ProcessTalkboxes();
      ProcessStatusMessage();
      ProcessEffects();
      if (GetTickCounter() % 10 == 0) StepAmbiente();
    }
  } catch (...) {
    RethrowGuarded();
  }
}

void CPlayerApp::MainStep() {
  try {
    CloseFinishedModalWindow();
    // While the root holds the mouse or a dialog is open, messages wait.
    if (!MainWindowHasCapture() && GetModalWindow() == nullptr) m_Messages.Drain(MessageQueue());
    if (m_GameView && ProcessCreatures()) SendGoPath(GetWalkSteps());
    UpdateGameView();
    RedrawNow();
  } catch (...) {
    const int Type = m_Messages.CurrentType();
    char Windows[64];
    std::snprintf(Windows, sizeof(Windows), "MaW: %X MoW: %X",
                  static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(GetMainWindow())),
                  static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(GetModalWindow())));
    RethrowGuarded(Type != 0 ? "exception occurred (MessageType: " + std::to_string(Type) + " " + Windows + ")"
                             : "exception occurred (" + std::string(Windows) + " )");
  }
}

bool CPlayerApp::CanTakeMessages() const { return m_Frame != nullptr && m_Frame->IsOpen(); }

void CPlayerApp::Terminate(bool Patch) {
  m_PatchOnExit = Patch;
  m_Frame->Terminate();
}

void CPlayerApp::InstallReportSources() {
  TReportSources& Sources = ReportSources();
  Sources.ReleaseDisplay = [this] {
    if (m_Frame && m_Frame->IsOpen()) m_Frame->Window().Hide();
  };
  Sources.GraphicEngine = []() -> std::string {
    const CSurface* Surface = CurrentSurfaceOrNull();
    if (Surface == nullptr) return std::to_string(GetCurrentEngine());
    const std::string Version = Surface->VersionData();
    return Surface->Name() + (Version.empty() ? "" : " " + Version);
  };
  Sources.OperatingSystem = [] {
    return SystemInformation().GetOperatingSystemName() + " in " + std::to_string(sizeof(void*) * 8) +
           "-bit mode";
  };
  Sources.Processor = [] { return SystemInformation().GetProcessorName(); };
  Sources.VideoCard = [] { return SystemInformation().GetVideoCardName(); };
  Sources.PlayerName = []() -> std::optional<std::array<std::string, 2>> {
    const TAccountCharacterData* Character = TAccountManager::getInstance().getActiveCharacter();
    if (Character == nullptr) return std::nullopt;
    return std::array<std::string, 2>{Character->Name, Character->WorldName};
  };
  Sources.GameServerAddress = []() -> std::string {
    const TAccountCharacterData* Character = TAccountManager::getInstance().getActiveCharacter();
    if (Character == nullptr) return {};
    const THostData& Host = Character->Host;
    return (Host.HostName.empty() ? Host.AddressText() : Host.HostName) + ":" + std::to_string(Host.Port);
  };
}

// Until the main window and the status module exist, the game view is a flag
// and the tactics come straight from the configuration.
void CPlayerApp::InstallClientHooks() {
  TClientHooks& Hooks = ClientHooks();
  Hooks.SetTitle = [this](const std::string& Name) {
    if (m_Frame->IsOpen()) m_Frame->Window().SetTitle(Name.empty() ? "Kelmo" : "Kelmo - " + Name);
  };
  Hooks.RedrawNow = [this] { RedrawNow(); };
  Hooks.IsGameView = [this] { return m_GameView; };
  Hooks.EnterGameView = [this](std::uint32_t) {
    PrepareWorldForGame();
    ClearTalkboxes();
    SetStatusMessage("");
    m_GameView = true;
  };
  Hooks.LeaveGameView = [this] {
    m_GameView = false;
    UpdateGameView();
  };
  SetTalkHandler([](const TTalkRecord& Talk) {
    if (const int Mode = TalkboxModeOfChatMode(Talk.Mode)) {
      SetTalkbox(Mode, Talk.Speaker, Talk.Position.x, Talk.Position.y, Talk.Position.z, Talk.Text);
    }
  });
  Hooks.SaveConfiguration = [] { SavePreferences(); };
  // The PvP mode starts every game as 0.
  Hooks.SendTactics = [] {
    const TPreferences& Values = Preferences();
    SendSetTactics(Values.AttackMode, Values.ChaseMode, Values.SecureMode == 1 ? 1 : 0, 0);
  };
}

// KELMO_TEST_WALK, step codes separated by commas (1 east, anticlockwise
// to 8 south-east), is sent as one path once the map is first shown: until
// the keys and the mouse walk, it lets tests and screenshots take the
// character somewhere.
void CPlayerApp::SendTestWalk() {
  const char* Value = std::getenv("KELMO_TEST_WALK");
  if (Value == nullptr) return;
  std::vector<int> Steps;
  for (const char* Next = Value; *Next != '\0' && Steps.size() < MAX_WALK_STEPS;) {
    char* End = nullptr;
    const long Step = std::strtol(Next, &End, 10);
    if (End == Next || Step < 1 || Step > 8) break;
    Steps.push_back(static_cast<int>(Step));
    Next = *End == ',' ? End + 1 : End;
  }
  if (!Steps.empty()) SendGoPath(Steps);
}

// The map fills the root while a game runs, from the moment the server has
// described the own character.
void CPlayerApp::UpdateGameView() {
  auto* Root = dynamic_cast<CRootWindow*>(GetMainWindow());
  if (Root == nullptr) return;
  const bool Wanted = m_GameView && FindPlayer() != nullptr;
  if (Wanted && Root->GetGameView() == nullptr) {
    Root->ShowGameView(std::make_unique<CMapFrame>());
    SendTestWalk();
  }
  if (!Wanted && Root->GetGameView() != nullptr) Root->HideGameView();
}

void CPlayerApp::RunMainStepThrottled(bool Force) {
  const std::int64_t Now = NowMilliseconds();
  if (!Force && Now - m_LastThrottledRun < THROTTLE_MILLISECONDS) return;
  m_LastThrottledRun = Now;
  MainStep();
}

// One frame: the surface is validated (a failing engine gives way to engine
// 0), the frame drawn and presented under the frame limiter. A requested
// screenshot is taken from the frame as presented.
void CPlayerApp::RedrawNow() {
  if (!m_Frame || !m_Frame->IsOpen()) return;
  platform::CWindow& Window = m_Frame->Window();
  if (Window.IsMinimisedOrHidden()) {
    platform::SleepFor(std::chrono::milliseconds(10));
    return;
  }
  if (!StartFrame(Window)) return;
  CSurface& Surface = *GetSurface();
  DrawFrame();
  const bool Screenshot = m_Frame->TakeScreenshotRequest() || platform::TakeScreenshotRequest();
  if (Screenshot) Surface.RequestCapture();
  FinishFrame();
  if (const std::optional<TImage> Capture = Surface.TakeCapture()) {
    const std::string FileName = SaveScreenshot(*Capture);
    LogInfo(FileName.empty() ? "screenshot could not be written" : "screenshot " + FileName);
  }
}

// The tree from scratch on a black screen, the modal window at its place,
// the frame rate if it is switched on, and the tooltip on top.
void CPlayerApp::DrawFrame() {
  CSurface& Surface = *GetSurface();
  m_Recording.BeginFrame();
  Surface.ClearSurface(SCREEN_SURFACE, {0, 0, 0}, 255);
  if (CGUIComposite* Root = GetMainWindow()) Root->Draw(SCREEN_SURFACE, 0, 0);
  if (CGUIComponent* Modal = GetModalWindow()) Modal->Draw(SCREEN_SURFACE, Modal->getX(), Modal->getY());
  if (IsFramerateShown()) {
    char Text[64];
    std::snprintf(Text, sizeof(Text), "%s %.02f fps", Surface.Name(), Surface.Limiter().FramesPerSecond());
    PrintPlain(SCREEN_SURFACE, MainWidth() / 2, 2, 2, {255, 255, 255}, Text, CENTER_ALIGN);
  }
  DrawTooltip(SCREEN_SURFACE);
  m_Recording.EndFrame();
}

void CPlayerApp::FinishPatchOnExit() {
  if (!m_PatchOnExit) return;
  if (FileExists(GetFileName(TFileKind::PATCHER, true)) && !ReplaceWithTemporary(TFileKind::PATCHER)) {
    throw PROGRAM_ERROR::PATCH_NOT_RENAMED;
  }
  if (FileExists(GetFileName(TFileKind::ERROR_DISPLAY, true)) &&
      !ReplaceWithTemporary(TFileKind::ERROR_DISPLAY)) {
    throw PROGRAM_ERROR::ERROR_DISPLAY_NOT_RENAMED;
  }
  if (!platform::StartProgram(GetFileName(TFileKind::PATCHER, false))) {
    throw PROGRAM_ERROR::PATCH_NOT_EXECUTED;
  }
}
