# The small program that holds the connection to a running LibreOffice Calc: built where the office and its SDK are
# found. Headers of the office's types are made into the build folder.
option(ORV_CALC "Build the link to a running LibreOffice Calc where its SDK is found" ON)
if(ORV_CALC AND NOT WIN32)
  find_program(ORV_OFFICE_PROGRAM soffice)
  if(ORV_OFFICE_PROGRAM)
    file(REAL_PATH ${ORV_OFFICE_PROGRAM} office)
    cmake_path(GET office PARENT_PATH office)
    cmake_path(GET office PARENT_PATH office_root)
    find_program(ORV_CPPUMAKER cppumaker HINTS ${office_root}/sdk/bin)
    find_path(ORV_OFFICE_HEADERS cppuhelper/bootstrap.hxx HINTS ${office_root}/sdk/include)
    foreach(library cppu cppuhelpergcc3 sal salhelpergcc3)
      find_library(ORV_OFFICE_${library} uno_${library} HINTS ${office_root}/sdk/lib)
      list(APPEND office_libraries ${ORV_OFFICE_${library}})
    endforeach()
  endif()
  if(ORV_CPPUMAKER AND ORV_OFFICE_HEADERS AND NOT office_libraries MATCHES "NOTFOUND")
    set(office_types ${PROJECT_BINARY_DIR}/office_types)
    set(ORV_OFFICE_FOLDER ${office} CACHE INTERNAL "")
    set(ORV_OFFICE_LIBRARIES ${office_libraries} CACHE INTERNAL "")
    add_custom_command(OUTPUT ${office_types}.stamp
      COMMAND ${ORV_CPPUMAKER} -Gc -O${office_types} ${office}/types.rdb ${office}/types/offapi.rdb
      COMMAND ${CMAKE_COMMAND} -E touch ${office_types}.stamp
      COMMENT "Making the headers of the office's types" VERBATIM)
    add_custom_target(orv_office_types DEPENDS ${office_types}.stamp)

    # What every program needs that speaks to the office.
    function(orv_office_program name)
      add_dependencies(${name} orv_office_types)
      target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src)
      target_include_directories(${name} SYSTEM PRIVATE ${ORV_OFFICE_HEADERS} ${PROJECT_BINARY_DIR}/office_types)
      target_compile_definitions(${name} PRIVATE LINUX UNX CPPU_ENV=gcc3
        ORV_OFFICE_TYPES="file://${ORV_OFFICE_FOLDER}/types/offapi.rdb")
      target_compile_options(${name} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wold-style-cast -Werror
        $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict;-Wno-array-bounds;-Wno-stringop-overflow;-Wno-stringop-overread>)
      target_link_libraries(${name} PRIVATE Threads::Threads ${ORV_OFFICE_LIBRARIES})
      set_target_properties(${name} PROPERTIES BUILD_RPATH ${ORV_OFFICE_FOLDER} INSTALL_RPATH ${ORV_OFFICE_FOLDER})
    endfunction()

    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/calc_helper/*.cpp)
    add_executable(orv_calc_helper ${sources})
    orv_office_program(orv_calc_helper)
    target_link_libraries(orv_calc_helper PRIVATE nlohmann_json::nlohmann_json)
    # Beside the program, which looks for it there.
    set_target_properties(orv_calc_helper PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})
  else()
    message(STATUS "No SDK of LibreOffice: the link to a running Calc is left out")
  endif()
endif()
