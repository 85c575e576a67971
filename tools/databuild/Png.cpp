#include "tools/databuild/Png.h"

#include <png.h>

#include <cstdio>
#include <memory>
#include <vector>

#include "core/Exception.h"
#include "core/Script.h"

namespace {

[[noreturn]] void Fail(const std::string& FileName) {
  ThrowException("failed to write PNG file", {{"FileName", FileName}});
}

// libpng reports errors by longjmp; this keeps them inside one C-style call.
bool Write(std::FILE* File, const TCanvas& Image) {
  png_structp Png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  if (Png == nullptr) return false;
  png_infop Info = png_create_info_struct(Png);
  std::vector<png_bytep> Rows(static_cast<size_t>(Image.height()));
  // The pixels are RGBA bytes in rows, as libpng wants them.
  auto* Pixels = reinterpret_cast<png_bytep>(const_cast<TRGBA*>(Image.pixels().data()));
  for (int Y = 0; Y < Image.height(); ++Y) Rows[static_cast<size_t>(Y)] = Pixels + 4L * Y * Image.width();
  if (Info == nullptr || setjmp(png_jmpbuf(Png))) {
    png_destroy_write_struct(&Png, &Info);
    return false;
  }
  png_init_io(Png, File);
  png_set_compression_level(Png, 3);
  png_set_IHDR(Png, Info, static_cast<png_uint_32>(Image.width()), static_cast<png_uint_32>(Image.height()), 8,
               PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(Png, Info);
  png_write_image(Png, Rows.data());
  png_write_end(Png, nullptr);
  png_destroy_write_struct(&Png, &Info);
  return true;
}

}  // namespace

void WritePng(const TCanvas& Image, const std::string& FileName) {
  static_assert(sizeof(TRGBA) == 4);
  TFileHandle File(std::fopen(FileName.c_str(), "wb"));
  if (!File || !Write(File.get(), Image)) Fail(FileName);
  if (std::fclose(File.release()) != 0) Fail(FileName);
}
