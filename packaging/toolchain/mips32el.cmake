# MIPS32 little endian with hard float, release 1 of the instruction set: the oldest of these boxes know no later one.
# The compiler's own C++ library is built for release 2; packaging/mips32-personality makes the one part of it that shows.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR mips)
set(CMAKE_CXX_COMPILER mipsel-linux-gnu-g++)
# Inlining costs more here than elsewhere, since every reference to a global takes two instructions.
set(CMAKE_CXX_FLAGS_INIT "-march=mips32 -fno-inline-small-functions")
# The page size: no zeros between code and data in the file, which both keep their places in memory.
set(CMAKE_MODULE_LINKER_FLAGS_INIT
    "${CMAKE_CURRENT_LIST_DIR}/../../build/sysroot/mipsel/eh_personality.o -Wl,-z,common-page-size=256")
