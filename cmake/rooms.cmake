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
  # A program of one file, but for those with Qt: they share the compiler's libraries with Qt's own.
  target_link_options(ferrowen_options INTERFACE
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:FERROWEN_SHARED_RUNTIME>>>:-static>)
endif()
if(FERROWEN_SANITIZE)
  # The tests themselves run with the address sanitizer alone: the other one adds half to the time that they compile.
  target_compile_options(ferrowen_options INTERFACE
    -fsanitize=address -fno-sanitize-recover=all -fno-omit-frame-pointer
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:FERROWEN_TEST_SOURCES>>>:-fsanitize=fuzzer-no-link,undefined>)
  target_link_options(ferrowen_options INTERFACE -fsanitize=address,undefined)
endif()

# ferrowen_resources(TARGET "what it is"): manifest, icon and version of a Windows program; elsewhere nothing.
function(ferrowen_resources target description)
  if(NOT WIN32)
    return()
  endif()
  set(RESOURCE_TARGET ${target})
  set(RESOURCE_DESCRIPTION ${description})
  get_target_property(name ${target} OUTPUT_NAME)
  if(NOT name)
    set(name ${target})
  endif()
  set(RESOURCE_FILE_NAME ${name}.exe)
  set(written ${PROJECT_BINARY_DIR}/generated/resources/${target}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/src/platform/win32/ferrowen.rc.in ${written} @ONLY)
  set_source_files_properties(${written} PROPERTIES OBJECT_DEPENDS
    "${PROJECT_SOURCE_DIR}/src/platform/win32/ferrowen.manifest;${PROJECT_SOURCE_DIR}/packaging/windows/ferrowen.ico")
  target_sources(${target} PRIVATE ${written})
endfunction()

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
  if(FERROWEN_SANITIZE AND name STREQUAL "cli")
    # The templates of the option parser took a quarter of this build; no time is spent in them.
    target_compile_options(${target} PRIVATE -O0)
  endif()
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
