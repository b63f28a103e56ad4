# Warnings as errors everywhere; sanitizers on request (the test build turns them on).
add_library(pomvar_build_options INTERFACE)
target_compile_options(pomvar_build_options INTERFACE
    -Wall -Wextra -Werror -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
target_compile_definitions(pomvar_build_options INTERFACE
    QT_NO_KEYWORDS QT_USE_QSTRINGBUILDER)
if(POMVAR_DIAGNOSTIC)
    target_compile_definitions(pomvar_build_options INTERFACE POMVAR_DIAGNOSTIC=1)
endif()
if(POMVAR_SANITIZE)
    target_compile_options(pomvar_build_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(pomvar_build_options INTERFACE -fsanitize=address,undefined)
endif()
# GCC 12 reports -Wrestrict false positives inside std::string at -O3 (GCC bug 105329).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(pomvar_build_options INTERFACE -Wno-restrict)
endif()
