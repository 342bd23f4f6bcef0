# What every target of the project is compiled and linked with.
find_package(Threads REQUIRED)

add_library(ko_flags INTERFACE)
target_include_directories(ko_flags INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(ko_flags INTERFACE KO_DEVICE_ROOT="${KO_DEVICE_ROOT}" _FILE_OFFSET_BITS=64
    _TIME_BITS=64)  # past January 2038 on 32 bits too, if the C library can
target_compile_options(ko_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -fstack-protector-strong)
target_link_libraries(ko_flags INTERFACE Threads::Threads)

# Backtraces with functions and rows; variables, for which CMAKE_BUILD_TYPE=Debug is there, would take as long to compile
# as everything else.
add_compile_options($<$<CONFIG:RelWithDebInfo>:-g1>)

if(KO_SANITIZE)
    set(sanitize -fsanitize=${KO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_compile_options(-O1 ${sanitize})  # as the sanitizers' manuals advise
    add_link_options(${sanitize})
else()
    # Needs the optimiser, and hides from the sanitizers what it catches itself.
    target_compile_options(ko_flags INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    target_link_options(ko_flags INTERFACE -Wl,--gc-sections)
    if(NOT KO_LIBUTILS)  # which brings the shared one
        # One file goes to a device, whatever C++ runtime that has, and starts without resolving it.
        target_link_options(ko_flags INTERFACE -static-libstdc++ -static-libgcc)
    endif()
endif()

if(KO_STATIC)
    target_link_options(ko_flags INTERFACE -static)
else()
    target_link_options(ko_flags INTERFACE -pie -Wl,-z,relro,-z,now)
endif()
