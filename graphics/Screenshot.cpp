#include "graphics/Screenshot.h"

#include <cstdio>
#include <filesystem>

#include "core/Paths.h"
#include "graphics/Png.h"

std::string SaveScreenshot(const TImage& Image) {
  const std::filesystem::path Folder = std::filesystem::path(GetUserDirectory()) / "Screenshots";
  std::error_code Failure;
  std::filesystem::create_directories(Folder, Failure);
  if (Failure) return {};
  for (int Number = 1; Number <= 9999; ++Number) {
    char Name[32];
    std::snprintf(Name, sizeof(Name), "Screenshot%04d.png", Number);
    const std::filesystem::path File = Folder / Name;
    if (std::filesystem::exists(File)) continue;
    // Written aside and renamed, so that a reader never sees half a file.
    const std::filesystem::path Partial = Folder / (std::string(Name) + ".part");
    if (!WritePng(Partial.string(), Image)) return {};
    std::filesystem::rename(Partial, File, Failure);
    return Failure ? std::string() : File.string();
  }
  return {};
}
