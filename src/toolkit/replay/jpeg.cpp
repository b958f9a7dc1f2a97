// The bytes of a .jpg file, made by the system's JPEG library.
#include <csetjmp>
#include <cstdio>  // for jpeglib.h, which does not bring what it needs
#include <cstdlib>

#include <jpeglib.h>

#include "toolkit/replay/image.h"

namespace replay {
namespace {

constexpr int kQuality = 90;
constexpr int kDensity = 96;  // pixels an inch

struct ErrorManager {
  jpeg_error_mgr base;  // first, for the library knows only this part
  std::jmp_buf leave;
};

[[noreturn]] void Leave(j_common_ptr state) {
  std::longjmp(reinterpret_cast<ErrorManager*>(state->err)->leave, 1);
}

// Fills `bytes`, which the caller frees. False if the library refuses the image. A jump out of the
// library ends here, so nothing in this routine may need a destructor.
bool Compress(const Image& image, unsigned char*& bytes, unsigned long& size) {
  jpeg_compress_struct state;
  ErrorManager errors;
  state.err = jpeg_std_error(&errors.base);
  errors.base.error_exit = Leave;
  if (setjmp(errors.leave) != 0) {
    jpeg_destroy_compress(&state);
    return false;
  }
  jpeg_create_compress(&state);
  jpeg_mem_dest(&state, &bytes, &size);
  state.image_width = image.width;
  state.image_height = image.height;
  state.input_components = 3;
  state.in_color_space = JCS_RGB;
  jpeg_set_defaults(&state);
  jpeg_set_quality(&state, kQuality, TRUE);
  // The colours as fine as the brightness, so that thin lines keep theirs.
  state.comp_info[0].h_samp_factor = state.comp_info[0].v_samp_factor = 1;
  state.density_unit = 1;
  state.X_density = state.Y_density = kDensity;
  jpeg_start_compress(&state, TRUE);
  while (state.next_scanline < state.image_height) {
    const std::size_t first = std::size_t(state.next_scanline) * image.width * 3;
    JSAMPROW row = const_cast<JSAMPROW>(&image.rgb[first]);
    jpeg_write_scanlines(&state, &row, 1);
  }
  jpeg_finish_compress(&state);
  jpeg_destroy_compress(&state);
  return true;
}

}  // namespace

std::string JpegFile(const Image& image) {
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  std::string file;
  if (Compress(image, bytes, size)) file.assign(reinterpret_cast<const char*>(bytes), size);
  std::free(bytes);
  return file;
}

}  // namespace replay
