#include "tools/databuild/Symbols.h"

#include <cmath>
#include <functional>
#include <map>

#include "core/Exception.h"

namespace {

using TPoints = std::vector<std::pair<double, double>>;

// A symbol is drawn in a unit box from -1 to 1, scaled by S round (X, Y).
struct TPen {
  TCanvas& I;
  double X, Y, S;
  TRGBA C;

  double x(double U) const { return X + U * S; }
  double y(double V) const { return Y + V * S; }
  void dot(double U, double V, double R) const { I.ellipse(x(U), y(V), R * S, R * S, C); }
  void dot(double U, double V, double R, TRGBA Other) const {
    TCanvas Shape(I.width(), I.height());
    Shape.ellipse(x(U), y(V), R * S, R * S, {255, 255, 255, 255});
    apply(Shape, Other);
  }
  void oval(double U, double V, double RU, double RV) const { I.ellipse(x(U), y(V), RU * S, RV * S, C); }
  void line(double U0, double V0, double U1, double V1, double W) const {
    I.thickLine(x(U0), y(V0), x(U1), y(V1), std::max(1.0, W * S), C);
  }
  void poly(const TPoints& P) const { poly(P, C); }
  void poly(const TPoints& P, TRGBA Other) const {
    TPoints Q;
    for (const auto& [U, V] : P) Q.emplace_back(x(U), y(V));
    TCanvas Shape(I.width(), I.height());
    Shape.polygon(Q, {255, 255, 255, 255});
    apply(Shape, Other);
  }
  // Paints Shape's pixels in Other; a transparent Other cuts them out.
  void apply(const TCanvas& Shape, TRGBA Other) const {
    for (int J = 0; J < I.height(); ++J) {
      for (int K = 0; K < I.width(); ++K) {
        if (Shape.at(K, J).a) I.set(K, J, Other);
      }
    }
  }
  void ring(double U, double V, double R, double W) const {
    I.ring(x(U), y(V), R * S, std::max(1.0, W * S), C);
  }
  void box(double U0, double V0, double U1, double V1) const { poly({{U0, V0}, {U1, V0}, {U1, V1}, {U0, V1}}); }
};

TPoints Star(int Points, double Outer, double Inner, double Turn = -M_PI / 2) {
  TPoints P;
  for (int K = 0; K < Points * 2; ++K) {
    const double A = Turn + K * M_PI / Points, R = K % 2 ? Inner : Outer;
    P.emplace_back(std::cos(A) * R, std::sin(A) * R);
  }
  return P;
}

const TRGBA DARK = {20, 18, 16, 255};

const std::map<std::string, std::function<void(const TPen&)>>& Symbols() {
  static const std::map<std::string, std::function<void(const TPen&)>> Table{
      {"heart", [](const TPen& P) {
         P.dot(-0.42, -0.3, 0.45);
         P.dot(0.42, -0.3, 0.45);
         P.poly({{-0.86, -0.15}, {0.86, -0.15}, {0, 0.85}});
       }},
      {"skull", [](const TPen& P) {
         P.oval(0, -0.2, 0.75, 0.65);
         P.box(-0.45, 0.2, 0.45, 0.75);
         P.dot(-0.3, -0.15, 0.2, DARK);
         P.dot(0.3, -0.15, 0.2, DARK);
         P.poly({{0, 0.1}, {-0.1, 0.3}, {0.1, 0.3}}, DARK);
       }},
      {"star", [](const TPen& P) { P.poly(Star(5, 0.95, 0.4)); }},
      {"cross", [](const TPen& P) {
         P.line(-0.7, -0.7, 0.7, 0.7, 0.3);
         P.line(0.7, -0.7, -0.7, 0.7, 0.3);
       }},
      {"check", [](const TPen& P) {
         P.line(-0.75, 0, -0.2, 0.6, 0.3);
         P.line(-0.2, 0.6, 0.8, -0.7, 0.3);
       }},
      {"question", [](const TPen& P) {
         P.ring(0, -0.35, 0.5, 0.25);
         P.poly({{-0.6, -0.35}, {-0.05, -0.35}, {-0.05, 0.1}, {-0.6, 0.1}}, {});
         P.line(0.1, 0.1, 0.1, 0.35, 0.25);
         P.dot(0.1, 0.75, 0.15);
       }},
      {"exclamation", [](const TPen& P) {
         P.line(0, -0.85, 0, 0.3, 0.3);
         P.dot(0, 0.72, 0.18);
       }},
      {"up", [](const TPen& P) { P.poly({{0, -0.85}, {0.8, 0.1}, {0.3, 0.1}, {0.3, 0.8}, {-0.3, 0.8}, {-0.3, 0.1}, {-0.8, 0.1}}); }},
      {"down", [](const TPen& P) { P.poly({{0, 0.85}, {0.8, -0.1}, {0.3, -0.1}, {0.3, -0.8}, {-0.3, -0.8}, {-0.3, -0.1}, {-0.8, -0.1}}); }},
      {"left", [](const TPen& P) { P.poly({{-0.85, 0}, {0.1, 0.8}, {0.1, 0.3}, {0.8, 0.3}, {0.8, -0.3}, {0.1, -0.3}, {0.1, -0.8}}); }},
      {"right", [](const TPen& P) { P.poly({{0.85, 0}, {-0.1, 0.8}, {-0.1, 0.3}, {-0.8, 0.3}, {-0.8, -0.3}, {-0.1, -0.3}, {-0.1, -0.8}}); }},
      {"flame", [](const TPen& P) {
         P.poly({{0, -0.9}, {0.55, -0.1}, {0.6, 0.4}, {0.3, 0.85}, {-0.3, 0.85}, {-0.6, 0.4}, {-0.5, -0.2}, {-0.25, 0.1}});
         P.poly({{0, -0.1}, {0.3, 0.4}, {0.15, 0.8}, {-0.15, 0.8}, {-0.3, 0.4}}, {255, 236, 140, 255});
       }},
      {"drop", [](const TPen& P) {
         P.dot(0, 0.3, 0.55);
         P.poly({{0, -0.9}, {0.5, 0.15}, {-0.5, 0.15}});
       }},
      {"bolt", [](const TPen& P) { P.poly({{0.2, -0.95}, {-0.55, 0.15}, {-0.05, 0.15}, {-0.25, 0.95}, {0.55, -0.2}, {0.05, -0.2}}); }},
      {"snowflake", [](const TPen& P) {
         for (int K = 0; K < 3; ++K) {
           const double A = K * M_PI / 3;
           P.line(-std::cos(A) * 0.85, -std::sin(A) * 0.85, std::cos(A) * 0.85, std::sin(A) * 0.85, 0.18);
         }
       }},
      {"sun", [](const TPen& P) {
         P.dot(0, 0, 0.45);
         for (int K = 0; K < 8; ++K) {
           const double A = K * M_PI / 4;
           P.line(std::cos(A) * 0.6, std::sin(A) * 0.6, std::cos(A) * 0.9, std::sin(A) * 0.9, 0.15);
         }
       }},
      {"swirl", [](const TPen& P) {
         for (int K = 0; K < 24; ++K) {
           const double A = K * 0.45, R = 0.1 + K * 0.035;
           P.dot(std::cos(A) * R, std::sin(A) * R, 0.12);
         }
       }},
      {"wave", [](const TPen& P) {
         for (int Row = 0; Row < 2; ++Row) {
           for (int K = 0; K < 12; ++K) {
             const double U = -0.85 + K * 0.155;
             P.dot(U, -0.25 + Row * 0.55 + std::sin(K * 0.9) * 0.15, 0.12);
           }
         }
       }},
      {"bottle", [](const TPen& P) {
         P.oval(0, 0.35, 0.5, 0.5);
         P.box(-0.18, -0.8, 0.18, 0);
       }},
      {"shield", [](const TPen& P) { P.poly({{-0.7, -0.8}, {0.7, -0.8}, {0.65, 0.1}, {0, 0.9}, {-0.65, 0.1}}); }},
      {"chain", [](const TPen& P) {
         P.ring(-0.35, -0.35, 0.4, 0.16);
         P.ring(0.35, 0.35, 0.4, 0.16);
       }},
      {"boots", [](const TPen& P) { P.poly({{-0.5, -0.8}, {0.1, -0.8}, {0.1, 0.3}, {0.8, 0.4}, {0.8, 0.8}, {-0.5, 0.8}}); }},
      {"fist", [](const TPen& P) {
         P.oval(0, -0.05, 0.7, 0.55);
         P.box(-0.4, 0.3, 0.4, 0.9);
         for (int K = 0; K < 3; ++K) P.line(-0.4 + K * 0.35, -0.5, -0.4 + K * 0.35, -0.1, 0.08);
       }},
      {"sword", [](const TPen& P) {
         P.line(-0.6, 0.6, 0.75, -0.75, 0.22);
         P.line(-0.75, 0.25, -0.25, 0.75, 0.2);
         P.line(-0.6, 0.6, -0.85, 0.85, 0.22);
       }},
      {"swords", [](const TPen& P) {
         P.line(-0.7, 0.7, 0.75, -0.75, 0.2);
         P.line(0.7, 0.7, -0.75, -0.75, 0.2);
         P.line(-0.85, 0.35, -0.35, 0.85, 0.16);
         P.line(0.85, 0.35, 0.35, 0.85, 0.16);
       }},
      {"house", [](const TPen& P) {
         P.poly({{0, -0.85}, {0.85, 0}, {-0.85, 0}});
         P.box(-0.6, 0, 0.6, 0.8);
         P.box(-0.15, 0.3, 0.15, 0.8);
       }},
      {"flag", [](const TPen& P) {
         P.line(-0.6, -0.85, -0.6, 0.9, 0.15);
         P.poly({{-0.55, -0.8}, {0.75, -0.5}, {-0.55, -0.05}});
       }},
      {"coin", [](const TPen& P) {
         P.dot(0, 0, 0.8);
         P.ring(0, 0, 0.55, 0.12);
       }},
      {"key", [](const TPen& P) {
         P.ring(-0.45, -0.35, 0.38, 0.18);
         P.line(-0.2, -0.1, 0.75, 0.8, 0.18);
         P.line(0.45, 0.5, 0.25, 0.7, 0.15);
       }},
      {"lock", [](const TPen& P) {
         P.ring(0, -0.3, 0.45, 0.15);
         P.box(-0.6, -0.1, 0.6, 0.85);
       }},
      {"tree", [](const TPen& P) {
         P.poly({{0, -0.95}, {0.7, 0.45}, {-0.7, 0.45}});
         P.box(-0.12, 0.45, 0.12, 0.9);
       }},
      {"bag", [](const TPen& P) {
         P.oval(0, 0.3, 0.7, 0.6);
         P.poly({{-0.3, -0.3}, {0.3, -0.3}, {0.45, -0.75}, {-0.45, -0.75}});
       }},
      {"gear", [](const TPen& P) {
         P.poly(Star(8, 0.9, 0.65, 0));
         P.dot(0, 0, 0.25, DARK);
       }},
      {"door", [](const TPen& P) {
         P.box(-0.55, -0.85, 0.55, 0.9);
         P.dot(0.3, 0.1, 0.1, DARK);
       }},
      {"plus", [](const TPen& P) {
         P.line(0, -0.75, 0, 0.75, 0.3);
         P.line(-0.75, 0, 0.75, 0, 0.3);
       }},
      {"minus", [](const TPen& P) { P.line(-0.75, 0, 0.75, 0, 0.3); }},
      {"eye", [](const TPen& P) {
         P.oval(0, 0, 0.9, 0.5);
         P.dot(0, 0, 0.35, DARK);
       }},
      {"person", [](const TPen& P) {
         P.dot(0, -0.55, 0.32);
         P.poly({{-0.6, 0.9}, {-0.45, -0.1}, {0.45, -0.1}, {0.6, 0.9}});
       }},
      {"people", [](const TPen& P) {
         P.dot(-0.4, -0.45, 0.26);
         P.dot(0.4, -0.45, 0.26);
         P.poly({{-0.85, 0.85}, {-0.7, -0.05}, {-0.1, -0.05}, {0, 0.85}});
         P.poly({{0, 0.85}, {0.1, -0.05}, {0.7, -0.05}, {0.85, 0.85}});
       }},
      {"scroll", [](const TPen& P) {
         P.box(-0.55, -0.7, 0.55, 0.7);
         P.oval(0, -0.7, 0.65, 0.18);
         P.oval(0, 0.7, 0.65, 0.18);
       }},
      {"book", [](const TPen& P) {
         P.box(-0.7, -0.8, 0.7, 0.8);
         P.line(-0.45, -0.8, -0.45, 0.8, 0.1);
       }},
      {"crown", [](const TPen& P) { P.poly({{-0.85, 0.6}, {-0.85, -0.6}, {-0.4, 0}, {0, -0.75}, {0.4, 0}, {0.85, -0.6}, {0.85, 0.6}}); }},
      {"moon", [](const TPen& P) {
         P.dot(0, 0, 0.8);
         P.dot(0.35, -0.25, 0.65, {});
       }},
      {"diamond", [](const TPen& P) { P.poly({{0, -0.9}, {0.75, 0}, {0, 0.9}, {-0.75, 0}}); }},
      {"circle", [](const TPen& P) { P.dot(0, 0, 0.75); }},
      {"square", [](const TPen& P) { P.box(-0.7, -0.7, 0.7, 0.7); }},
      {"triangle", [](const TPen& P) { P.poly({{0, -0.85}, {0.85, 0.7}, {-0.85, 0.7}}); }},
      {"boat", [](const TPen& P) {
         P.poly({{-0.9, 0.25}, {0.9, 0.25}, {0.55, 0.75}, {-0.55, 0.75}});
         P.line(0, -0.9, 0, 0.25, 0.1);
         P.poly({{0.08, -0.85}, {0.7, 0.1}, {0.08, 0.1}});
       }},
      {"horse", [](const TPen& P) {
         P.poly({{-0.4, 0.9}, {-0.45, 0}, {-0.1, -0.7}, {0.3, -0.9}, {0.85, -0.3}, {0.6, -0.1}, {0.25, -0.35}, {0.35, 0.9}});
       }},
      {"ring", [](const TPen& P) {
         P.ring(0, 0.15, 0.6, 0.2);
         P.dot(0, -0.6, 0.25);
       }},
      {"hourglass", [](const TPen& P) { P.poly({{-0.6, -0.85}, {0.6, -0.85}, {0.08, 0}, {0.6, 0.85}, {-0.6, 0.85}, {-0.08, 0}}); }},
      {"dove", [](const TPen& P) {
         P.oval(0, 0.15, 0.7, 0.35);
         P.poly({{-0.2, 0}, {0.5, -0.85}, {0.3, 0.1}});
         P.dot(-0.65, -0.05, 0.22);
       }},
      {"hand", [](const TPen& P) {
         P.box(-0.5, -0.2, 0.5, 0.85);
         for (int K = 0; K < 4; ++K) P.line(-0.38 + K * 0.25, -0.2, -0.38 + K * 0.25, -0.85, 0.18);
         P.line(0.5, 0.3, 0.85, -0.1, 0.18);
       }},
      {"chat", [](const TPen& P) {
         P.oval(0, -0.15, 0.9, 0.6);
         P.poly({{-0.5, 0.3}, {-0.1, 0.3}, {-0.7, 0.9}});
       }},
      {"exit", [](const TPen& P) {
         P.box(-0.8, -0.85, -0.2, 0.85);
         P.poly({{0.9, 0}, {0.3, -0.55}, {0.3, -0.2}, {-0.05, -0.2}, {-0.05, 0.2}, {0.3, 0.2}, {0.3, 0.55}});
       }},
      {"map", [](const TPen& P) {
         P.poly({{-0.85, -0.6}, {-0.3, -0.8}, {0.3, -0.6}, {0.85, -0.8}, {0.85, 0.6}, {0.3, 0.8}, {-0.3, 0.6}, {-0.85, 0.8}});
         P.line(-0.3, -0.8, -0.3, 0.6, 0.06);
         P.line(0.3, -0.6, 0.3, 0.8, 0.06);
       }},
      {"bars", [](const TPen& P) {
         for (int K = 0; K < 3; ++K) P.box(-0.8 + K * 0.6, 0.8 - 0.5 * (K + 1), -0.4 + K * 0.6, 0.8);
       }},
      {"potion", [](const TPen& P) {
         P.dot(0, 0.3, 0.6);
         P.box(-0.2, -0.85, 0.2, -0.15);
       }},
      {"leaf", [](const TPen& P) {
         P.poly({{-0.8, 0.8}, {-0.6, -0.3}, {0.1, -0.8}, {0.85, -0.85}, {0.6, 0}, {0, 0.6}});
       }},
      {"bubble", [](const TPen& P) { P.ring(0, 0, 0.75, 0.2); }},
      {"slow", [](const TPen& P) {
         P.ring(0, 0, 0.8, 0.15);
         P.line(0, 0, 0, -0.55, 0.14);
         P.line(0, 0, 0.4, 0.1, 0.14);
       }},
      {"fight", [](const TPen& P) {
         P.line(-0.7, 0.7, 0.75, -0.75, 0.2);
         P.line(0.7, 0.7, -0.75, -0.75, 0.2);
       }},
      {"anvil", [](const TPen& P) {
         P.poly({{-0.9, -0.4}, {0.8, -0.4}, {0.5, 0}, {0.2, 0}, {0.4, 0.7}, {-0.5, 0.7}, {-0.3, 0}, {-0.6, -0.1}});
       }},
  };
  return Table;
}

}  // namespace

TRGBA ColourByName(const std::string& Name) {
  static const std::map<std::string, TRGBA> Colours{
      {"red", Rgb(200, 50, 40)},     {"green", Rgb(70, 170, 60)},   {"blue", Rgb(60, 100, 200)},
      {"yellow", Rgb(230, 200, 50)}, {"orange", Rgb(230, 130, 30)}, {"purple", Rgb(140, 70, 190)},
      {"white", Rgb(236, 236, 230)}, {"grey", Rgb(130, 130, 134)},  {"black", Rgb(34, 32, 34)},
      {"brown", Rgb(130, 86, 48)},   {"cyan", Rgb(70, 190, 210)},   {"gold", Rgb(226, 184, 70)},
      {"pink", Rgb(230, 120, 170)}};
  const auto Found = Colours.find(Name);
  if (Found == Colours.end()) ThrowException("unknown colour", {{"Colour", Name}});
  return Found->second;
}

void DrawSymbol(TCanvas& Image, const std::string& Symbol, double CX, double CY, double Size, TRGBA Colour) {
  const auto Found = Symbols().find(Symbol);
  if (Found == Symbols().end()) ThrowException("unknown symbol", {{"Symbol", Symbol}});
  Found->second(TPen{Image, CX, CY, Size / 2, Colour});
}

TCanvas Icon(int W, int H, const std::string& Symbol, const std::string& Colour) {
  TCanvas I(W, H);
  if (Colour.empty()) {
    DrawSymbol(I, Symbol, W / 2.0, H / 2.0, std::min(W, H) - 1.0, Rgb(226, 220, 200));
    I.harden();
    I.outline(DARK);
    return I;
  }
  const TRGBA Plate = ColourByName(Colour);
  for (int Y = 0; Y < H; ++Y) {
    I.fillRect(0, Y, W, 1, Shade(Plate, 1.2 - 0.4 * Y / std::max(1, H - 1)));
  }
  I.frame(0, 0, W, H, Shade(Plate, 0.45));
  for (auto [X, Y] : {std::pair{0, 0}, {W - 1, 0}, {0, H - 1}, {W - 1, H - 1}}) I.set(X, Y, {});
  TCanvas Sign(W, H);
  DrawSymbol(Sign, Symbol, W / 2.0, H / 2.0, std::min(W, H) - 4.0, Colour == "white" || Colour == "yellow"
                                                                        ? Rgb(30, 28, 26)
                                                                        : Rgb(250, 248, 240));
  Sign.harden();
  I.paste(Sign, 0, 0);
  return I;
}

TCanvas Mark(int W, int H, const std::string& Symbol, const std::string& Colour) {
  TCanvas I(W, H);
  DrawSymbol(I, Symbol, W / 2.0, H / 2.0, std::min(W, H) - 2.0, ColourByName(Colour));
  I.harden();
  I.outline(DARK);
  return I;
}
