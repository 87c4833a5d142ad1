# Options of our own code only: an interface target that every target of the project links privately.
add_library(zt_options INTERFACE)
if(MSVC)
  target_compile_options(zt_options INTERFACE /W4 /permissive- /utf-8 /Zc:__cplusplus /wd4251 $<$<BOOL:${ZT_WARNINGS_AS_ERRORS}>:/WX>)
  # The C library's own calendar functions are used as the standard has them.
  target_compile_definitions(zt_options INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN _CRT_SECURE_NO_WARNINGS)
  # Checks of the stack, ASLR and DEP are defaults of this compiler.
  target_compile_options(zt_options INTERFACE /guard:cf)
  target_link_options(zt_options INTERFACE /GUARD:CF /CETCOMPAT)
else()
  # GCC 12 optimising a concatenation of std::string reports overlaps that cannot be (-Wrestrict).
  target_compile_options(zt_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
    -Woverloaded-virtual -Wold-style-cast $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<BOOL:${ZT_WARNINGS_AS_ERRORS}>:-Werror>)
endif()
if(MINGW)
  # ASLR and DEP are defaults of this linker, checks of the stack are not. Their library is linked in: the option at the
  # linking would take a DLL that nobody ships.
  target_compile_options(zt_options INTERFACE -fstack-protector-strong)
  string(APPEND CMAKE_CXX_STANDARD_LIBRARIES " -l:libssp.a")
endif()
if(WIN32)
  target_compile_definitions(zt_options INTERFACE UNICODE _UNICODE _WIN32_WINNT=0x0A00)
endif()

# Test code itself is compiled for the shortest build: GoogleTest's macros cost the optimiser and
# UndefinedBehaviorSanitizer half of the whole time. What is tested keeps all that its preset says.
set(ZT_TEST_CODE_OPTIONS)
if(NOT MSVC)
  list(APPEND ZT_TEST_CODE_OPTIONS -O0)
  if(ZT_SANITIZE)
    list(APPEND ZT_TEST_CODE_OPTIONS -fno-sanitize=undefined,float-cast-overflow)
  endif()
endif()
# Several tests put together have more sections than a plain object file of Windows can.
if(MSVC)
  list(APPEND ZT_TEST_CODE_OPTIONS /bigobj)
elseif(MINGW)
  list(APPEND ZT_TEST_CODE_OPTIONS -Wa,-mbig-obj)
endif()

if(ZT_SANITIZE)
  add_compile_options(-fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined,float-cast-overflow)
endif()

# Our own code alone is counted. Test code is as well: where a program holds two copies of an inline function, one of
# them uncounted, the linker may choose that one. Clang keeps paths relative to the build folder, so that the compiler
# cache serves every clone.
if(ZT_COVERAGE AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  target_compile_options(zt_options INTERFACE -fprofile-instr-generate -fcoverage-mapping -fcoverage-compilation-dir=.)
  add_link_options(-fprofile-instr-generate)
elseif(ZT_COVERAGE)
  target_compile_options(zt_options INTERFACE --coverage)
  add_link_options(--coverage)
endif()

# Everything that a harness reaches counts its branches for libFuzzer, which only the harnesses themselves link. What
# comparisons compare is not told, for a third of the time: the dictionaries say what to look for.
if(ZT_BUILD_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined,float-cast-overflow -fno-sanitize-recover=all
    -fno-sanitize-coverage=trace-cmp -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined,float-cast-overflow)
endif()

# Files that are handed out: the same bytes wherever and whenever they are built, and on Windows an identity by which
# their symbols are found (on Linux that is the compiler's default).
if(ZT_HANDED_OUT AND NOT MSVC)
  # The last one that fits is taken.
  set(sources /usr/src/zt-telemetry)
  foreach(place ${PROJECT_SOURCE_DIR}=${sources} ${PROJECT_BINARY_DIR}=${sources}/build ${ZT_CACHE_DIR}=${sources}-libraries)
    add_compile_options(-ffile-prefix-map=${place})
  endforeach()
  # What is installed is what was linked: a path that is replaced leaves its length behind.
  set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
  set(CMAKE_INSTALL_RPATH $ORIGIN)
  if(MINGW)
    add_link_options(-Wl,--gc-sections)
  endif()
endif()
if(MINGW)
  add_link_options(-Wl,--no-insert-timestamp -Wl,--build-id)
endif()
