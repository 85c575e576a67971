#include "graphics/Recorder.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

CDrawingRecorder* Active = nullptr;

std::string ColorText(TRGBColor Color) {
  return std::to_string(Color.r) + "," + std::to_string(Color.g) + "," + std::to_string(Color.b);
}

std::string RectText(int x, int y, int Width, int Height) {
  return std::to_string(x) + "," + std::to_string(y) + "," + std::to_string(Width) + "," + std::to_string(Height);
}

// Latin-1 bytes outside the printable ASCII range, quotes and backslashes
// are escaped, so that a log is plain ASCII with one item a line.
std::string Quoted(std::string_view Text) {
  std::string Result = "\"";
  for (const char Character : Text) {
    const auto Byte = static_cast<unsigned char>(Character);
    if (Byte < 0x20 || Byte >= 0x7F || Byte == '"' || Byte == '\\') {
      char Escape[8];
      std::snprintf(Escape, sizeof(Escape), "\\x%02X", Byte);
      Result += Escape;
    } else {
      Result += Character;
    }
  }
  return Result + "\"";
}

}  // namespace

void CDrawingRecorder::Text(int Surface, int x, int y, int Font, TRGBColor Color, bool Highlight, int Alignment,
                            TRect ClipRect, std::string_view Text) {
  std::string Line = "text s=" + std::to_string(Surface) + " at=" + std::to_string(x) + "," + std::to_string(y) +
                     " font=" + std::to_string(Font) + " rgb=" + ColorText(Color) +
                     " align=" + std::to_string(Alignment) + " highlight=" + (Highlight ? "1" : "0");
  if (ClipRect != NO_CLIP) Line += " clip=" + RectText(ClipRect.x, ClipRect.y, ClipRect.width, ClipRect.height);
  m_Lines.push_back(Line + " " + Quoted(Text));
}

void CDrawingRecorder::Skin(int Surface, int x, int y, int Width, int Height, int Skin, int StartX, int StartY) {
  m_Lines.push_back("skin s=" + std::to_string(Surface) + " number=" + std::to_string(Skin) +
                    " area=" + RectText(x, y, Width, Height) + " start=" + std::to_string(StartX) + "," +
                    std::to_string(StartY));
}

void CDrawingRecorder::Rectangle(int Surface, int x, int y, int Width, int Height, TRGBColor Color, int Alpha) {
  m_Lines.push_back("rect s=" + std::to_string(Surface) + " area=" + RectText(x, y, Width, Height) +
                    " rgb=" + ColorText(Color) + " alpha=" + std::to_string(Alpha));
}

void CDrawingRecorder::Frame(int Surface, int x, int y, int Width, int Height, int Thickness, TRGBColor Color) {
  m_Lines.push_back("frame s=" + std::to_string(Surface) + " area=" + RectText(x, y, Width, Height) +
                    " thickness=" + std::to_string(Thickness) + " rgb=" + ColorText(Color));
}

std::string CDrawingRecorder::Log() const {
  std::string Result;
  for (const std::string& Line : m_Lines) Result += Line + "\n";
  return Result;
}

CDrawingRecorder* ActiveRecorder() { return Active; }
void SetActiveRecorder(CDrawingRecorder* Recorder) { Active = Recorder; }

CFrameRecording::CFrameRecording() {
  const char* FileName = std::getenv("KELMO_RECORD_DRAWING");
  if (FileName != nullptr) m_FileName = FileName;
}

CFrameRecording::~CFrameRecording() {
  if (Active == &m_Recorder) SetActiveRecorder(nullptr);
}

void CFrameRecording::BeginFrame() {
  if (!IsOn()) return;
  m_Recorder.Clear();
  SetActiveRecorder(&m_Recorder);
}

// Written beside the target and renamed, so that a reader never sees half a frame.
void CFrameRecording::EndFrame() {
  if (!IsOn()) return;
  SetActiveRecorder(nullptr);
  std::string Log = m_Recorder.Log();
  if (Log == m_Written) return;
  const std::string Temporary = m_FileName + ".part";
  {
    std::ofstream File(Temporary, std::ios::binary | std::ios::trunc);
    File << Log;
    if (!File) return;
  }
  std::error_code Error;
  std::filesystem::rename(Temporary, m_FileName, Error);
  if (!Error) m_Written = std::move(Log);
}
