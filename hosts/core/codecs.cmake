# Libraries of the picture codecs. Included where `vx3core` is made.
pkg_check_modules(PICTURES REQUIRED IMPORTED_TARGET libturbojpeg libpng libtiff-4>=4.5)
target_link_libraries(vx3core PRIVATE PkgConfig::PICTURES)
add_subdirectory(media)
add_dependencies(vx3core vx3media)
