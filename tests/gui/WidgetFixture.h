#pragma once
// Widgets drawn on the software engine with the built pictures and fonts
// (and, for displays, the object types and sprites), with the drawing
// recorder listening.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "graphics/Recorder.h"
#include "graphics/SurfaceDX.h"
#include "gui/GUI.h"
#include "world/Objects.h"

#ifndef KELMO_DATA_DIR
#error "KELMO_DATA_DIR must name the folder of the built data files"
#endif

namespace guitest {

class CWidgetTest : public ::testing::Test {
 protected:
  explicit CWidgetTest(bool WithObjects = false) : m_WithObjects(WithObjects) {
    ResetProgramState();
    InitPreferences();
    InitGUI();
    SetCurrentEngine(ENGINE_DIRECTX5);
    ReplaceSurface(std::make_unique<CSurfaceDX>());
    GetSurface()->Startup();
    GetSurface()->ResumeSurfaces();
    const std::string Data = KELMO_DATA_DIR;
    if (WithObjects) {
      LoadObjects(Data + "/Kelmo.dat");
      LoadSprites(Data + "/Kelmo.spr");
    }
    LoadPictures(Data + "/Kelmo.pic");
    InitFonts();
    ResetVideoCache();
    SetActiveRecorder(&Recorder);
  }
  ~CWidgetTest() override {
    SetActiveRecorder(nullptr);
    ExitGUI();
    ExitGraphics();
    ReleaseSurface();
    if (m_WithObjects) ExitObjects();
    ExitPreferences();
  }

  CDrawingRecorder Recorder;

 private:
  bool m_WithObjects;
};

}  // namespace guitest
