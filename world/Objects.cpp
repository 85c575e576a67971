#include "world/Objects.h"

#include "core/Exception.h"
#include "core/Paths.h"

void InitObjects() {
  if (!FileExists(GetFileName(TFileKind::OBJECT_TYPES, false))) throw PROGRAM_ERROR::DAT_NOT_FOUND;
}

void ExitObjects() {}
