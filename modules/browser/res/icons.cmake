# The module's resources in the build: icons made from their SVG sources, and copies of the
# text files. They come to lie in a folder `res` beside the module, where it looks for them.
find_package(PNG REQUIRED)
find_package(TIFF REQUIRED)
find_program(VX3_RSVG rsvg-convert)
if(NOT VX3_RSVG)
    message(FATAL_ERROR "rsvg-convert (Debian: librsvg2-bin) is needed to draw the icons")
endif()

set(resource_source ${CMAKE_CURRENT_LIST_DIR})
set(resource_target ${CMAKE_BINARY_DIR}/modules/browser/res)
set(resource_files)

add_executable(maketiff ${resource_source}/tools/maketiff.cpp)
target_link_libraries(maketiff PRIVATE PNG::PNG TIFF::TIFF)
set_target_properties(maketiff PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tools)

# The SVGs say their own size, so that nothing is scaled here.
file(MAKE_DIRECTORY ${resource_target}/icons ${resource_target}/strings ${resource_target}/layouts ${resource_target}/descriptions
    ${CMAKE_BINARY_DIR}/tools/icons)
file(GLOB drawings CONFIGURE_DEPENDS ${resource_source}/icons/*.svg)
foreach(drawing ${drawings})
    get_filename_component(name ${drawing} NAME_WE)
    set(icon ${resource_target}/icons/${name}.tif)
    set(raster ${CMAKE_BINARY_DIR}/tools/icons/${name}.png)
    add_custom_command(OUTPUT ${icon}
        COMMAND ${VX3_RSVG} --format=png --output=${raster} ${drawing}
        COMMAND maketiff ${raster} ${icon}
        DEPENDS ${drawing} maketiff
        COMMENT "Icon ${name}" VERBATIM)
    list(APPEND resource_files ${icon})
endforeach()

file(GLOB texts RELATIVE ${resource_source} CONFIGURE_DEPENDS
    ${resource_source}/strings/*.txt ${resource_source}/layouts/*.layout ${resource_source}/descriptions/*.txt)
foreach(text ${texts})
    add_custom_command(OUTPUT ${resource_target}/${text}
        COMMAND ${CMAKE_COMMAND} -E copy ${resource_source}/${text} ${resource_target}/${text}
        DEPENDS ${resource_source}/${text}
        COMMENT "Resource ${text}" VERBATIM)
    list(APPEND resource_files ${resource_target}/${text})
endforeach()

add_custom_target(browser_resources ALL DEPENDS ${resource_files})
