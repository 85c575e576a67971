#include "core/Text.h"

namespace {

unsigned char Byte(char Character) { return static_cast<unsigned char>(Character); }

}  // namespace

bool isSpace(char Character) {
  switch (Byte(Character)) {
    case ' ': case '\f': case '\n': case '\r': case '\t': case '\v': case 0xA0:
      return true;
    default:
      return false;
  }
}

bool isLetter(char Character) {
  const unsigned char C = Byte(Character);
  if ((C >= 'A' && C <= 'Z') || (C >= 'a' && C <= 'z')) return true;
  switch (C) {
    case 0xE4: case 0xF6: case 0xFC:  // ä ö ü
    case 0xC4: case 0xD6: case 0xDC:  // Ä Ö Ü
    case 0xDF:                        // ß
      return true;
    default:
      return false;
  }
}

char toLowerChar(char Character) {
  const unsigned char C = Byte(Character);
  if ((C >= 'A' && C <= 'Z') || (C >= 0xC0 && C <= 0xDE)) return static_cast<char>(C + 32);
  return Character;
}
