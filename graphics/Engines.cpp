#include "graphics/Engines.h"

#include <chrono>
#include <string>

#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Graphics.h"
#include "platform/Clock.h"
#include "platform/Window.h"

namespace {

int UsableEngines = 0;

bool IsEngineNumber(int Engine) { return Engine >= ENGINE_DIRECTX5 && Engine <= ENGINE_DIRECTX9; }

constexpr int Bit(int Engine) { return 1 << Engine; }

// The rasterisers that run on the processor. Like the system's generic
// implementation elsewhere they count as no OpenGL: on them the software
// engine draws the map in a third of the time.
bool IsSoftwareRenderer(const std::string& Renderer) {
  for (const char* Name : {"llvmpipe", "softpipe", "Software Rasterizer", "swrast"}) {
    if (Renderer.find(Name) != std::string::npos) return true;
  }
  return false;
}

// The second engine of the other platform is not built here: no library, no probe.
class CMachineProbes : public IEngineProbes {
 public:
  explicit CMachineProbes(platform::CWindow& Window) : m_Window(Window) {}

  bool HasDirect3D9Library() override { return false; }
  bool ProbeDirect3D9() override { return false; }
  TOpenGLFormat ChooseOpenGLFormat() override {
    if (!m_Window.SupportsOpenGL()) return TOpenGLFormat::NONE;
    platform::CGLContext Context(m_Window);
    if (!Context.IsValid()) return TOpenGLFormat::NONE;
    Context.MakeCurrent();
    return IsSoftwareRenderer(Context.Renderer()) ? TOpenGLFormat::GENERIC : TOpenGLFormat::USABLE;
  }
  bool ProbeOpenGL() override {
    std::unique_ptr<CSurface> Surface = MakeSurface(ENGINE_OPENGL);
    Surface->SetWindow(&m_Window);
    return Surface->Probe();
  }

 private:
  platform::CWindow& m_Window;
};

bool ProbeEngine(int Engine, CSurface& Surface) {
  if (Engine == ENGINE_DIRECTX9) return false;
  return Surface.Probe();
}

}  // namespace

// With no usable engine configured the order of preference is the second
// engine, OpenGL, then the software engine; a failed probe of the second
// engine sends even a configured one on to the others.
TEngineDecision DecideEngine(int Forced, int Configured, IEngineProbes& Probes) {
  if (IsEngineNumber(Forced)) return {Forced, 0};
  int Engine = Configured;
  bool Keep = IsEngineNumber(Configured);
  int Mask = 0;
  if (Probes.HasDirect3D9Library()) {
    if (Probes.ProbeDirect3D9()) {
      Mask |= Bit(ENGINE_DIRECTX9);
      if (!Keep) Engine = ENGINE_DIRECTX9;
      Keep = true;
    } else {
      Engine = Configured;
      Keep = false;
    }
  }
  if (Probes.ChooseOpenGLFormat() == TOpenGLFormat::USABLE && Probes.ProbeOpenGL()) {
    Mask |= Bit(ENGINE_OPENGL);
    if (!Keep) {
      Engine = ENGINE_OPENGL;
      Keep = true;
    }
  }
  if (Engine == ENGINE_DIRECTX9 && (Mask & Bit(ENGINE_DIRECTX9)) == 0) Engine = ENGINE_OPENGL;
  if (Engine == ENGINE_OPENGL && (!Keep || (Mask & Bit(ENGINE_OPENGL)) == 0)) Engine = ENGINE_DIRECTX5;
  if (!Keep) Engine = ENGINE_DIRECTX5;
  return {Engine, Mask};
}

std::unique_ptr<IEngineProbes> MachineProbes(platform::CWindow& Window) {
  return std::make_unique<CMachineProbes>(Window);
}

void SelectEngine(int Forced, platform::CWindow& Window) {
  const TEngineDecision Decision = DecideEngine(Forced, Preferences().Engine, *MachineProbes(Window));
  ReleaseSurface();
  SetCurrentEngine(Decision.Engine);
  SetUsableEngines(Decision.UsableMask);
  Preferences().Engine = Decision.Engine;
  GetSurface()->SetWindow(&Window);
}

void ChangeEngine(int Engine) {
  const int OldEngine = GetCurrentEngine();
  if (Engine == OldEngine) return;
  CSurface* Old = GetSurface();
  platform::CWindow* Window = Old->Window();
  Old->Shutdown();
  ReleaseSurface();
  std::unique_ptr<CSurface> Surface = MakeSurface(Engine);
  Surface->SetWindow(Window);
  SetCurrentEngine(Engine);
  if (!ProbeEngine(Engine, *Surface)) {
    SetCurrentEngine(OldEngine);
    Surface = MakeSurface(OldEngine);
    Surface->SetWindow(Window);
  }
  ReplaceSurface(std::move(Surface));
  GetSurface()->Startup();
  Preferences().Engine = GetCurrentEngine();
}

bool StartFrame(platform::CWindow& Window) {
  const TFullscreenMode& Configured = Preferences().FullscreenMode;
  TGraphicMode Mode{Configured.Width, Configured.Height, Configured.Depth, 0};
  if (!GetSurface()->Validate(&Window, GetViewMode(), &Mode, false)) {
    ChangeEngine(ENGINE_DIRECTX5);
    GetSurface()->Validate(&Window, GetViewMode(), &Mode, false);
  }
  CSurface* Surface = GetSurface();
  if (Surface->TestLost(1)) ResetVideoCache();
  if (Surface->IsSuspended()) {
    platform::SleepFor(std::chrono::milliseconds(10));
    return false;
  }
  Surface->Limiter().SampleFrame();
  return true;
}

void FinishFrame() { GetSurface()->Present(); }

void ShutdownSurface() {
  if (CSurface* Surface = CurrentSurfaceOrNull()) Surface->Shutdown();
  ReleaseSurface();
}

int GetUsableEngines() { return UsableEngines; }

void SetUsableEngines(int Mask) { UsableEngines = Mask; }
