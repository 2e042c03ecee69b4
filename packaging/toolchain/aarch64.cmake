# ARM v8, 64 bit.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
# Read-only relocations would have to end on a page, and pages may have 64 KB here: 55 KB of zeros in the file.
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-Wl,-z,norelro")
