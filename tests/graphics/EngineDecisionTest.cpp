// The engine decision over the whole matrix of configured engine and the
// availability of each engine.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "graphics/Engines.h"

namespace {

struct TMachine {
  bool Direct3D9Library = false;
  bool Direct3D9Works = false;
  TOpenGLFormat Format = TOpenGLFormat::NONE;
  bool OpenGLWorks = false;
};

class CFakeProbes : public IEngineProbes {
 public:
  explicit CFakeProbes(TMachine Machine) : m_Machine(Machine) {}

  bool HasDirect3D9Library() override {
    ++LibraryChecks;
    return m_Machine.Direct3D9Library;
  }
  bool ProbeDirect3D9() override {
    ++Direct3D9Probes;
    return m_Machine.Direct3D9Works;
  }
  TOpenGLFormat ChooseOpenGLFormat() override {
    ++FormatChecks;
    return m_Machine.Format;
  }
  bool ProbeOpenGL() override {
    ++OpenGLProbes;
    return m_Machine.OpenGLWorks;
  }

  int LibraryChecks = 0;
  int Direct3D9Probes = 0;
  int FormatChecks = 0;
  int OpenGLProbes = 0;

 private:
  TMachine m_Machine;
};

std::string Describe(int Configured, const TMachine& M) {
  std::ostringstream Text;
  Text << "configured " << Configured << ", library " << M.Direct3D9Library << ", Direct3D 9 works "
       << M.Direct3D9Works << ", format " << static_cast<int>(M.Format) << ", OpenGL works " << M.OpenGLWorks;
  return Text.str();
}

TEST(EngineDecision, ForcedEngineStandsAndNothingIsProbed) {
  for (int Forced = 0; Forced <= 2; ++Forced) {
    CFakeProbes Probes({true, false, TOpenGLFormat::NONE, false});
    EXPECT_EQ(DecideEngine(Forced, 1, Probes), (TEngineDecision{Forced, 0}));
    EXPECT_EQ(Probes.LibraryChecks + Probes.Direct3D9Probes + Probes.FormatChecks + Probes.OpenGLProbes, 0);
  }
}

// Every combination: the result is an engine that works or engine 0, each
// question is asked at most once and only where it matters, and a usable
// configured engine is kept unless a failed second-engine probe intervenes.
TEST(EngineDecision, WholeMatrixKeepsItsRules) {
  const TOpenGLFormat Formats[] = {TOpenGLFormat::NONE, TOpenGLFormat::GENERIC, TOpenGLFormat::USABLE};
  for (const int Forced : {-1, 3}) {
    for (const int Configured : {-1, 0, 1, 2, 7}) {
      for (const bool Library : {false, true}) {
        for (const bool Direct3D9Works : {false, true}) {
          for (const TOpenGLFormat Format : Formats) {
            for (const bool OpenGLWorks : {false, true}) {
              const TMachine Machine{Library, Direct3D9Works, Format, OpenGLWorks};
              const std::string Case = Describe(Configured, Machine);
              CFakeProbes Probes(Machine);
              const TEngineDecision Decision = DecideEngine(Forced, Configured, Probes);
              const bool Direct3D9Usable = Library && Direct3D9Works;
              const bool OpenGLUsable = Format == TOpenGLFormat::USABLE && OpenGLWorks;

              EXPECT_EQ(Decision.UsableMask, (Direct3D9Usable ? 4 : 0) | (OpenGLUsable ? 2 : 0)) << Case;
              EXPECT_EQ(Probes.LibraryChecks, 1) << Case;
              EXPECT_EQ(Probes.Direct3D9Probes, Library ? 1 : 0) << Case;
              EXPECT_EQ(Probes.FormatChecks, 1) << Case;
              EXPECT_EQ(Probes.OpenGLProbes, Format == TOpenGLFormat::USABLE ? 1 : 0) << Case;

              const int Expected = [&] {
                const bool Configurable = Configured >= 0 && Configured <= 2;
                const bool FailedSecondEngine = Library && !Direct3D9Works;
                if (Configurable && !FailedSecondEngine) {
                  if (Configured == 2 && Direct3D9Usable) return 2;
                  if (Configured == 0) return 0;
                  return OpenGLUsable ? 1 : 0;
                }
                if (Direct3D9Usable) return 2;
                return OpenGLUsable ? 1 : 0;
              }();
              EXPECT_EQ(Decision.Engine, Expected) << Case;
            }
          }
        }
      }
    }
  }
}

TEST(EngineDecision, NamedCases) {
  struct TCase {
    int Configured;
    TMachine Machine;
    int Engine;
  };
  const TCase Cases[] = {
      // This platform: no second engine; OpenGL under a software rasteriser works.
      {-1, {false, false, TOpenGLFormat::USABLE, true}, 1},
      {2, {false, false, TOpenGLFormat::USABLE, true}, 1},
      {0, {false, false, TOpenGLFormat::USABLE, true}, 0},
      // No OpenGL at all, or only the generic one: the software engine.
      {1, {false, false, TOpenGLFormat::NONE, false}, 0},
      {1, {false, false, TOpenGLFormat::GENERIC, true}, 0},
      {-1, {false, false, TOpenGLFormat::USABLE, false}, 0},
      // A failed probe of the second engine moves even a configured 0 or 2 on.
      {2, {true, false, TOpenGLFormat::USABLE, true}, 1},
      {0, {true, false, TOpenGLFormat::USABLE, true}, 1},
      {2, {true, false, TOpenGLFormat::NONE, false}, 0},
      // Preference with nothing configured.
      {-1, {true, true, TOpenGLFormat::USABLE, true}, 2},
      {1, {true, true, TOpenGLFormat::USABLE, true}, 1},
      {1, {true, true, TOpenGLFormat::USABLE, false}, 0},
  };
  for (const TCase& Case : Cases) {
    CFakeProbes Probes(Case.Machine);
    EXPECT_EQ(DecideEngine(-1, Case.Configured, Probes).Engine, Case.Engine)
        << Describe(Case.Configured, Case.Machine);
  }
}

}  // namespace
