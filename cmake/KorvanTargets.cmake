# One interface target for the compiler's settings, and the helpers that make targets.

add_library(korvan_compile_options INTERFACE)
target_compile_options(korvan_compile_options INTERFACE
  "$<$<CXX_COMPILER_ID:GNU,Clang>:-Wall;-Wextra;-Wpedantic;-Wshadow;-Wconversion;-Wnon-virtual-dtor;-Woverloaded-virtual>"
  $<$<AND:$<CXX_COMPILER_ID:GNU,Clang>,$<BOOL:${KORVAN_WARNINGS_AS_ERRORS}>>:-Werror>
  # 4251 and 4275: exported classes have members and bases of the standard library. All our files are built with one
  # compiler and share its runtime library.
  "$<$<CXX_COMPILER_ID:MSVC>:/W4;/utf-8;/permissive-;/EHsc;/Zc:__cplusplus;/bigobj;/wd4251;/wd4275>"
  $<$<AND:$<CXX_COMPILER_ID:MSVC>,$<BOOL:${KORVAN_WARNINGS_AS_ERRORS}>>:/WX>)
if(MSVC)
  # The libraries of Boost are named here, not by their headers.
  target_compile_definitions(korvan_compile_options INTERFACE _CRT_SECURE_NO_WARNINGS BOOST_ALL_NO_LIB)
endif()

# Which file of a pair `x_posix.cpp` and `x_win32.cpp` is built.
if(WIN32)
  set(KORVAN_PLATFORM win32)
  target_compile_definitions(korvan_compile_options INTERFACE
    UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
else()
  set(KORVAN_PLATFORM posix)
endif()

if(KORVAN_SANITIZE)
  target_compile_options(korvan_compile_options INTERFACE
    -fsanitize=${KORVAN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
    # The sanitizers' own code makes GCC see uninitialised values in the headers of Boost and the standard library.
    # That the thread sanitizer does not see fences concerns the simulator's event loop, which has one thread.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized;-Wno-tsan>)
  target_link_options(korvan_compile_options INTERFACE -fsanitize=${KORVAN_SANITIZE})
endif()

# The headers that the framework shares with its modules, and nothing else: a module that includes a private header
# of the framework does not find it.
include(GenerateExportHeader)
add_library(korvan_contract INTERFACE)
target_include_directories(korvan_contract INTERFACE
  ${PROJECT_SOURCE_DIR}/framework/include
  ${PROJECT_SOURCE_DIR}/shared/include
  ${PROJECT_BINARY_DIR}/generated)
target_link_libraries(korvan_contract INTERFACE Boost::headers)

# What a program needs to take paths of any characters and any length on Windows.
function(korvan_windows_program target)
  if(MINGW)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/windows/program.rc)
    set_property(SOURCE ${PROJECT_SOURCE_DIR}/cmake/windows/program.rc PROPERTY
      OBJECT_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/windows/program.manifest)
  elseif(WIN32)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/windows/program.manifest)
  endif()
endfunction()

# Lets the system look for the libraries that a file imports in the program's folder (LOAD_LIBRARY_SEARCH_APPLICATION_DIR,
# 0x200) and its own (LOAD_LIBRARY_SEARCH_SYSTEM32, 0x800) alone; else the working folder and PATH follow. MinGW's linker has
# no such option, but what our files import lies in those two, which come first anyway.
function(korvan_library_search target)
  if(MSVC)
    target_link_options(${target} PRIVATE /DEPENDENTLOADFLAG:0xA00)
  endif()
endfunction()

set_property(GLOBAL PROPERTY KORVAN_FRAMEWORK_PARTS "")

# korvan_framework_part(NAME SOURCES file... LIBRARIES target...)
# One folder of the framework as an object library; all of them together make the framework's library.
function(korvan_framework_part name)
  cmake_parse_arguments(PART "" "" "SOURCES;LIBRARIES" ${ARGN})
  set(target korvan_fw_${name})
  add_library(${target} OBJECT ${PART_SOURCES})
  target_compile_definitions(${target} PRIVATE korvan_framework_EXPORTS)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/framework)
  target_link_libraries(${target} PUBLIC korvan_contract PRIVATE korvan_compile_options ${PART_LIBRARIES})
  set_property(GLOBAL APPEND PROPERTY KORVAN_FRAMEWORK_PARTS ${target})
endfunction()
