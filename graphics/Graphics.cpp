#include "graphics/Graphics.h"

#include "core/Exception.h"
#include "core/Paths.h"

void InitSprites() {
  if (!FileExists(GetFileName(TFileKind::SPRITES, false))) throw PROGRAM_ERROR::SPR_NOT_FOUND;
}

void InitPictures() {
  if (!FileExists(GetFileName(TFileKind::PICTURES, false))) throw PROGRAM_ERROR::PIC_NOT_FOUND;
}
