# 64-bit PCs, which run an image for tests or as a client.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_CXX_COMPILER x86_64-linux-gnu-g++)
