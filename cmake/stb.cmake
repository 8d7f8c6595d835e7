# Target vrx_stb: the folder of stb's headers, whose JPEG reader is independent of the codec.

include_guard(GLOBAL)

find_path(VRX_STB_FOLDER stb_image.h PATHS /usr/include/stb NO_CMAKE_FIND_ROOT_PATH REQUIRED)
add_library(vrx_stb INTERFACE)
target_include_directories(vrx_stb SYSTEM INTERFACE ${VRX_STB_FOLDER})
