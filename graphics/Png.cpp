#include "graphics/Png.h"

#include <png.h>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

struct TFileCloser {
  void operator()(std::FILE* File) const { std::fclose(File); }
};
using TFile = std::unique_ptr<std::FILE, TFileCloser>;

}  // namespace

bool WritePng(const std::string& FileName, const TImage& Image) {
  TFile File(std::fopen(FileName.c_str(), "wb"));
  if (!File) return false;
  png_structp Png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop Info = Png != nullptr ? png_create_info_struct(Png) : nullptr;
  if (Info == nullptr || setjmp(png_jmpbuf(Png))) {
    png_destroy_write_struct(&Png, &Info);
    return false;
  }
  png_init_io(Png, File.get());
  png_set_IHDR(Png, Info, Image.Width, Image.Height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(Png, Info);
  for (int Row = 0; Row < Image.Height; ++Row) {
    png_write_row(Png, &Image.Pixels[static_cast<size_t>(Row) * Image.Width * 3]);
  }
  png_write_end(Png, nullptr);
  png_destroy_write_struct(&Png, &Info);
  return std::fflush(File.get()) == 0;
}

// Any PNG is turned into 8-bit RGB.
std::optional<TImage> ReadPng(const std::string& FileName) {
  TFile File(std::fopen(FileName.c_str(), "rb"));
  if (!File) return std::nullopt;
  png_structp Png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop Info = Png != nullptr ? png_create_info_struct(Png) : nullptr;
  TImage Image;
  if (Info == nullptr || setjmp(png_jmpbuf(Png))) {
    png_destroy_read_struct(&Png, &Info, nullptr);
    return std::nullopt;
  }
  png_init_io(Png, File.get());
  png_read_info(Png, Info);
  png_set_expand(Png);
  png_set_strip_16(Png);
  png_set_strip_alpha(Png);
  png_set_gray_to_rgb(Png);
  png_read_update_info(Png, Info);
  Image.Width = static_cast<int>(png_get_image_width(Png, Info));
  Image.Height = static_cast<int>(png_get_image_height(Png, Info));
  Image.Pixels.resize(static_cast<size_t>(Image.Width) * Image.Height * 3);
  for (int Row = 0; Row < Image.Height; ++Row) {
    png_read_row(Png, &Image.Pixels[static_cast<size_t>(Row) * Image.Width * 3], nullptr);
  }
  png_read_end(Png, nullptr);
  png_destroy_read_struct(&Png, &Info, nullptr);
  return Image;
}
