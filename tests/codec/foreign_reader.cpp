#include "foreign_reader.h"

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_JPEG
#define STBI_NO_STDIO
#define STBI_NO_THREAD_LOCALS
#include <stb_image.h>

namespace vrx::test {

Picture readByAnother(std::span<const std::uint8_t> file) {
    int width = 0;
    int height = 0;
    int channels = 0;
    stbi_uc* const pixels =
        stbi_load_from_memory(file.data(), static_cast<int>(file.size()), &width, &height, &channels, 3);
    if (pixels == nullptr) return {};
    Picture picture = blankPicture(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height));
    picture.rgb.assign(pixels, pixels + picture.rgb.size());
    stbi_image_free(pixels);
    return picture;
}

}  // namespace vrx::test
