#include "graphics/MapWindow.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <optional>
#include <string>

#include "core/Clock.h"
#include "core/Exception.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "graphics/OutfitPalette.h"
#include "graphics/Talkboxes.h"
#include "gui/Routing.h"
#include "net/Commands.h"
#include "world/Creatures.h"
#include "world/Map.h"
#include "world/Objects.h"

namespace {

constexpr TRect PICTURE_CLIP{0, 0, MAP_PICTURE_WIDTH, MAP_PICTURE_HEIGHT};
constexpr int LABEL_FONT = 2;
constexpr int MAX_CREATURE_LABELS = MAX_CREATURES;
constexpr int MAX_TEXT_LABELS = 325;
constexpr int MAX_ELEVATION = 24;
constexpr int MAX_FIELD_CREATURES = 10;
constexpr int INVISIBLE_EFFECT = 13;
constexpr int KEY_CTRL_N = 0x44E;
constexpr int KEY_CTRL_W = 0x457;
constexpr int EVENT_CREATURE_INFO = 600;
constexpr int EVENT_CLEAR_TALKBOXES = 601;

CSurface& Surface() { return *GetSurface(); }

bool InBlock(int rx, int ry) { return rx >= 0 && rx < MAPSIZE_X && ry >= 0 && ry < MAPSIZE_Y; }

// Flags of a real object type; creatures and empty places have none.
bool HasFlag(const TObject& Object, int Flag) {
  return Object.Type >= FIRST_OBJECT_TYPE && GetObjectFlag(Object.Type, Flag);
}

bool FirstObjectHas(int rx, int ry, int rz, int Flag) { return HasFlag(GetFirstObject(rx, ry, rz), Flag); }

// Division and remainder that round toward minus infinity.
int FloorDiv(int a, int b) { return (a >= 0 ? a : a - b + 1) / b; }

int Clamp(int Value, int Low, int High) { return std::max(Low, std::min(Value, High)); }

TRGBColor FromTRGB(TRGB C) { return {C.Red, C.Green, C.Blue}; }

// The objects of a field in draw order, taken at once, so that the walk
// survives the nested walks of light and of the second pass.
struct TFieldObjects {
  std::array<TObject, OBJECTS_PER_POINT> Objects;
  int Count = 0;
};

TFieldObjects ReadField(int rx, int ry, int rz) {
  TFieldObjects Field;
  for (TObject Object = GetFirstObject(rx, ry, rz); Object.Type != 0 && Field.Count < OBJECTS_PER_POINT;
       Object = GetNextObject()) {
    Field.Objects[Field.Count++] = Object;
  }
  return Field;
}

// The selection frame of a creature: under the mouse, attack target, follow
// target, each later rule over the earlier; none if no rule holds.
std::optional<TRGBColor> SelectionColor(std::uint32_t Id, std::uint32_t PointerCreature) {
  const bool Pointed = Id == PointerCreature;
  std::optional<TRGBColor> Color;
  if (Pointed) Color = TRGBColor{248, 248, 248};
  if (Id == CombatTargets().AttackTarget) Color = Pointed ? TRGBColor{248, 164, 164} : TRGBColor{224, 64, 64};
  if (Id == CombatTargets().FollowTarget) Color = Pointed ? TRGBColor{180, 248, 180} : TRGBColor{64, 224, 64};
  return Color;
}

int PhaseOf(const boost::intrusive_ptr<TAnimation>& Animation, int Now) {
  if (!Animation) return 1;
  Animation->Animate(static_cast<std::uint32_t>(Now));
  return static_cast<int>(Animation->GetCurrentPhase());
}

// The shift of a creature's picture; false if it is not drawn at all.
bool CreatureShift(const TCreature& Creature, int& Sx, int& Sy) {
  Sx = Sy = 0;
  if (Creature.MountOutfitType != 0) {
    if (GetOutfitFlag(Creature.MountOutfitType, SHIFT)) {
      Sx = GetOutfitShiftX(Creature.MountOutfitType);
      Sy = GetOutfitShiftY(Creature.MountOutfitType);
    }
  } else if (Creature.OutfitType != 0) {
    if (GetOutfitFlag(Creature.OutfitType, SHIFT)) {
      Sx = GetOutfitShiftX(Creature.OutfitType);
      Sy = GetOutfitShiftY(Creature.OutfitType);
    }
  } else if (Creature.OutfitData[0] != 0) {
    if (GetObjectFlag(Creature.OutfitData[0], SHIFT)) {
      Sx = GetObjectShiftX(Creature.OutfitData[0]);
      Sy = GetObjectShiftY(Creature.OutfitData[0]);
    }
  } else {
    if (Creature.CreatureID >= FIRST_MONSTER_ID) return false;
    Sx = Sy = 8;
  }
  return true;
}

struct TFieldCreature {
  TCreature* Creature = nullptr;
  int dx = 0, dy = 0, Sx = 0, Sy = 0;
};

}  // namespace

CMapWindow::CMapWindow() {
  for (int cx = 0; cx < FIELD_CACHE_WIDTH; ++cx) {
    for (int cy = 0; cy < FIELD_CACHE_HEIGHT; ++cy) {
      m_FieldCache[cx][cy].CacheX = cx * FIELD_SIZE;
      m_FieldCache[cx][cy].CacheY = cy * FIELD_SIZE;
    }
  }
  m_CreatureLabels.reserve(MAX_CREATURE_LABELS);
  m_TextLabels.reserve(MAX_TEXT_LABELS);
  RegisterKey(KEY_CTRL_N, {this, EVENT_CREATURE_INFO});
  RegisterKey(KEY_CTRL_W, {this, EVENT_CLEAR_TALKBOXES});
}

CMapWindow::~CMapWindow() {
  UnregisterKey(KEY_CTRL_N);
  UnregisterKey(KEY_CTRL_W);
}

void CMapWindow::SetSize(int NewWidth, int NewHeight) {
  SetTalkboxesChanged(true);
  CGUIComposite::SetSize(NewWidth, NewHeight);
}

void CMapWindow::OnEvent(int Event) {
  switch (Event) {
    case EVENT_CREATURE_INFO:
      Preferences().CreatureInfo = (Preferences().CreatureInfo + 1) % 3;
      break;
    case EVENT_CLEAR_TALKBOXES:
      ClearTalkboxes();
      break;
    default:
      CGUIComposite::OnEvent(Event);
  }
}

// ---------------------------------------------------------------- the frame

void CMapWindow::Draw(int ToSurface, int x, int y) {
  m_Now = GetProgramTime();
  ProcessMissiles();
  const bool LightOn = Preferences().LightEffects && Surface().SupportsLightMap();
  const TCreature* Player = FindPlayer();
  Check(Player != nullptr, "Player!=NULL");
  m_DisplacementX = GetOffsetX(*Player);
  m_DisplacementY = GetOffsetY(*Player);
  m_ScrollX = m_DisplacementX + FIELD_SIZE;
  m_ScrollY = m_DisplacementY + FIELD_SIZE;
  Surface().ClearSurface(TEMP_SURFACE, {255, 255, 0}, 255);
  m_PlayerFloor = GetPlayerFloor();
  ComputeTopFloor();
  ComputeCoverFloor();
  m_PointerCreature = CreatureUnderMouse(x, y);
  m_CreatureLabels.clear();
  m_TextLabels.clear();
  GetMapPosition(m_PlayerX, m_PlayerY, m_PlayerZ);
  const bool Lost = Surface().TestLost(2);
  for (auto& Column : m_FieldCache) {
    for (TFieldCacheEntry& Entry : Column) {
      if (Lost) Entry.Count = 0;
      Entry.Used = 0;
      Entry.Flushed = false;
    }
  }
  for (auto& Column : m_LightMap) Column.fill({0, 0, 0});
  for (int rz = 0; rz <= m_TopFloor; ++rz) {
    if (rz > 0 && rz == m_PlayerFloor) DimLightMap();
    BaseLightPass(rz);
    CollectCreatures(rz);
    for (int rx = 0; rx < MAPSIZE_X; ++rx) {
      for (int ry = 0; ry < MAPSIZE_Y; ++ry) {
        DrawField(rx * FIELD_SIZE - m_ScrollX, ry * FIELD_SIZE - m_ScrollY, rx, ry, rz, 0);
      }
    }
  }
  for (int rx = 0; rx < MAPSIZE_X; ++rx) {
    for (int ry = 0; ry < MAPSIZE_Y; ++ry) FlushField(rx, ry);
  }
  if (LightOn) DrawLight();
  if (Preferences().NoStretching == 1) {
    Check(Width <= MAP_PICTURE_WIDTH, "getWidth()<=MAP_WIDTH*32");
    Check(Height <= MAP_PICTURE_HEIGHT, "getHeight()<=MAP_HEIGHT*32");
    const TCrop C = Crop();
    Surface().Blit(ToSurface, x, y, TEMP_SURFACE, C.x, C.y, Width, Height);
  } else {
    Surface().StretchBlit(ToSurface, x, y, Width, Height, TEMP_SURFACE, 0, 0, MAP_PICTURE_WIDTH, MAP_PICTURE_HEIGHT);
  }
  DrawCreatureLabels(ToSurface, x, y);
  if (TalkboxesChanged()) {
    SetTalkboxesChanged(false);
    LayoutTalkboxes();
  }
  DrawTalkboxes(ToSurface, x, y);
  DrawStatusLine(ToSurface, x, y);
  if (Preferences().TextualEffects) DrawAnimatedTexts(ToSurface, x, y);
  CGUIComposite::Draw(ToSurface, x, y);
}

// A roof or upper floor over the player or the four fields beside him hides
// that floor and all above it.
void CMapWindow::ComputeTopFloor() {
  m_TopFloor = 7;
  const int PF = m_PlayerFloor;
  static constexpr int Plus[5][2] = {{7, 6}, {8, 5}, {8, 6}, {8, 7}, {9, 6}};
  for (const auto& Field : Plus) {
    const int fx = Field[0], fy = Field[1];
    if (!IsSightFree(fx, fy, PF)) continue;
    for (int z = PF + 1; z <= 7 && fx + PF - z >= 0 && fy + PF - z >= 0; ++z) {
      if (z - 1 >= m_TopFloor) continue;
      const TObject Above = GetFirstObject(fx + PF - z, fy + PF - z, z);
      if (HasFlag(Above, BANK) && !HasFlag(Above, ROOFLESS)) m_TopFloor = z - 1;
      const TObject OnScreen = GetFirstObject(fx, fy, z);
      if (z - 1 < m_TopFloor && (HasFlag(OnScreen, BANK) || HasFlag(OnScreen, BOTTOM)) &&
          !HasFlag(OnScreen, ROOFLESS)) {
        m_TopFloor = z - 1;
      }
    }
  }
}

void CMapWindow::ComputeCoverFloor() {
  for (int rx = 0; rx < MAPSIZE_X; ++rx) {
    for (int ry = 0; ry < MAPSIZE_Y; ++ry) {
      int Cover = 0;
      for (int z = m_TopFloor; z >= 1 && Cover == 0; --z) {
        if (FirstObjectHas(rx, ry, z, FULLBANK)) Cover = z;
      }
      m_CoverFloor[rx][ry] = Cover;
    }
  }
}

bool CMapWindow::IsFloorVisible(int rx, int ry, int rz) const {
  return InBlock(rx, ry) && m_CoverFloor[rx][ry] <= rz;
}

// ---------------------------------------------------------------- light

void CMapWindow::DimLightMap() {
  for (auto& Column : m_LightMap) {
    for (TRGBColor& C : Column) C = {C.r * 4 / 5, C.g * 4 / 5, C.b * 4 / 5};
  }
}

void CMapWindow::SetBaseLight(int rx, int ry, int Brightness) {
  const int b = Clamp(Brightness, 0, 255);
  const int m = Clamp(Preferences().BasicBrightness, 0, 128);
  const TRGB A = GetAmbienteColor();
  const TRGBColor a{A.Red * b / 255, A.Green * b / 255, A.Blue * b / 255};
  const TRGBColor Base = m_PlayerZ <= 7 ? TRGBColor{200, 200, 255} : TRGBColor{255, 255, 255};
  const TRGBColor d{Base.r * m / 255, Base.g * m / 255, Base.b * m / 255};
  const int Rest = 255 - a.r;
  m_LightMap[rx][ry] = {Clamp(a.r + d.r * Rest / 255, 0, 255), Clamp(a.g + d.g * Rest / 255, 0, 255),
                        Clamp(a.b + d.b * Rest / 255, 0, 255)};
}

void CMapWindow::BaseLightPass(int z) {
  const int Ambient = GetAmbienteBrightness();
  for (int rx = 0; rx < MAPSIZE_X; ++rx) {
    for (int ry = 0; ry < MAPSIZE_Y; ++ry) {
      if (z != 0 && !FirstObjectHas(rx, ry, z, BANK)) continue;
      const TRGBColor Old = m_LightMap[rx][ry];
      SetBaseLight(rx, ry, m_PlayerZ <= 7 ? Ambient : 0);
      if (z > 0 && HasDimLight(rx, ry, z)) {
        TRGBColor& C = m_LightMap[rx][ry];
        C = {std::max(C.r, Old.r * 4 / 5), std::max(C.g, Old.g * 4 / 5), std::max(C.b, Old.b * 4 / 5)};
      }
    }
  }
  if (z != m_PlayerZ + m_PlayerFloor - 8 || z >= 7) return;
  for (int rx = 1; rx < MAPSIZE_X; ++rx) {
    for (int ry = 1; ry < MAPSIZE_Y; ++ry) {
      if (HasDimLight(rx - 1, ry - 1, z + 1)) SetBaseLight(rx, ry, Ambient - 1);
    }
  }
}

void CMapWindow::AddLight(int px, int py, int rz, int Radius, TRGBColor Color) {
  if (Radius <= 0) return;
  const int ax = px + m_ScrollX, ay = py + m_ScrollY;
  const int cfx = FloorDiv(ax, FIELD_SIZE), cfy = FloorDiv(ay, FIELD_SIZE);
  for (int fx = cfx - Radius + 1; fx <= cfx + Radius - 1; ++fx) {
    for (int fy = cfy - Radius + 1; fy <= cfy + Radius - 1; ++fy) {
      if (!InBlock(fx, fy)) continue;
      const int ddx = ax - (fx * FIELD_SIZE + 16), ddy = ay - (fy * FIELD_SIZE + 16);
      const int Distance = static_cast<int>(std::sqrt(static_cast<double>(ddx * ddx + ddy * ddy)));
      const int s = Radius * FIELD_SIZE - Distance;
      const bool Open = !FirstObjectHas(fx, fy, rz, BANK);
      const auto Part = [&](int c) {
        int v = c * s / 160;
        if (Open) v = v * 4 / 5;
        return Clamp(v, 0, 255);
      };
      TRGBColor& L = m_LightMap[fx][fy];
      L = {std::max(L.r, Part(Color.r)), std::max(L.g, Part(Color.g)), std::max(L.b, Part(Color.b))};
    }
  }
}

// One batch of quads from field centre to field centre.
void CMapWindow::DrawLight() {
  std::vector<TRect> Rects;
  std::vector<TLightCorners> Colors;
  Rects.reserve(19 * 15);
  Colors.reserve(19 * 15);
  const auto At = [this](int i, int j) {
    return m_LightMap[Clamp(i, 0, MAPSIZE_X - 1)][Clamp(j, 0, MAPSIZE_Y - 1)];
  };
  for (int i = 0; i < 19; ++i) {
    for (int j = 0; j < 15; ++j) {
      Rects.push_back({i * FIELD_SIZE - m_ScrollX - 16, j * FIELD_SIZE - m_ScrollY - 16, FIELD_SIZE, FIELD_SIZE});
      Colors.push_back({At(i - 1, j - 1), At(i, j - 1), At(i - 1, j), At(i, j)});
    }
  }
  Surface().DrawLightMap(TEMP_SURFACE, Rects, Colors);
}

// ---------------------------------------------------------------- fields

void CMapWindow::DrawField(int px, int py, int rx, int ry, int rz, int Mode) {
  const TFieldObjects Field = ReadField(rx, ry, rz);
  if (rz == 0 && Mode == 0 && (Field.Count == 0 || !HasFlag(Field.Objects[0], FULLBANK)) &&
      IsFloorVisible(rx, ry, rz)) {
    DrawMapSprite(px, py, 0, false, 0);
  }
  int wx = rx, wy = ry, wz = rz;
  MapToWorld(wx, wy, wz);
  int E = 0;
  const TObject* Top = nullptr;
  bool Lying = false;
  for (int i = 0; i < Field.Count; ++i) {
    const TObject& Object = Field.Objects[i];
    const bool IsCreature = Object.Type == CREATURE;
    if (Mode == 0 && HasFlag(Object, LIGHT)) {
      const int Sx = HasFlag(Object, SHIFT) ? GetObjectShiftX(Object.Type) : 0;
      const int Sy = HasFlag(Object, SHIFT) ? GetObjectShiftY(Object.Type) : 0;
      AddLight(px - Sx - E + 16, py - Sy - E + 16, rz, GetObjectLightBrightness(Object.Type),
               ColorOfIndex(GetObjectLightColor(Object.Type)));
    }
    if (HasFlag(Object, TOP)) {
      Top = &Object;
    } else if (!IsCreature && Mode != 1) {
      DrawObject(px - E, py - E, rz, Object, wx, wy, wz);
      if (HasFlag(Object, LYING)) Lying = true;
    }
    if (HasFlag(Object, HEIGHT)) E = std::min(MAX_ELEVATION, E + GetObjectElevation(Object.Type));
  }
  if (Lying) {
    if (rx >= 1 && ry >= 1) DrawField(px - 32, py - 32, rx - 1, ry - 1, rz, 1);
    if (rx >= 1) DrawField(px - 32, py, rx - 1, ry, rz, 1);
    if (ry >= 1) DrawField(px, py - 32, rx, ry - 1, rz, 1);
  }
  DrawCreatures(px, py, rx, ry, rz, Mode, E);
  DrawEffects(px, py, rx, ry, rz, Mode, E);
  if (Top != nullptr) DrawObject(px, py, rz, *Top, wx, wy, wz);
}

void CMapWindow::CollectCreatures(int rz) {
  for (int rx = 0; rx < MAPSIZE_X; ++rx) {
    for (int ry = 0; ry < MAPSIZE_Y; ++ry) {
      TFieldCreatures& On = m_FieldCreatures[rx][ry];
      On.Count = 0;
      const TFieldObjects Field = ReadField(rx, ry, rz);
      for (int i = 0; i < Field.Count; ++i) {
        if (Field.Objects[i].Type != CREATURE) continue;
        if (TCreature* Creature = FindCreature(Field.Objects[i].Data)) On.Creatures[On.Count++] = Creature;
      }
    }
  }
}

// The creatures whose picture has its lower right on this field, walking or
// not, front ones last.
void CMapWindow::DrawCreatures(int px, int py, int rx, int ry, int rz, int Mode, int E) {
  std::array<TFieldCreature, MAX_FIELD_CREATURES> List;
  int Count = 0;
  for (int fx = rx - 1; fx <= rx + 1 && Count <= MAX_FIELD_CREATURES; ++fx) {
    for (int fy = ry - 1; fy <= ry + 1 && Count <= MAX_FIELD_CREATURES; ++fy) {
      if (!InBlock(fx, fy)) continue;
      const TFieldCreatures& On = m_FieldCreatures[fx][fy];
      for (int i = 0; i < On.Count; ++i) {
        TCreature* Creature = On.Creatures[i];
        if (Count == MAX_FIELD_CREATURES) {
          ++Count;
          break;
        }
        TFieldCreature Entry{Creature};
        if (!CreatureShift(*Creature, Entry.Sx, Entry.Sy)) continue;
        Entry.dx = GetOffsetX(*Creature) + (fx - rx) * 32 - Entry.Sx;
        Entry.dy = GetOffsetY(*Creature) + (fy - ry) * 32 - Entry.Sy;
        if (Entry.dx >= -31 && Entry.dx <= 0 && Entry.dy >= -31 && Entry.dy <= 0) List[Count++] = Entry;
      }
    }
  }
  Count = std::min(Count, MAX_FIELD_CREATURES);
  const auto Later = [](const TFieldCreature& A, const TFieldCreature& B) {
    if (A.dy + A.Sy != B.dy + B.Sy) return A.dy + A.Sy > B.dy + B.Sy;
    return A.dx + A.Sx > B.dx + B.Sx;
  };
  for (int i = 0; i < Count; ++i) {
    for (int j = i + 1; j < Count; ++j) {
      if (Later(List[i], List[j])) std::swap(List[i], List[j]);
    }
  }
  const TPreferences& Options = Preferences();
  for (int n = 0; n < Count; ++n) {
    const TFieldCreature& Entry = List[n];
    const TCreature& Creature = *Entry.Creature;
    const int cx = px + Entry.dx - E, cy = py + Entry.dy - E;
    TRect Frame{cx, cy, FIELD_SIZE, FIELD_SIZE};
    const auto DrawMark = [&](TRGBColor Color) {
      FlushArea(Frame.x, Frame.y, Frame.width, Frame.height);
      Surface().DrawFrameClipped(TEMP_SURFACE, Frame.x, Frame.y, Frame.width, Frame.height, 2, Color, PICTURE_CLIP);
      Frame = {Frame.x + 2, Frame.y + 2, Frame.width - 4, Frame.height - 4};
    };
    if (const std::optional<TRGBColor> Color = SelectionColor(Creature.CreatureID, m_PointerCreature)) {
      DrawMark(*Color);
    }
    if (Options.CreaturePvPFrames && Creature.Squared) {
      DrawMark({Creature.SquareRed, Creature.SquareGreen, Creature.SquareBlue});
    }
    const bool Trapper = IsTrapper(Creature.CreatureID);
    if (Creature.MarkEndTime > m_Now || Trapper) {
      DrawMark(Trapper ? TRGBColor{191, 127, 0} : ColorOfIndex(Creature.MarkColor));
    }
    const int ax = px + Entry.dx + Entry.Sx - E, ay = py + Entry.dy + Entry.Sy - E;
    if (Creature.OutfitType != 0) {
      DrawOutfit(ax, ay, rz, Creature);
    } else if (Creature.OutfitData[0] != 0) {
      TObject Look;
      Look.Type = Creature.OutfitData[0];
      Look.Animation = GetObjectAnimation(Look.Type);
      DrawObject(ax, ay, rz, Look, 0, 0, 0);
    } else {
      const int Phase = (GetTickCounter() / 3) % 3 + 2;
      FlushArea(ax - 8, ay - 8, FIELD_SIZE, FIELD_SIZE);
      DrawMapSprite(ax - 8, ay - 8, rz, true,
                    static_cast<int>(GetEffectSprite(INVISIBLE_EFFECT, 1, 1, 1, 1, 1, Phase)));
    }
    if (Mode != 0) continue;
    const bool Own = IsPlayer(Creature);
    if (rz == m_PlayerFloor && (Creature.OnMap || Own) &&
        static_cast<int>(m_CreatureLabels.size()) < MAX_CREATURE_LABELS) {
      m_CreatureLabels.push_back({Creature.CreatureID, cx + 16, cy});
    }
    AddLight(cx + 16, cy + 16, rz, Creature.Brightness, ColorOfIndex(Creature.LightColor));
    if (Creature.OutfitType != 0 && GetOutfitFlag(Creature.OutfitType, LIGHT)) {
      AddLight(cx + 16, cy + 16, rz, GetOutfitLightBrightness(Creature.OutfitType),
               ColorOfIndex(GetOutfitLightColor(Creature.OutfitType)));
    }
    if (Creature.MountOutfitType != 0 && GetOutfitFlag(Creature.MountOutfitType, LIGHT)) {
      AddLight(cx + 16, cy + 16, rz, GetOutfitLightBrightness(Creature.MountOutfitType),
               ColorOfIndex(GetOutfitLightColor(Creature.MountOutfitType)));
    }
    if (Own && Creature.Brightness < 2) AddLight(cx + 16, cy + 16, rz, 2, {255, 255, 255});
  }
}

void CMapWindow::DrawEffects(int px, int py, int rx, int ry, int rz, int Mode, int E) {
  int Column = 0, ColumnWidth = 0, LastY = 0;
  for (int Effect = GetFirstEffect(rx, ry, rz); Effect != -1; Effect = GetNextEffect()) {
    switch (GetEffectStatus(Effect)) {
      case EFFECT_GRAPHICAL: {
        const int T = GetEffectType(Effect), Phase = GetEffectPhase(Effect);
        const int PatternX = rx % GetEffectPatternWidth(T) + 1, PatternY = ry % GetEffectPatternHeight(T) + 1;
        for (int i = 1; i <= GetEffectWidth(T); ++i) {
          for (int j = 1; j <= GetEffectHeight(T); ++j) {
            for (int Layer = 1; Layer <= GetEffectLayers(T); ++Layer) {
              DrawMapSprite(px - i * 32 - E + 32, py - j * 32 - E + 32, rz, false,
                            static_cast<int>(GetEffectSprite(T, i, j, Layer, PatternX, PatternY, Phase)));
            }
          }
        }
        if (Mode == 0 && GetEffectFlag(T, LIGHT)) {
          const int B = GetEffectLightBrightness(T), P = GetEffectPhases(T);
          const int m = std::min(Phase, P + 1 - Phase);
          const int Brightness = (T == 56 || T == 57) ? B : std::min(B, (B * m + 2) / 3);
          AddLight(px - E + 16, py - E + 16, rz, Brightness, ColorOfIndex(GetEffectLightColor(T)));
        }
        break;
      }
      case EFFECT_TEXT: {
        if (Mode != 0) break;
        const int ly = py - 2 * GetEffectTextTimer(Effect) - E;
        if (FontHeight(LABEL_FONT) + ly > LastY) {
          Column += 1 + ColumnWidth;
          ColumnWidth = 0;
        }
        const int lx = px + Column - E + 16;
        if (lx > px + 48) return;
        LastY = ly;
        const std::string Text = GetEffectText(Effect);
        ColumnWidth = std::max(ColumnWidth, TextWidth(LABEL_FONT, Text, WHOLE_TEXT, false));
        if (static_cast<int>(m_TextLabels.size()) < MAX_TEXT_LABELS) {
          m_TextLabels.push_back({Effect, lx, ly, rx, ry, rz});
        }
        break;
      }
      case EFFECT_MISSILE: {
        const int T = GetEffectMissileType(Effect), Direction = GetEffectMissileDirection(Effect);
        const int ox = GetEffectMissileOffsetX(Effect), oy = GetEffectMissileOffsetY(Effect);
        for (int i = 1; i <= GetMissileWidth(T); ++i) {
          for (int j = 1; j <= GetMissileHeight(T); ++j) {
            for (int Layer = 1; Layer <= GetMissileLayers(T); ++Layer) {
              DrawMapSprite(px + ox - i * 32 - E + 32, py + oy - j * 32 - E + 32, rz, true,
                            static_cast<int>(GetMissileSprite(T, i, j, Layer, Direction)));
            }
          }
        }
        if (Mode == 0 && GetMissileFlag(T, LIGHT)) {
          AddLight(px + ox - E + 16, py + oy - E + 16, rz, GetMissileLightBrightness(T),
                   ColorOfIndex(GetMissileLightColor(T)));
        }
        break;
      }
      default:
        break;
    }
  }
}

void CMapWindow::DrawObject(int px, int py, int rz, const TObject& Object, int x, int y, int z) {
  const int Type = Object.Type;
  const TPattern Pattern = GetObjectPattern(Type, Object.Data, Object.Hook, x, y, z);
  const int Phase = PhaseOf(Object.Animation, m_Now);
  const bool Shifted = GetObjectFlag(Type, SHIFT);
  const int Sx = Shifted ? GetObjectShiftX(Type) : 0, Sy = Shifted ? GetObjectShiftY(Type) : 0;
  const bool Animated = GetObjectPhases(Type) > 1;
  for (int i = 1; i <= GetObjectWidth(Type); ++i) {
    for (int j = 1; j <= GetObjectHeight(Type); ++j) {
      for (int Layer = 1; Layer <= GetObjectLayers(Type); ++Layer) {
        const auto Sprite = GetObjectSprite(Type, i, j, Layer, Pattern.X, Pattern.Y, Pattern.Z, Phase);
        DrawMapSprite(px - i * 32 - Sx + 32, py - j * 32 - Sy + 32, rz, Animated, static_cast<int>(Sprite));
      }
    }
  }
  if (Object.Marked) {
    FlushArea(px - Sx, py - Sy, FIELD_SIZE, FIELD_SIZE);
    Surface().DrawFrameClipped(TEMP_SURFACE, px - Sx, py - Sy, FIELD_SIZE, FIELD_SIZE, 1,
                               {Object.MarkRed, Object.MarkGreen, Object.MarkBlue}, PICTURE_CLIP);
  }
}

void CMapWindow::DrawOutfit(int px, int py, int rz, const TCreature& Creature) {
  const int Outfit = Creature.OutfitType;
  if (GetOutfitPatternWidth(Outfit) != 4) ThrowException("outfit has not all four directions");
  const int Direction = GetCreatureDirection(Creature);
  const int Mount = Creature.MountOutfitType;
  if (Mount != 0) {
    const bool Shifted = GetOutfitFlag(Mount, SHIFT);
    const int Sx = Shifted ? GetOutfitShiftX(Mount) : 0, Sy = Shifted ? GetOutfitShiftY(Mount) : 0;
    const int Phase = GetAnimationPhase(Creature, true);
    for (int p = 1; p <= GetOutfitPatternHeight(Mount); ++p) {
      for (int i = 1; i <= GetOutfitWidth(Mount); ++i) {
        for (int j = 1; j <= GetOutfitHeight(Mount); ++j) {
          DrawMapSprite(px - i * 32 - Sx + 32, py - j * 32 - Sy + 32, rz, true,
                        static_cast<int>(GetOutfitSprite(Mount, i, j, 1, Direction, p, 1, Phase)));
        }
      }
    }
  }
  const TOutfitColors Colors{OutfitColor(Creature.OutfitData[0]), OutfitColor(Creature.OutfitData[1]),
                             OutfitColor(Creature.OutfitData[2]), OutfitColor(Creature.OutfitData[3])};
  const int ShiftOf = Mount != 0 ? Mount : Outfit;
  const bool Shifted = GetOutfitFlag(ShiftOf, SHIFT);
  const int Sx = Shifted ? GetOutfitShiftX(ShiftOf) : 0, Sy = Shifted ? GetOutfitShiftY(ShiftOf) : 0;
  const int PatternZ = (Mount != 0 && GetOutfitPatternDepth(Outfit) >= 2) ? 2 : 1;
  const int Phase = GetAnimationPhase(Creature, false);
  const int Addons = Creature.OutfitData[4] & GetOutfitAddons(Outfit);
  const bool Masked = GetOutfitLayers(Outfit) == 2;
  for (int p = 1; p <= GetOutfitPatternHeight(Outfit); ++p) {
    if (p > 1 && (Addons & (1 << (p - 2))) == 0) continue;
    for (int i = 1; i <= GetOutfitWidth(Outfit); ++i) {
      for (int j = 1; j <= GetOutfitHeight(Outfit); ++j) {
        const auto Sprite = GetOutfitSprite(Outfit, i, j, 1, Direction, p, PatternZ, Phase);
        const auto Mask = Masked ? GetOutfitSprite(Outfit, i, j, 2, Direction, p, PatternZ, Phase) : 0;
        DrawMapSprite(px - i * 32 - Sx + 32, py - j * 32 - Sy + 32, rz, true, static_cast<int>(Sprite),
                      static_cast<int>(Mask), Colors);
      }
    }
  }
}

// ---------------------------------------------------------------- the field cache

void CMapWindow::DrawMapSprite(int px, int py, int rz, bool Direct, int Sprite, int Mask,
                               const TOutfitColors& Colors) {
  const int ax = px + m_ScrollX, ay = py + m_ScrollY;
  const int fx = FloorDiv(ax, FIELD_SIZE), fy = FloorDiv(ay, FIELD_SIZE);
  const int ox = ax - fx * FIELD_SIZE, oy = ay - fy * FIELD_SIZE;
  const int LastX = ox != 0 ? fx + 1 : fx, LastY = oy != 0 ? fy + 1 : fy;
  if (!Direct && Mask == 0) {
    for (int x = fx; x <= LastX; ++x) {
      for (int y = fy; y <= LastY; ++y) {
        if (IsFloorVisible(x, y, rz)) CacheSprite(x, y, Sprite, ox - (x - fx) * 32, oy - (y - fy) * 32);
      }
    }
    return;
  }
  bool Visible = false;
  for (int x = fx; x <= LastX; ++x) {
    for (int y = fy; y <= LastY; ++y) {
      if (!IsFloorVisible(x, y, rz)) continue;
      FlushField(x, y);
      Visible = true;
    }
  }
  if (!Visible) return;
  if (Mask == 0) {
    DrawSprite(px, py, Sprite);
  } else {
    DrawColoredSprite(px, py, Sprite, Mask, Colors);
  }
}

void CMapWindow::FlushArea(int px, int py, int AreaWidth, int AreaHeight) {
  const int ax = px + m_ScrollX, ay = py + m_ScrollY;
  for (int x = FloorDiv(ax, FIELD_SIZE); x <= FloorDiv(ax + AreaWidth - 1, FIELD_SIZE); ++x) {
    for (int y = FloorDiv(ay, FIELD_SIZE); y <= FloorDiv(ay + AreaHeight - 1, FIELD_SIZE); ++y) FlushField(x, y);
  }
}

TFieldCacheEntry& CMapWindow::CacheEntry(int rx, int ry) {
  return m_FieldCache[(m_PlayerX + rx) % FIELD_CACHE_WIDTH][(m_PlayerY + ry) % FIELD_CACHE_HEIGHT];
}

bool CMapWindow::IsOnPicture(int rx, int ry) const {
  if (!InBlock(rx, ry)) return false;
  const int Left = rx * FIELD_SIZE - m_ScrollX, Top = ry * FIELD_SIZE - m_ScrollY;
  return Left < MAP_PICTURE_WIDTH && Left + FIELD_SIZE > 0 && Top < MAP_PICTURE_HEIGHT && Top + FIELD_SIZE > 0;
}

void CMapWindow::DrawIntoCell(const TFieldCacheEntry& Entry, int Index) {
  ++m_CacheCounters.SpritesWritten;
  DrawFieldCacheSprite(Entry.CacheX + Entry.OffsetX[Index], Entry.CacheY + Entry.OffsetY[Index], Entry.Sprite[Index],
                       {Entry.CacheX, Entry.CacheY, FIELD_SIZE, FIELD_SIZE});
}

void CMapWindow::CacheSprite(int rx, int ry, int Sprite, int ox, int oy) {
  if (!IsOnPicture(rx, ry)) return;
  TFieldCacheEntry& e = CacheEntry(rx, ry);
  if (e.Used == FIELD_CACHE_SPRITES) FlushField(rx, ry);
  if (e.Flushed) {
    const int Left = rx * FIELD_SIZE - m_ScrollX, Top = ry * FIELD_SIZE - m_ScrollY;
    const int ClipLeft = std::max(Left, 0), ClipTop = std::max(Top, 0);
    const TRect Clip{ClipLeft, ClipTop, std::min(Left + FIELD_SIZE, MAP_PICTURE_WIDTH) - ClipLeft,
                     std::min(Top + FIELD_SIZE, MAP_PICTURE_HEIGHT) - ClipTop};
    if (Sprite == 0) {
      DrawPicturePartClipped(TEMP_SURFACE, Left + ox, Top + oy, EMPTY_SPRITE_PICTURE, 0, 0, FIELD_SIZE, FIELD_SIZE,
                             Clip);
    } else {
      DrawSpriteClipped(TEMP_SURFACE, Left + ox, Top + oy, Sprite, Clip);
    }
    return;
  }
  const int u = e.Used;
  if (u < e.Count && e.Sprite[u] == Sprite && e.OffsetX[u] == ox && e.OffsetY[u] == oy) {
    ++e.Used;
    ++m_CacheCounters.SpritesFound;
    return;
  }
  if (u < e.Count) {
    for (int i = 0; i < u; ++i) DrawIntoCell(e, i);
  }
  e.Sprite[u] = Sprite;
  e.OffsetX[u] = ox;
  e.OffsetY[u] = oy;
  DrawIntoCell(e, u);
  e.Used = u + 1;
  e.Count = e.Used;
}

void CMapWindow::FlushField(int rx, int ry) {
  if (!IsOnPicture(rx, ry)) return;
  TFieldCacheEntry& e = CacheEntry(rx, ry);
  if (e.Flushed) return;
  if (e.Used < e.Count) {
    for (int i = 0; i < e.Used; ++i) DrawIntoCell(e, i);
    e.Count = e.Used;
  }
  e.Flushed = true;
  ++m_CacheCounters.Flushes;
  Surface().Blit(TEMP_SURFACE, rx * FIELD_SIZE - m_ScrollX, ry * FIELD_SIZE - m_ScrollY, CACHE_SURFACE, e.CacheX,
                 e.CacheY, FIELD_SIZE, FIELD_SIZE);
}

// ---------------------------------------------------------------- on top

CMapWindow::TCrop CMapWindow::Crop() const {
  if (Width < MAP_PICTURE_WIDTH || Height < MAP_PICTURE_HEIGHT) {
    return {(MAP_PICTURE_WIDTH - Width) / 2, (MAP_PICTURE_HEIGHT - Height) / 2};
  }
  return {};
}

// From the composed picture to the element.
void CMapWindow::ToElement(int& lx, int& ly) const {
  if (Preferences().NoStretching == 1) {
    const TCrop C = Crop();
    lx -= C.x;
    ly -= C.y;
  } else {
    lx = lx * Width / MAP_PICTURE_WIDTH;
    ly = ly * Height / MAP_PICTURE_HEIGHT;
  }
}

// Anything with ground on a floor above, up to the top floor drawn, is a roof.
bool CMapWindow::IsUnderRoof(int rx, int ry, int rz) const {
  for (int z = rz + 1; z <= m_TopFloor; ++z) {
    const int ax = rx + rz - z, ay = ry + rz - z;
    if (ax >= 0 && ay >= 0 && FirstObjectHas(ax, ay, z, BANK)) return true;
  }
  return false;
}

void CMapWindow::DrawCreatureLabels(int ToSurface, int x, int y) {
  for (const TCreatureLabel& Label : m_CreatureLabels) {
    const TCreature* Creature = FindCreature(Label.CreatureID);
    if (Creature == nullptr) continue;
    int lx = Label.x, ly = Label.y;
    ToElement(lx, ly);
    if (Preferences().CreatureInfo > 0) DrawCreatureLabel(ToSurface, x, y, *Creature, lx, ly);
    DrawCreatureMarks(ToSurface, x, y, *Creature, lx, ly);
  }
}

void CMapWindow::DrawCreatureLabel(int ToSurface, int x, int y, const TCreature& Creature, int lx, int ly) {
  const TPreferences& Options = Preferences();
  int rx = Creature.X, ry = Creature.Y, rz = Creature.Z;
  WorldToMap(rx, ry, rz);
  const bool InMap = InBlock(rx, ry) && rz >= 0 && rz < MAPSIZE_Z;
  const bool Shown = InMap && !IsUnderRoof(rx, ry, rz);
  const TRGB Health = GetHealthColor(Creature);
  const TRGBColor Base = Shown ? FromTRGB(Health) : TRGBColor{192, 192, 192};
  int L = 255;
  if (Options.LightEffects) {
    const TRGBColor& Light = m_LightMap[Clamp(rx, 0, MAPSIZE_X - 1)][Clamp(ry, 0, MAPSIZE_Y - 1)];
    L = (Light.r + Light.g + Light.b) / 3;
  }
  if (IsPlayer(Creature)) L = std::max(L, Clamp(Creature.Brightness, 2, 5) * 51);
  const TRGBColor Color{Base.r * (L / 5) / 51, Base.g * (L / 5) / 51, Base.b * (L / 5) / 51};
  const int FH = FontHeight(LABEL_FONT);
  const int x0 = Clamp(lx - 14, 1, Width - 28);
  const int y0 = Options.CreatureInfo == 2 ? Clamp(ly - 4, FH + 1, Height - FH - 5) : Clamp(ly - 4, 1, Height - 5);
  if (Creature.CreatureKind != 2) {
    FillRectangle(ToSurface, x + x0, y + y0, 27, 4, {0, 0, 0}, 255);
    FillRectangle(ToSurface, x + x0 + 1, y + y0 + 1, Creature.Health / 4, 2, Color, 255);
  }
  if (Options.CreatureInfo != 2) return;
  const int NameWidth = TextWidth(LABEL_FONT, Creature.Name, WHOLE_TEXT, false);
  const int nx = Clamp(x0 - NameWidth / 2 + 14, 1, Width - NameWidth - 1);
  PrintText(ToSurface, x + nx, y + y0 - FH, LABEL_FONT, Color, false, Creature.Name.c_str(), WHOLE_TEXT, LEFT_ALIGN,
            NO_CLIP);
}

void CMapWindow::DrawCreatureMarks(int ToSurface, int x, int y, const TCreature& Creature, int lx, int ly) {
  const TPreferences& Options = Preferences();
  const auto Place = [&](int Skin, int Top, int Shift) {
    const TSkin& S = GetSkin(Skin);
    const int Left = Clamp(lx - S.width + 20 + Shift, 1, Width - S.width - 1);
    DrawSkinAt(ToSurface, x + Left, y + Clamp(Top, 1, Height - S.height - 1), Skin);
  };
  if (Options.CreatureIcons && Creature.SpeechFlag != 0) {
    static constexpr int Icons[6] = {0, 318, 319, 320, 0, 321};
    const int Skin = Creature.SpeechFlag == 4 ? (GetTickCounter() % 32 > 16 ? 320 : 319) : Icons[Creature.SpeechFlag];
    Place(Skin, ly + 1, 0);
  }
  if (!Options.CreatureMarks) return;
  Check(Creature.PARTYFlag >= 0 && Creature.PARTYFlag <= 11, "unknown creature party flag");
  Check(Creature.PKFlag >= 0 && Creature.PKFlag <= 6, "unknown creature PK flag");
  Check(Creature.GUILDFlag >= 0 && Creature.GUILDFlag <= 5, "unknown creature guild war flag");
  static constexpr int PartySkins[12] = {0, 301, 302, 303, 304, 305, 306, 307, 308, 307, 308, 309};
  int Party = PartySkins[Creature.PARTYFlag];
  if (Party == 0 && Creature.CreatureKind == 3) Party = 316;
  if (Party == 0 && Creature.CreatureKind == 4) Party = 317;
  const int PK = Creature.PKFlag != 0 ? 294 + Creature.PKFlag : 0;
  int Top = ly + 1;
  if (Party != 0 || PK != 0) {
    const int Half = Party != 0 && PK != 0 ? GetSkin(Party).width / 2 + 1 : 0;
    if (Party != 0) Place(Party, Top, -Half);
    if (PK != 0) Place(PK, Top, Half);
    Top += 13;
  }
  if (Creature.GUILDFlag != 0) {
    Place(309 + Creature.GUILDFlag, Top, 0);
    Top += 13;
  }
  if (Creature.PvPHelpers >= 5) Place(315, Top, 0);
}

// ---------------------------------------------------------------- talkboxes

namespace {

struct TBoxLayout {
  int W = 0, H = 0;
  int Ax = 0, Ay = 0;
  int MinX = 0, MaxX = 0, MinY = 0, MaxY = 0;
  int Cx = 0, Cy = 0;
  int Flags = 0;
};

int Overlap(int SizeI, int SizeJ, int Distance) {
  if (SizeJ / 2 >= SizeI / 2 + Distance) return SizeI + 20;
  if (SizeI / 2 >= SizeJ / 2 + Distance) return SizeJ + 20;
  return SizeJ / 2 + SizeI / 2 - Distance + 10;
}

// Boxes push each other apart one pixel a round while that lowers the
// overlap.
void Relax(std::vector<TBoxLayout>& Boxes) {
  long long Energy = LLONG_MAX;
  const int N = static_cast<int>(Boxes.size());
  for (;;) {
    long long NewEnergy = 0;
    std::vector<std::array<int, 2>> Forces(N, {0, 0});
    for (int i = 0; i < N; ++i) {
      for (int j = 0; j < N; ++j) {
        if (i == j) continue;
        const TBoxLayout &A = Boxes[i], &B = Boxes[j];
        const int dx = B.Cx - A.Cx, dy = B.Cy - A.Cy;
        if (std::abs(dx) >= B.W / 2 + A.W / 2 + 10 || std::abs(dy) >= B.H / 2 + A.H / 2 + 10) continue;
        const int ox = Overlap(A.W, B.W, std::abs(dx)), oy = Overlap(A.H, B.H, std::abs(dy));
        NewEnergy += static_cast<long long>(ox) * oy;
        Forces[i][0] += dx > 0 ? -ox : (dx < 0 ? ox : 0);
        Forces[i][1] += dy > 0 ? -oy : (dy < 0 ? oy : 0);
        if (dx == 0 && dy == 0) Forces[i][0] += i - j;
      }
    }
    for (int i = 0; i < N; ++i) {
      TBoxLayout& B = Boxes[i];
      if (Forces[i][0] < 0 && B.Cx > B.MinX) --B.Cx;
      if (Forces[i][0] > 0 && B.Cx < B.MaxX) ++B.Cx;
      if (Forces[i][1] < 0 && B.Cy > B.MinY) --B.Cy;
      if (Forces[i][1] > 0 && B.Cy < B.MaxY) ++B.Cy;
    }
    if (NewEnergy >= Energy) return;
    Energy = NewEnergy;
  }
}

}  // namespace

void CMapWindow::LayoutTalkboxes() {
  const int N = GetNumberOfTalkboxes();
  const int LH = LineHeight(LABEL_FONT);
  const int M = GetStatusMessage().empty() ? 0 : FontHeight(LABEL_FONT) + 10;
  const bool NoStretching = Preferences().NoStretching == 1;
  const TCrop C = Crop();
  std::vector<TBoxLayout> Boxes(N);
  for (int n = 1; n <= N; ++n) {
    TBoxLayout& B = Boxes[n - 1];
    for (int Line = 0; Line < GetTalkboxLines(n); ++Line) {
      B.W = std::max(B.W, TextWidth(LABEL_FONT, GetTalkboxLine(n, Line), WHOLE_TEXT, false));
    }
    B.H = GetTalkboxLines(n) * LH;
    int wx = 0, wy = 0, wz = 0;
    GetTalkboxPosition(n, wx, wy, wz);
    if (wx == 0 && wy == 0 && wz == 0) {
      B.Ax = Width / 2;
      switch (GetTalkboxMode(n)) {
        case TALK_PRIVATE_MESSAGE: B.Ay = Height / 4; break;
        case TALK_GAMEMASTER_BROADCAST:
        case TALK_GAMEMASTER_MESSAGE:
        case TALK_ADMIN_MESSAGE:
        case TALK_EVENT_MESSAGE: B.Ay = Height / 2 + 5 + B.H / 2; break;
        case TALK_INFO_MESSAGE: B.Ay = Height / 2 - B.H / 2 - 5; break;
        default: ThrowException("unknown talk box mode", {{"Mode", std::to_string(GetTalkboxMode(n))}});
      }
      B.MinX = B.Ax - B.W / 2, B.MaxX = B.Ax + B.W / 2, B.MinY = B.Ay - B.H, B.MaxY = B.Ay + B.H;
      B.Flags = 3;
    } else {
      WorldToMap(wx, wy, wz);
      B.Ax = NoStretching ? wx * 32 - C.x - 16 : (wx - 1) * Width / 15 + Width / 30;
      B.Ay = NoStretching ? wy * 32 - C.y - 32 : (wy - 1) * Height / 11;
      B.Ay -= B.H / 2;
      B.MinX = B.Ax - B.W / 2, B.MaxX = B.Ax + B.W / 2, B.MinY = B.Ay, B.MaxY = B.Ay + B.H;
    }
    B.MinX = std::max(B.MinX, B.W / 2 + 1);
    B.MaxX = std::min(B.MaxX, Width - B.W / 2);
    B.MinY = std::max(B.MinY, B.H / 2 + 1);
    B.MaxY = std::min(B.MaxY, Height - B.H / 2 - M);
    B.Cx = Clamp(B.Ax, B.MinX, B.MaxX);
    B.Cy = Clamp(B.Ay, B.MinY, B.MaxY);
    B.Ax = Clamp(B.Ax, 0, Width);
    B.Ay = Clamp(B.Ay, 0, Height);
  }
  Relax(Boxes);
  for (int n = 1; n <= N; ++n) {
    const TBoxLayout& B = Boxes[n - 1];
    int Flags = B.Flags;
    if (B.Cx == B.W / 2 + 1 || B.Cx == Width - B.W / 2) Flags |= 1;
    if (B.Cy == B.H / 2 + 1 || B.Cy == Height - B.H / 2 - M) Flags |= 2;
    const int Alignment = B.Cx < B.Ax - B.W / 4 ? RIGHT_ALIGN : (B.Cx <= B.Ax + B.W / 4 ? CENTER_ALIGN : LEFT_ALIGN);
    SetTalkboxBounds(n, {B.Cx, B.Cy - B.H / 2, Alignment, Flags});
  }
}

void CMapWindow::DrawTalkboxes(int ToSurface, int x, int y) {
  const bool NoStretching = Preferences().NoStretching == 1;
  const int LH = LineHeight(LABEL_FONT);
  const TRect Clip{x, y, Width, Height};
  for (int n = 1; n <= GetNumberOfTalkboxes(); ++n) {
    const TTalkboxBounds B = GetTalkboxBounds(n);
    int bx = B.x, by = B.Top;
    if ((B.Flags & 1) == 0) bx -= NoStretching ? m_DisplacementX : m_DisplacementX * Width / MAP_PICTURE_WIDTH;
    if ((B.Flags & 2) == 0) by -= NoStretching ? m_DisplacementY : m_DisplacementY * Height / MAP_PICTURE_HEIGHT;
    const bool Highlight = GetTalkboxMode(n) == TALK_FROM_NPC;
    // x is the box's centre line; the alignment places the lines within the box.
    if (B.Alignment != CENTER_ALIGN) {
      int W = 0;
      for (int Line = 0; Line < GetTalkboxLines(n); ++Line) {
        W = std::max(W, TextWidth(LABEL_FONT, GetTalkboxLine(n, Line), WHOLE_TEXT, Highlight));
      }
      bx += B.Alignment == RIGHT_ALIGN ? W / 2 : -W / 2;
    }
    for (int Line = 0; Line < GetTalkboxLines(n); ++Line) {
      PrintText(ToSurface, x + bx, y + by + Line * LH, LABEL_FONT, GetTalkboxColour(n), Highlight,
                GetTalkboxLine(n, Line), WHOLE_TEXT, B.Alignment, Clip);
    }
  }
}

void CMapWindow::DrawStatusLine(int ToSurface, int x, int y) {
  const std::string& Text = GetStatusMessage();
  if (Text.empty()) return;
  const int Fits = CharsThatFit(LABEL_FONT, Text, Width, false);
  PrintText(ToSurface, x + Width / 2, y + Height - FontHeight(LABEL_FONT), LABEL_FONT, {255, 255, 255}, false,
            Text.c_str(), Fits, CENTER_ALIGN, NO_CLIP);
}

void CMapWindow::DrawAnimatedTexts(int ToSurface, int x, int y) {
  const int FH = FontHeight(LABEL_FONT);
  for (const TTextLabel& Label : m_TextLabels) {
    if (IsUnderRoof(Label.rx, Label.ry, Label.rz) && Label.rz != m_PlayerFloor) continue;
    int lx = Label.x, ly = Label.y;
    ToElement(lx, ly);
    const std::string Text = GetEffectText(Label.Effect);
    const int Half = TextWidth(LABEL_FONT, Text, WHOLE_TEXT, false) / 2;
    lx = Clamp(lx, Half, Width - Half);
    ly = Clamp(ly, 0, Height - FH);
    PrintText(ToSurface, x + lx, y + ly, LABEL_FONT, ColorOfIndex(GetEffectTextColor(Label.Effect)), false,
              Text.c_str(), WHOLE_TEXT, CENTER_ALIGN, NO_CLIP);
  }
}

// ---------------------------------------------------------------- the mouse's questions

void CMapWindow::PointToField(int x, int y, int& rx, int& ry, int& rz) const {
  if (Preferences().NoStretching == 1) {
    rx = ((MAP_PICTURE_WIDTH - Width) / 2 + m_DisplacementX + x) / 32 + 1;
    ry = ((MAP_PICTURE_HEIGHT - Height) / 2 + m_DisplacementY + y) / 32 + 1;
  } else {
    rx = (x * MAP_PICTURE_WIDTH / Width + m_DisplacementX) / 32 + 1;
    ry = (y * MAP_PICTURE_HEIGHT / Height + m_DisplacementY) / 32 + 1;
  }
  for (rz = m_TopFloor; rz > 0; --rz) {
    const TFieldObjects Field = ReadField(rx, ry, rz);
    const bool Floor = std::any_of(Field.Objects.begin(), Field.Objects.begin() + Field.Count, [](const TObject& O) {
      return (HasFlag(O, BANK) || HasFlag(O, BOTTOM)) && !HasFlag(O, LOOKTHROUGH);
    });
    if (Floor) return;
  }
}

// The element stands at (x, y) on the root this frame.
std::uint32_t CMapWindow::CreatureUnderMouse(int x, int y) const {
  const int mx = GetMouseX() - x, my = GetMouseY() - y;
  if (mx < 0 || my < 0 || mx >= Width || my >= Height) return 0;
  return CreatureAtPoint(mx, my);
}

std::uint32_t CMapWindow::CreatureAtPoint(int x, int y) const {
  const bool NoStretching = Preferences().NoStretching == 1;
  const TCrop C = Crop();
  for (auto Label = m_CreatureLabels.rbegin(); Label != m_CreatureLabels.rend(); ++Label) {
    const TCreature* Creature = FindCreature(Label->CreatureID);
    if (Creature == nullptr) continue;
    int rx = Creature->X, ry = Creature->Y, rz = Creature->Z;
    WorldToMap(rx, ry, rz);
    if (!InBlock(rx, ry) || IsUnderRoof(rx, ry, rz)) continue;
    bool Hit = false;
    if (NoStretching) {
      const int lx = Label->x - C.x, ly = Label->y - C.y;
      Hit = x >= lx - 16 && x <= lx + 16 && y >= ly && y <= ly + 32;
    } else {
      const int lx = Label->x * Width / MAP_PICTURE_WIDTH, ly = Label->y * Height / MAP_PICTURE_HEIGHT;
      Hit = std::abs(x - lx) <= Width / 15 / 2 && y >= ly && y <= ly + Height / 11;
    }
    if (Hit) return Label->CreatureID;
  }
  return 0;
}

// ---------------------------------------------------------------- the frame round it

CMapFrame::CMapFrame() : CGUIComposite(4) {
  auto Map = std::make_unique<CMapWindow>();
  m_Map = Map.get();
  AddChild(std::move(Map));
}

int CMapFrame::GetMinimumWidth() const { return m_Map->GetMinimumWidth(); }
int CMapFrame::GetMinimumHeight() const { return m_Map->GetMinimumHeight(); }

void CMapFrame::SetSize(int FrameWidth, int FrameHeight) {
  int MapWidth = std::min((FrameHeight - 2 * BORDER) * 15 / 11 + 2, FrameWidth - 2 * BORDER);
  if (Preferences().NoStretching == 1) MapWidth = std::min(MapWidth, MAP_PICTURE_WIDTH);
  const int MapHeight = static_cast<int>(std::floor(MapWidth * 11.0 / 15.0));
  const int MapX = (FrameWidth - 2 * BORDER - MapWidth) / 2 + BORDER;
  StoreSize(FrameWidth, MapHeight + 2 * BORDER);
  m_Map->SetPosition(MapX, BORDER);
  m_Map->SetSize(MapWidth, MapHeight);
  DrawingList[0] = {10, MapX - BORDER, 0, MapWidth + 2 * BORDER, BORDER};
  DrawingList[1] = {12, MapX - BORDER, BORDER, BORDER, MapHeight};
  DrawingList[2] = {11, MapX + MapWidth, BORDER, BORDER, MapHeight};
  DrawingList[3] = {9, MapX - BORDER, BORDER + MapHeight, MapWidth + 2 * BORDER, BORDER};
  Update();
}
