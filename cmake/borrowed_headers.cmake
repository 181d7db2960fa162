# Stands in for the libraries that the distribution does not build for the target: the headers of this machine's own, in
# a folder with nothing else, under the names of the libraries' targets. What needs them compiles but does not link.
file(GLOB machine_includes /usr/include/*-linux-gnu)
set(borrowed ${PROJECT_BINARY_DIR}/borrowed_headers)
file(MAKE_DIRECTORY ${borrowed})
foreach(header zip.h zipconf.h pugixml.hpp pugiconfig.hpp tbb oneapi hwy nlohmann freetype2 fontconfig png.h pngconf.h
        pnglibconf.h jpeglib.h jerror.h jmorecfg.h jconfig.h)
  find_path(ORV_BORROWED_${header} ${header} PATHS /usr/include ${machine_includes}
            REQUIRED NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  file(CREATE_LINK ${ORV_BORROWED_${header}}/${header} ${borrowed}/${header} SYMBOLIC)
endforeach()
foreach(library PkgConfig::LIBZIP PkgConfig::LIBHWY pugixml::pugixml TBB::tbb nlohmann_json::nlohmann_json OpenGL::OpenGL
        OpenGL::EGL OpenGL::GLU Freetype::Freetype Fontconfig::Fontconfig PNG::PNG JPEG::JPEG)
  add_library(${library} INTERFACE IMPORTED)
  target_include_directories(${library} SYSTEM INTERFACE ${borrowed} ${borrowed}/freetype2)
endforeach()
