# Cross-build for 64-bit Windows with Debian's MinGW-w64 (the posix thread model, which
# std::thread and std::mutex need). Test programs run through Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(QP_MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${QP_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${QP_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${QP_MINGW_TRIPLET}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${QP_MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Link the GCC runtime, the C++ library and winpthread into each program, so that Wine
# needs no MinGW DLL on its search path.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

# Debian's wine64 package installs its loader under /usr/lib/wine; the wine package adds
# the wrapper on PATH.
find_program(QP_WINE NAMES wine64 wine PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(QP_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${QP_WINE})
endif()
