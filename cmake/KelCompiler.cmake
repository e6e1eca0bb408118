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

# A panel server reads what devices and files send it: mistakes in our code or in a library shall end
# the program, not be of use to anyone. Sanitizers bring checks of their own and don't mix with these.
include(CheckPIESupported)
check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(NOT KEL_SANITIZE)
    add_compile_options(-fstack-protector-strong -fstack-clash-protection)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|i686)$")
        add_compile_options(-fcf-protection)
    endif()
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
    # The C library's checks need an optimising build and say so with a warning otherwise.
    string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
    if("${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${type}}" MATCHES "-O[123gs]")
        set(KEL_FORTIFIED ON)
        add_compile_definitions(_FORTIFY_SOURCE=2)
    endif()
    add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
endif()

# The fuzzer finds its way by the branches that an input takes: the libraries must show theirs.
if(KEL_BUILD_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(KEL_CCACHE ccache)
if(KEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${KEL_CCACHE})
endif()

# Reports about Qt itself that are no trouble of ours.
set(kel_suppressions ${PROJECT_SOURCE_DIR}/tests/support)
set(KEL_SANITIZER_ENVIRONMENT
    "LSAN_OPTIONS=suppressions=${kel_suppressions}/lsan.supp:print_suppressions=0;TSAN_OPTIONS=suppressions=${kel_suppressions}/tsan.supp")
