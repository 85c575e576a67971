// The art of the interface sheet. A skin's art is a phrase: its first word
// names a family (button, frame, texture, icon, ...), the rest its variant.
// The interface is dark slate in bronze frames; raised things are lit from
// the upper left, sunken things the other way round.
#include <cmath>
#include <map>
#include <sstream>

#include "core/Exception.h"
#include "tools/databuild/ArtKit.h"
#include "tools/databuild/Skins.h"
#include "tools/databuild/Symbols.h"

namespace {

using TWords = std::vector<std::string>;

const TRGBA OUTLINE = Rgb(16, 14, 12);
const TRGBA BRONZE = Rgb(150, 118, 70);
const TRGBA SLATE = Rgb(58, 56, 60);
const TRGBA FACE = Rgb(96, 90, 84);

TWords Split(const std::string& Text) {
  std::istringstream In(Text);
  TWords Words;
  for (std::string Word; In >> Word;) Words.push_back(Word);
  return Words;
}

bool Has(const TWords& W, const std::string& Word) {
  return std::find(W.begin(), W.end(), Word) != W.end();
}

// Slate, leather and the like: textures that tile over their own size.
TCanvas Surface(int W, int H, const std::string& Style) {
  const TNoise N(Style.size() * 7 + 3);
  const TRGBA Base = Style == "dialog" ? Rgb(70, 66, 64)
                     : Style == "fancy" ? Rgb(64, 56, 48)
                     : Style == "menu"  ? Rgb(60, 60, 64)
                                        : SLATE;
  return Texture(W, H, [&](int X, int Y) {
    const double V = N.fractal(X, Y, std::min({16, W, H}), 3, W, H);
    return Shade(Base, 0.82 + 0.3 * V);
  });
}

struct TFrameStyle {
  int Top, Side, Bottom;
};

TFrameStyle FrameStyle(const std::string& Style) {
  if (Style == "dialog") return {17, 4, 4};
  if (Style == "window") return {15, 4, 4};
  if (Style == "fancy") return {8, 8, 8};
  if (Style == "menu") return {3, 3, 3};
  return {4, 4, 4};  // panel
}

// The colour of a frame band at depth D of Thickness from the outer edge.
TRGBA Band(int D, int Thickness, bool Title) {
  if (D == 0) return OUTLINE;
  if (D == Thickness - 1) return Shade(OUTLINE, 1.6);
  if (Title) return Shade(BRONZE, 1.25 - 0.5 * D / Thickness);
  return Shade(BRONZE, D == 1 ? 1.3 : 1.0 - 0.08 * D);
}

// A whole frame of W x H, from which the pieces are cut: every pixel depends
// only on its distance to the edges, so edges tile along themselves.
TCanvas FrameSpecimen(const TFrameStyle& S, int W, int H) {
  TCanvas I(W, H);
  for (int Y = 0; Y < H; ++Y) {
    for (int X = 0; X < W; ++X) {
      const int Depths[4] = {Y, X, W - 1 - X, H - 1 - Y};
      const int Thick[4] = {S.Top, S.Side, S.Side, S.Bottom};
      int Best = -1;
      for (int K = 0; K < 4; ++K) {
        if (Depths[K] < Thick[K] && (Best < 0 || Depths[K] < Depths[Best])) Best = K;
      }
      if (Best >= 0) I.set(X, Y, Band(Depths[Best], Thick[Best], Best == 0 && S.Top > 8));
    }
  }
  if (S.Side >= 8) {  // rivets in the corners of the fancy frame
    for (auto [X, Y] : {std::pair{4, 4}, {W - 5, 4}, {4, H - 5}, {W - 5, H - 5}}) {
      I.ellipse(X + 0.5, Y + 0.5, 2, 2, Rgb(210, 180, 110));
      I.set(X - 1, Y - 1, Rgb(250, 230, 170));
    }
  }
  return I;
}

TCanvas FramePiece(const std::string& Style, const std::string& Piece, int W, int H) {
  const TFrameStyle S = FrameStyle(Style);
  const int SW = S.Side * 2 + W + 16, SH = S.Top + S.Bottom + H + 16;
  const TCanvas Whole = FrameSpecimen(S, SW, SH);
  if (Piece == "tl") return Whole.crop(0, 0, W, H);
  if (Piece == "t") return Whole.crop(S.Side + 4, 0, W, H);
  if (Piece == "tr") return Whole.crop(SW - W, 0, W, H);
  if (Piece == "l") return Whole.crop(0, S.Top + 4, W, H);
  if (Piece == "r") return Whole.crop(SW - W, S.Top + 4, W, H);
  if (Piece == "bl") return Whole.crop(0, SH - H, W, H);
  if (Piece == "b") return Whole.crop(S.Side + 4, SH - H, W, H);
  if (Piece == "br") return Whole.crop(SW - W, SH - H, W, H);
  ThrowException("unknown frame piece", {{"Piece", Piece}});
}

TCanvas Button(int W, int H, bool Down, TRGBA Face) {
  TCanvas I(W, H);
  for (int Y = 0; Y < H; ++Y) {
    const double T = static_cast<double>(Y) / std::max(1, H - 1);
    I.fillRect(0, Y, W, 1, Shade(Face, Down ? 0.8 - 0.1 * T : 1.15 - 0.3 * T));
  }
  I.frame(0, 0, W, H, OUTLINE);
  I.bevel(1, 1, W - 2, H - 2, Shade(Face, 1.5), Shade(Face, 0.55), Down);
  return I;
}

TCanvas Line(int W, int H, bool Dark) {
  TCanvas I(W, H, Dark ? Rgb(24, 22, 22) : Rgb(118, 112, 104));
  return I;
}

// The program's mouse pointers, on the rectangles the client fixes.
TCanvas Pointer(const std::string& Kind, int W, int H) {
  TCanvas I(W, H);
  const TRGBA Fill = Rgb(236, 232, 220);
  if (Kind == "arrow") {
    I.polygon({{0.5, 0.5}, {0.5, H - 3.5}, {3.5, H - 6.5}, {6, H - 1.0}, {8, H - 2.0}, {5.5, H - 7.5},
               {W - 1.0, H - 7.5}},
              Fill);
  } else if (Kind == "resize") {
    I.polygon({{W / 2.0, 1}, {W - 1.0, 6}, {W / 2.0 + 1.5, 6}, {W / 2.0 + 1.5, H - 6.0}, {W - 1.0, H - 6.0},
               {W / 2.0, H - 1.0}, {1, H - 6.0}, {W / 2.0 - 1.5, H - 6.0}, {W / 2.0 - 1.5, 6}, {1, 6}},
              Fill);
  } else if (Kind == "wait") {
    I.polygon({{1, 1}, {W - 1.0, 1}, {W / 2.0 + 1, H / 2.0}, {W - 1.0, H - 1.0}, {1, H - 1.0},
               {W / 2.0 - 1, H / 2.0}},
              Fill);
    I.polygon({{3, H - 2.0}, {W - 3.0, H - 2.0}, {W / 2.0, H * 0.65}}, Rgb(220, 180, 80));
  } else if (Kind == "target") {
    I.ring(W / 2.0, H / 2.0, W / 2.0 - 1, 2, Fill);
    I.fillRect(W / 2, 0, 1, H, Fill);
    I.fillRect(0, H / 2, W, 1, Fill);
    I.fillRect(W / 2 - 1, H / 2 - 1, 3, 3, Rgb(220, 40, 30));
  } else {  // lens
    I.ring(6.5, 6.5, 6, 2, Fill);
    I.ellipse(6.5, 6.5, 4, 4, Rgb(150, 200, 240));
    I.thickLine(11, 11, W - 1.5, H - 1.5, 3, Fill);
  }
  I.harden();
  I.outline(OUTLINE);
  return I;
}

TCanvas ArrowButton(int W, int H, const std::string& Direction, bool Down) {
  TCanvas I = Button(W, H, Down, FACE);
  const double CX = W / 2.0 + (Down ? 0.5 : 0), CY = H / 2.0 + (Down ? 0.5 : 0), R = std::min(W, H) / 4.0;
  const TRGBA C = Rgb(230, 220, 190);
  if (Direction == "up") I.polygon({{CX - R, CY + R / 2}, {CX + R, CY + R / 2}, {CX, CY - R}}, C);
  if (Direction == "down") I.polygon({{CX - R, CY - R / 2}, {CX + R, CY - R / 2}, {CX, CY + R}}, C);
  if (Direction == "left") I.polygon({{CX + R / 2, CY - R}, {CX + R / 2, CY + R}, {CX - R, CY}}, C);
  if (Direction == "right") I.polygon({{CX - R / 2, CY - R}, {CX - R / 2, CY + R}, {CX + R, CY}}, C);
  return I;
}

// Scroll bar and slider parts: the track is a sunken groove, the knob a
// raised bar in pieces; Vertical says along which axis they run.
TCanvas Track(int W, int H, bool Vertical) {
  TCanvas I(W, H, Rgb(34, 32, 32));
  if (Vertical) {
    I.fillRect(0, 0, 1, H, OUTLINE);
    I.fillRect(W - 1, 0, 1, H, Rgb(90, 86, 80));
  } else {
    I.fillRect(0, 0, W, 1, OUTLINE);
    I.fillRect(0, H - 1, W, 1, Rgb(90, 86, 80));
  }
  return I;
}

TCanvas Knob(int W, int H, const std::string& Piece, bool Vertical) {
  // A whole knob three times the piece's length, cut like a frame.
  const int Long = Vertical ? H * 3 + 8 : W * 3 + 8;
  TCanvas Whole = Button(Vertical ? W : Long, Vertical ? Long : H, false, BRONZE);
  for (int K = -2; K <= 2; K += 2) {  // grip lines in the middle
    if (Vertical) Whole.fillRect(3, Long / 2 + K, W - 6, 1, Shade(BRONZE, 0.6));
    else Whole.fillRect(Long / 2 + K, 3, 1, H - 6, Shade(BRONZE, 0.6));
  }
  const int At = Piece == "start" ? 0 : Piece == "end" ? Long - (Vertical ? H : W) : (Long - (Vertical ? H : W)) / 2;
  return Vertical ? Whole.crop(0, At, W, H) : Whole.crop(At, 0, W, H);
}

// Progress and unjust bars: a sunken track and a lit fill, each in three pieces.
TCanvas Bar(int W, int H, const TWords& Words) {
  const bool Fill = Words.at(1) == "fill";
  const std::string Piece = Words.back();
  const TRGBA C = Fill ? ColourByName(Words.at(2)) : Rgb(30, 28, 28);
  const int Long = W * 3 + 8;
  TCanvas Whole(Long, H);
  for (int Y = 0; Y < H; ++Y) {
    const double T = static_cast<double>(Y) / std::max(1, H - 1);
    Whole.fillRect(0, Y, Long, 1, Fill ? Shade(C, 1.25 - 0.5 * T) : C);
  }
  if (!Fill) Whole.frame(0, 0, Long, H, OUTLINE);
  else Whole.fillRect(0, 0, Long, 1, Shade(C, 1.5));
  const int At = Piece == "left" ? 0 : Piece == "right" ? Long - W : (Long - W) / 2;
  return Whole.crop(At, 0, W, H);
}

TCanvas Check(int W, int H, bool On) {
  TCanvas I(W, H, Rgb(30, 28, 28));
  I.bevel(0, 0, W, H, Rgb(110, 104, 96), OUTLINE, true);
  if (On) {
    I.thickLine(3, H / 2.0, W / 2.0 - 0.5, H - 3.5, 2, Rgb(120, 220, 110));
    I.thickLine(W / 2.0 - 0.5, H - 3.5, W - 2.5, 2.5, 2, Rgb(120, 220, 110));
  }
  return I;
}

TCanvas Rose(int W, int H) {
  TCanvas I(W, H);
  const double C = W / 2.0;
  I.ring(C, C, C - 1, 1.5, BRONZE);
  for (int K = 0; K < 4; ++K) {
    const double A = K * M_PI / 2 - M_PI / 2;
    const TRGBA Tip = K == 0 ? Rgb(220, 60, 40) : Rgb(220, 210, 190);
    I.polygon({{C + std::cos(A) * (C - 2), C + std::sin(A) * (C - 2)}, {C + std::cos(A - M_PI / 4) * 4, C + std::sin(A - M_PI / 4) * 4},
               {C, C}, {C + std::cos(A + M_PI / 4) * 4, C + std::sin(A + M_PI / 4) * 4}},
              Tip);
  }
  I.ellipse(C, C, 2.5, 2.5, Rgb(230, 190, 90));
  I.harden();
  I.outline(OUTLINE);
  return I;
}

TCanvas Slot(int W, int H, const TWords& Words) {
  TCanvas I(W, H, Rgb(40, 38, 38));
  I.bevel(0, 0, W, H, Rgb(104, 98, 90), OUTLINE, true);
  if (Words.size() > 1) {
    TCanvas Ghost(W, H);
    DrawSymbol(Ghost, Words[1], W / 2.0, H / 2.0, W * 0.7, Rgb(74, 70, 68));
    Ghost.harden();
    I.paste(Ghost, 0, 0);
  }
  return I;
}

// A premium advertisement: a framed picture of a symbol on a lit ground.
TCanvas Picture(int W, int H, const TWords& Words) {
  TCanvas I(W, H);
  for (int Y = 0; Y < H; ++Y) {
    I.fillRect(0, Y, W, 1, Mix(Rgb(50, 70, 110), Rgb(120, 90, 60), static_cast<double>(Y) / H));
  }
  DrawSymbol(I, Words.at(1), W / 2.0, H / 2.0, W * 0.8, ColourByName(Words.size() > 2 ? Words[2] : "gold"));
  I.frame(0, 0, W, H, BRONZE);
  I.frame(1, 1, W - 2, H - 2, OUTLINE);
  return I;
}

TCanvas Tab(int W, int H, bool Active) {
  TCanvas I = Button(W, H + 2, false, Active ? Rgb(110, 100, 84) : Rgb(70, 66, 62));
  return I.crop(0, 0, W, H);
}

TCanvas Latency(int W, int H, int Bars) {
  TCanvas I(W, H);
  const TRGBA C = Bars == 3 ? Rgb(90, 210, 80) : Bars == 2 ? Rgb(230, 200, 60) : Rgb(220, 60, 40);
  for (int K = 0; K < 3; ++K) {
    const int BH = 3 + K * (H - 3) / 2;
    I.fillRect(1 + K * (W / 3), H - BH, W / 3 - 1, BH, K < Bars ? C : Rgb(60, 60, 60));
  }
  return I;
}

TCanvas Speech(int W, int H, const std::string& Kind) {
  TCanvas I(W, H);
  const TRGBA C = Kind == "trade" ? Rgb(240, 210, 90) : Kind == "quest" ? Rgb(120, 200, 250) : Rgb(236, 236, 236);
  I.ellipse(W / 2.0, H / 2.0 - 1, W / 2.0 - 1, H / 2.0 - 2, C);
  I.polygon({{3, H - 4.0}, {7, H - 4.0}, {2, H - 0.5}}, C);
  for (int K = -1; K <= 1; ++K) I.set(W / 2 + K * 3, H / 2 - 1, Rgb(40, 40, 40));
  I.harden();
  I.outline(OUTLINE);
  return I;
}

TCanvas Draw(const TWords& Words, int W, int H) {
  const std::string& Family = Words[0];
  if (Family == "button") {
    const TRGBA Face = Has(Words, "gold") ? Rgb(170, 130, 50) : FACE;
    TCanvas I = Button(W, H, Has(Words, "down"), Face);
    const std::string& Last = Words.back();
    if (Words.size() > 1 && Last != "gold" && Last != "down" && Last != "dim") {
      const int Shift = Has(Words, "down") ? 1 : 0;
      TCanvas Sign(W, H);
      DrawSymbol(Sign, Last, W / 2.0 + Shift, H / 2.0 + Shift, std::min(W, H) - 4.0,
                 Has(Words, "dim") ? Rgb(120, 114, 106) : Rgb(236, 226, 200));
      Sign.harden();
      I.paste(Sign, 0, 0);
    }
    return I;
  }
  if (Family == "frame") return FramePiece(Words.at(1), Words.at(2), W, H);
  if (Family == "texture") return Surface(W, H, Words.at(1));
  if (Family == "line") return Line(W, H, Words.at(1) == "dark");
  if (Family == "pointer") return Pointer(Words.at(1), W, H);
  if (Family == "arrow") return ArrowButton(W, H, Words.at(1), Has(Words, "down"));
  if (Family == "track") return Track(W, H, Has(Words, "vertical"));
  if (Family == "knob") return Knob(W, H, Words.at(1), Has(Words, "vertical"));
  if (Family == "bar") return Bar(W, H, Words);
  if (Family == "check") return Check(W, H, Words.at(1) == "on");
  if (Family == "rose") return Rose(W, H);
  if (Family == "slot") return Slot(W, H, Words);
  if (Family == "picture") return Picture(W, H, Words);
  if (Family == "tab") return Tab(W, H, Has(Words, "active"));
  if (Family == "latency") return Latency(W, H, std::stoi(Words.at(1)));
  if (Family == "speech") return Speech(W, H, Words.at(1));
  if (Family == "icon") return Icon(W, H, Words.at(1), Words.size() > 2 ? Words[2] : "");
  if (Family == "mark") return Mark(W, H, Words.at(1), Words.size() > 2 ? Words[2] : "white");
  ThrowException("unknown skin art", {{"Art", Family}});
}

const std::vector<std::string> FAMILIES{"button", "frame", "texture", "line",  "pointer", "arrow",
                                        "track",  "knob",  "bar",     "check", "rose",    "slot",
                                        "picture", "tab",  "latency", "speech", "icon",   "mark"};

}  // namespace

bool IsSkinArt(const std::string& Art) {
  const TWords Words = Split(Art);
  if (Words.empty() || !Has(FAMILIES, Words[0])) return false;
  try {
    Draw(Words, 16, 16);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

TCanvas DrawInterfaceSheet(const TSkinTable& Table) {
  TCanvas Sheet(SKIN_SHEET_WIDTH, Table.SheetHeight);
  for (const TSkin& Skin : Table.Skins) {
    if (Skin.Name.empty() || Skin.SameAs != 0) continue;
    TCanvas Art = Draw(Split(Skin.Art), Skin.Width, Skin.Height);
    Sheet.paste(Art, Skin.X, Skin.Y);
  }
  return Sheet;
}
