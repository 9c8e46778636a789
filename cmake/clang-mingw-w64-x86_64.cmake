# A second compiler for the Windows tree: the distribution's clang aimed at the MinGW-w64
# target, with MinGW GCC's C++ library and winpthread, so that code only GCC accepts shows up.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(IW_MINGW_TRIPLE x86_64-w64-mingw32)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET ${IW_MINGW_TRIPLE})
set(CMAKE_CXX_COMPILER_TARGET ${IW_MINGW_TRIPLE})
set(CMAKE_RC_COMPILER ${IW_MINGW_TRIPLE}-windres)

# clang knows where the MinGW C headers and libraries are, not where GCC keeps libstdc++:
# the newest posix-threaded GCC of the cross toolchain.
file(GLOB IW_MINGW_GCC_DIRS /usr/lib/gcc/${IW_MINGW_TRIPLE}/*-posix)
list(SORT IW_MINGW_GCC_DIRS COMPARE NATURAL ORDER DESCENDING)
list(GET IW_MINGW_GCC_DIRS 0 IW_MINGW_GCC_DIR)
# GCC's MinGW libraries keep thread-local variables (std::call_once's among them) through
# emulated TLS; clang's code must reach them the same way.
set(CMAKE_C_FLAGS_INIT "-femulated-tls")
set(CMAKE_CXX_FLAGS_INIT
    "-femulated-tls -isystem ${IW_MINGW_GCC_DIR}/include/c++ -isystem ${IW_MINGW_GCC_DIR}/include/c++/${IW_MINGW_TRIPLE}")
# -pthread puts winpthread inside the group of system libraries, after libstdc++ and libgcc_eh
# that need it.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-L${IW_MINGW_GCC_DIR} -pthread")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-L${IW_MINGW_GCC_DIR} -pthread")

set(CMAKE_FIND_ROOT_PATH /usr/${IW_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR wine)
