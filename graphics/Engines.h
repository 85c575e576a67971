#pragma once
// Which engine draws: the decision at start with its fallbacks, the change at
// run time, and the frame sequence that every repaint runs.
#include <memory>

#include "graphics/Surface.h"

namespace platform {
class CWindow;
}

enum class TOpenGLFormat {
  NONE,     // no pixel format with OpenGL for the window
  GENERIC,  // only the system's unaccelerated implementation
  USABLE,
};

// What the decision asks of the machine; each question is asked at most once,
// and only where the decision needs it.
class IEngineProbes {
 public:
  virtual ~IEngineProbes() = default;
  virtual bool HasDirect3D9Library() = 0;
  virtual bool ProbeDirect3D9() = 0;
  virtual TOpenGLFormat ChooseOpenGLFormat() = 0;
  virtual bool ProbeOpenGL() = 0;
};

struct TEngineDecision {
  int Engine = ENGINE_DIRECTX5;
  int UsableMask = 0;  // bits 1 << engine

  bool operator==(const TEngineDecision&) const = default;
};

// The decision itself: Forced from the command line (-1 if none), Configured
// from the options (any value).
TEngineDecision DecideEngine(int Forced, int Configured, IEngineProbes& Probes);

// The probes of this machine, on the given window.
std::unique_ptr<IEngineProbes> MachineProbes(platform::CWindow& Window);

// Decides with the machine's probes, and records the engine as current and in
// the options.
void SelectEngine(int Forced, platform::CWindow& Window);
// Shuts the current surface down and starts one of Engine, or of the old
// engine again if Engine's probe fails; the options record the result.
void ChangeEngine(int Engine);

// Steps 1 to 4 of a repaint: the surface is validated (a failing engine is
// replaced by engine 0), lost sprite pages reset the video cache, and the frame
// time ring takes a sample. False if nothing is to be drawn (suspended).
bool StartFrame(platform::CWindow& Window);
// The last step: the surface presents.
void FinishFrame();
// The current surface shut down and gone; a window's context goes with it,
// so this runs before the window closes.
void ShutdownSurface();

// For the engine choice and its tests: the current engine and surface.
void SetCurrentEngine(int Engine);
void ReplaceSurface(std::unique_ptr<CSurface> Surface);
void SetUsableEngines(int Mask);
