#pragma once
// A log of what is drawn, so that tests can tell what is on the screen
// without comparing pixels: every text, skin and rectangle that the drawing
// functions put on a surface becomes one line. Off by default; while off, each
// drawing function pays one null test.
#include <string>
#include <string_view>
#include <vector>

#include "graphics/Surface.h"

class CDrawingRecorder {
 public:
  void Text(int Surface, int x, int y, int Font, TRGBColor Color, bool Highlight, int Alignment, TRect ClipRect,
            std::string_view Text);
  void Skin(int Surface, int x, int y, int Width, int Height, int Skin, int StartX, int StartY);
  void Rectangle(int Surface, int x, int y, int Width, int Height, TRGBColor Color, int Alpha);
  void Frame(int Surface, int x, int y, int Width, int Height, int Thickness, TRGBColor Color);

  const std::vector<std::string>& Lines() const { return m_Lines; }
  // The lines, each ended by a line feed.
  std::string Log() const;
  void Clear() { m_Lines.clear(); }

 private:
  std::vector<std::string> m_Lines;
};

// The recorder that drawing reports to; null while recording is off.
CDrawingRecorder* ActiveRecorder();
void SetActiveRecorder(CDrawingRecorder* Recorder);

// KELMO_RECORD_DRAWING=<file> records the client's frames: the file holds the
// log of the last frame, replaced whenever a frame draws something else.
class CFrameRecording {
 public:
  // Recording starts if the variable names a file.
  CFrameRecording();
  ~CFrameRecording();
  CFrameRecording(const CFrameRecording&) = delete;
  CFrameRecording& operator=(const CFrameRecording&) = delete;

  bool IsOn() const { return !m_FileName.empty(); }
  void BeginFrame();
  void EndFrame();

 private:
  std::string m_FileName;
  CDrawingRecorder m_Recorder;
  std::string m_Written;
};
