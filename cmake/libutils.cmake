# Android's own strings, from Debian's android-libutils-dev, as the target libutils where it is installed for the
# processor that is built for. What links it has String16 and String8 of that library instead of the platform layer's.
if(NOT CMAKE_CROSSCOMPILING)
    find_path(LIBUTILS_INCLUDE utils/String16.h PATH_SUFFIXES android)
    find_library(LIBUTILS_LIBRARY utils PATH_SUFFIXES android)
endif()

if(LIBUTILS_INCLUDE AND LIBUTILS_LIBRARY)
    add_library(libutils INTERFACE)
    target_include_directories(libutils SYSTEM INTERFACE ${LIBUTILS_INCLUDE})
    target_compile_definitions(libutils INTERFACE KO_LIBUTILS)
    target_link_libraries(libutils INTERFACE ${LIBUTILS_LIBRARY})
elseif(KO_LIBUTILS)
    message(FATAL_ERROR "KO_LIBUTILS needs android-libutils-dev for this processor")
endif()
