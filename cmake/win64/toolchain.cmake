# Debian's MinGW-w64 compilers for 64-bit Windows, with the parts that parts.sh leaves in the cache; programs run
# under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(NOT FETCHYARD_WIN64_PARTS)
    if(DEFINED ENV{FETCHYARD_CACHE})
        set(parts_cache "$ENV{FETCHYARD_CACHE}")
    elseif(DEFINED ENV{XDG_CACHE_HOME})
        set(parts_cache "$ENV{XDG_CACHE_HOME}/fetchyard")
    else()
        set(parts_cache "$ENV{HOME}/.cache/fetchyard")
    endif()
    set(FETCHYARD_WIN64_PARTS "${parts_cache}/win64/parts" CACHE PATH "what parts.sh has built")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES FETCHYARD_WIN64_PARTS)

set(CMAKE_FIND_ROOT_PATH "${FETCHYARD_WIN64_PARTS}" /usr/x86_64-w64-mingw32)
list(APPEND CMAKE_PREFIX_PATH "${FETCHYARD_WIN64_PARTS}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${FETCHYARD_WIN64_PARTS}/lib/pkgconfig")

# Translations are made by a tool of this system.
set(Qt5LinguistTools_DIR "/usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/cmake/Qt5LinguistTools" CACHE PATH "")

# What static libraries need of the system does not always come with them.
set(system_libraries "-lkernel32 -luser32 -lgdi32 -lshell32 -lole32 -loleaut32 -luuid -ladvapi32 -lws2_32 -lcrypt32 -lbcrypt")
set(CMAKE_C_STANDARD_LIBRARIES "${system_libraries}" CACHE STRING "libraries of the system for C")
set(CMAKE_CXX_STANDARD_LIBRARIES "${system_libraries}" CACHE STRING "libraries of the system for C++")

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/wine.sh")
