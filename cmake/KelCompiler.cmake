# Compiler settings that every target of ours shares; nothing here reaches a project that links us.

add_library(kel_compiler INTERFACE)
target_compile_options(kel_compiler INTERFACE -Wall -Wextra -Wpedantic -Wconversion)
target_compile_definitions(kel_compiler INTERFACE QT_DEPRECATED_WARNINGS QT_NO_CAST_FROM_BYTEARRAY)
if(KEL_WERROR)
    target_compile_options(kel_compiler INTERFACE -Werror)
endif()

if(KEL_SANITIZE)
    add_compile_options(-fsanitize=${KEL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=${KEL_SANITIZE})
endif()

# The fuzzer finds its way by the branches that an input takes: the libraries must show theirs.
if(KEL_BUILD_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(KEL_CCACHE ccache)
if(KEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${KEL_CCACHE})
endif()
