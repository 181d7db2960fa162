# orv_room(NAME [DEPENDS ROOM...] [LIBRARIES TARGET...]): the static library orv_NAME of all sources in src/NAME.
function(orv_room name)
  cmake_parse_arguments(ROOM "" "" "DEPENDS;LIBRARIES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${name}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/(main|point_lists)\\.cpp$")
  add_library(orv_${name} STATIC ${sources})
  list(TRANSFORM ROOM_DEPENDS PREPEND orv_)
  target_link_libraries(orv_${name} PUBLIC orv_options ${ROOM_DEPENDS} ${ROOM_LIBRARIES})
endfunction()
