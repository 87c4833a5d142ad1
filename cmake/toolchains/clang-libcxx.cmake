# The machine itself with clang and its own C++ library, libc++. protobuf has classes of that library in it, so it is one of
# its own, which scripts/setup made.
#
# Numbers with fractions are read from text by std::from_chars, which libc++ has since version 20. Debian's libc++ 22 has the
# headers, and is linked against the shared library of version 19: what is not in that one comes from the static one.
find_program(CMAKE_C_COMPILER NAMES clang-22 REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES clang++-22 REQUIRED)
set(CMAKE_CXX_FLAGS_INIT "-stdlib=libc++")
set(CMAKE_CXX_STANDARD_LIBRARIES "-lc++ -l:libc++.a")

include(${CMAKE_CURRENT_LIST_DIR}/../CacheFolder.cmake)
list(PREPEND CMAKE_PREFIX_PATH ${cache}/libcxx-protobuf-3.21.12)
