# One static library per folder of src/. A room sees the headers of the rooms it names and no others:
# its include path is a folder that holds a single link back to its source folder, so an include of a
# room that is not named does not compile.

add_library(ferrowen_options INTERFACE)
target_compile_features(ferrowen_options INTERFACE cxx_std_20)
target_compile_options(ferrowen_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 takes inlined string concatenation for copies out of bounds; clang and the sanitizers watch the same.
  target_compile_options(ferrowen_options INTERFACE -Wno-restrict -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
endif()
if(WIN32)
  target_compile_definitions(ferrowen_options INTERFACE _WIN32_WINNT=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN)
endif()
if(FERROWEN_SANITIZE)
  target_compile_options(ferrowen_options INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(ferrowen_options INTERFACE -fsanitize=address,undefined)
endif()

# ferrowen_room(NAME folder SOURCES file... USES room... [PCH header])
function(ferrowen_room name folder)
  cmake_parse_arguments(ROOM "" "PCH" "SOURCES;USES" ${ARGN})
  set(target ferrowen_${name})
  set(include_root ${PROJECT_BINARY_DIR}/rooms/${name})
  get_filename_component(parent ${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${include_root}/${parent})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${folder} ${include_root}/${folder} SYMBOLIC)
  add_library(${target} STATIC ${ROOM_SOURCES})
  target_include_directories(${target} PUBLIC ${include_root})
  target_link_libraries(${target} PUBLIC ferrowen_options)
  foreach(used IN LISTS ROOM_USES)
    target_link_libraries(${target} PUBLIC ferrowen_${used})
  endforeach()
  if(ROOM_PCH)
    target_precompile_headers(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/${ROOM_PCH})
  elseif(name STREQUAL "platform")
    target_precompile_headers(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/pch.hpp)
  else()
    target_precompile_headers(${target} REUSE_FROM ferrowen_platform)
  endif()
endfunction()
