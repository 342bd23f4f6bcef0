# Cross-builds with Debian's GNU toolchains; KO_TRIPLET comes from the preset. The programs are static, so that they
# start from a shell and need nothing else, here under qemu and on a device as well.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KO_TRIPLET)
string(REGEX MATCH "^[^-]+" CMAKE_SYSTEM_PROCESSOR ${KO_TRIPLET})

set(CMAKE_C_COMPILER ${KO_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${KO_TRIPLET}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${CMAKE_SYSTEM_PROCESSOR})

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)

# Pages of Android have 4 or 16 KB; the linker's 64 would only pad the file.
set(CMAKE_EXE_LINKER_FLAGS_INIT -Wl,-z,max-page-size=16384)
