#pragma once
// The readable sources of Kelmo.dat, in the project's script format (see
// data/objects/README.md), and the dump that writes a type file back in that form.
#include <iosfwd>
#include <string>
#include <vector>

#include "tools/databuild/TypeFile.h"

// Reads the source files in the given order. A mistake fails with the script
// reader's "error in script file '<name>' in line <n>" and what is wrong.
TTypeFile ReadTypeSources(const std::vector<std::string>& FileNames);

// Writes File as one source that ReadTypeSources turns into the same bytes.
void WriteTypeSource(const TTypeFile& File, std::ostream& Out);
