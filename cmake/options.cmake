# Flags that every target shares. -ffp-contract=off: results must not depend on whether the compiler fuses a multiply and an add.
add_library(orv_options INTERFACE)
# -Wno-restrict: GCC 12 reports assignments of string literals that overlap nothing.
target_compile_options(orv_options INTERFACE
  -ffp-contract=off -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
  -Wfloat-conversion $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> -Werror)
target_include_directories(orv_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_definitions(orv_options INTERFACE ORV_VERSION="${PROJECT_VERSION}")
if(ORV_SANITIZE STREQUAL "ON")
  set(ORV_SANITIZE "address,undefined")
endif()
if(ORV_SANITIZE)
  target_compile_options(orv_options INTERFACE -fsanitize=${ORV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(orv_options INTERFACE -fsanitize=${ORV_SANITIZE})
endif()
if(ORV_FUZZ)
  # The libraries count the branches they take; libFuzzer itself is linked into the fuzz targets alone.
  target_compile_options(orv_options INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(orv_options INTERFACE -fsanitize=address,undefined)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Once code is instrumented, GCC 12 sees faults in the standard library that are none; of inlined vectors and strings
  # it reports writes that cannot happen.
  if(ORV_SANITIZE)
    target_compile_options(orv_options INTERFACE -Wno-maybe-uninitialized)
  endif()
  target_compile_options(orv_options INTERFACE -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
endif()
