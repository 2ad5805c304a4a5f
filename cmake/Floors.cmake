# Flags that hold for every target, and the two functions that the folders are built with.

add_library(quadrix_flags INTERFACE)
target_compile_options(quadrix_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Wmissing-declarations
    -Woverloaded-virtual -Wimplicit-fallthrough -Werror)
target_compile_definitions(quadrix_flags INTERFACE
    QT_USE_QSTRINGBUILDER QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_FOREACH)
target_include_directories(quadrix_flags INTERFACE ${PROJECT_SOURCE_DIR})
# What is handed out reads foreign binary files: an overrun must end the program, not go on in it.
if(NOT WIN32)
    include(CheckCXXSourceCompiles)
    set(CMAKE_REQUIRED_FLAGS "-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
    check_cxx_source_compiles("#include <cstring>
        int main(int argc, char** argv) { char text[8]; std::strcpy(text, argv[argc - 1]); return text[0]; }" QUADRIX_FORTIFY_3)
    unset(CMAKE_REQUIRED_FLAGS)
    set(released $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
    target_compile_options(quadrix_flags INTERFACE $<${released}:-fstack-protector-strong>
        $<${released}:-U_FORTIFY_SOURCE> $<${released}:-D_FORTIFY_SOURCE=$<IF:$<BOOL:${QUADRIX_FORTIFY_3}>,3,2>>)
    target_link_options(quadrix_flags INTERFACE $<${released}:LINKER:-z,relro,-z,now> $<${released}:-pie>)
endif()
# Each of some twenty programs is linked from the same libraries, which takes lld a fifth of the time. What is handed out
# is linked by the linker of the system.
find_program(LLD ld.lld)
if(LLD AND NOT WIN32)
    target_link_options(quadrix_flags INTERFACE $<$<NOT:${released}>:-fuse-ld=lld>)
endif()
if(QUADRIX_SANITIZE)
    target_compile_options(quadrix_flags INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(quadrix_flags INTERFACE -fsanitize=address,undefined)
endif()
if(QUADRIX_FUZZ)
    target_compile_options(quadrix_flags INTERFACE -Wno-error -fsanitize=fuzzer-no-link,address,undefined
        -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(quadrix_flags INTERFACE -fsanitize=address,undefined)
endif()

# In a quick build, what a run spends no time in is compiled without optimization: it takes two thirds of the time.
function(quadrix_quick)
    if(QUADRIX_QUICK)
        foreach(target ${ARGN})
            target_compile_options(${target} PRIVATE -O0)
        endforeach()
    endif()
endfunction()

# What nearly every file reads, compiled once for all targets that are built alike: NAME HEADER [LIBRARY...].
function(quadrix_common_headers name header)
    file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp CONTENT "")
    add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
    target_link_libraries(${name} PRIVATE quadrix_flags ${ARGN})
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
    target_precompile_headers(${name} PRIVATE ${PROJECT_SOURCE_DIR}/${header})
endfunction()
quadrix_common_headers(quadrix_headers cmake/pch.h Qt6::Core)
quadrix_common_headers(quadrix_quick_headers cmake/pch.h Qt6::Core)
quadrix_quick(quadrix_quick_headers)

# Files of a target are compiled so many at a time, which takes a third of the time: what one of them keeps to itself, in
# a namespace without a name, is called otherwise than that of the others. Tools that look at each file want them apart.
option(QUADRIX_APART "Compile every file by itself" OFF)
function(quadrix_together target count)
    if(NOT QUADRIX_APART)
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${count})
    endif()
endfunction()

# One floor of the house: a static library of the .cpp files of its folder (and of its sub-folders).
# main.cpp, where there is one, belongs to the program and not to the library. MOC: it declares classes with Q_OBJECT.
# TOGETHER: its files are compiled several at a time. QUICK: a run spends no time in it. APART: a sub-folder that is
# not taken in.
function(quadrix_floor name)
    cmake_parse_arguments(FLOOR "MOC;QUICK;TOGETHER" "APART" "LINK;PRIVATE" ${ARGN})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${name}/*.cpp ${PROJECT_SOURCE_DIR}/${name}/*.h)
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    if(FLOOR_APART)
        list(FILTER sources EXCLUDE REGEX "/${FLOOR_APART}/")
    endif()
    add_library(quadrix_${name} STATIC ${sources})
    target_link_libraries(quadrix_${name} PUBLIC quadrix_flags ${FLOOR_LINK} PRIVATE ${FLOOR_PRIVATE})
    set_target_properties(quadrix_${name} PROPERTIES AUTOMOC ${FLOOR_MOC})
    if(FLOOR_TOGETHER)
        quadrix_together(quadrix_${name} 8)
    endif()
    if(FLOOR_QUICK)
        quadrix_quick(quadrix_${name})
        target_precompile_headers(quadrix_${name} REUSE_FROM quadrix_quick_headers)
    else()
        target_precompile_headers(quadrix_${name} REUSE_FROM quadrix_headers)
    endif()
endfunction()

# One test program per floor, of the .cpp files of tests/<name>; each file is one QTest class, started by QUADRIX_TEST.
# OWN_HEADERS: it links what QTest asks for at compile time (network, windows), so that it cannot share what is compiled
# once, headers and main program. ALONE: classes that take long and run as tests of their own, beside the others.
function(quadrix_test name)
    cmake_parse_arguments(TEST "OWN_HEADERS" "" "LINK;ALONE" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
    add_executable(test_${name} ${sources})
    set_target_properties(test_${name} PROPERTIES AUTOMOC ON)
    quadrix_together(test_${name} 4) # a test is edited more often than a floor
    # A file that is included is taken for a header, whose classes may hold nothing that it keeps to itself.
    target_compile_options(test_${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
    target_link_libraries(test_${name} PRIVATE quadrix_${name} Qt6::Test ${TEST_LINK})
    target_compile_definitions(test_${name} PRIVATE QUADRIX_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    if(TEST_OWN_HEADERS)
        target_sources(test_${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/support/main.cpp)
        target_precompile_headers(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/pch.h)
    else()
        target_sources(test_${name} PRIVATE $<TARGET_OBJECTS:quadrix_test_main>)
        target_precompile_headers(test_${name} REUSE_FROM quadrix_test_headers)
    endif()
    # The tests themselves are compiled more often than they run: it takes a quarter less.
    target_compile_options(test_${name} PRIVATE -O0)
    set(tests ${name})
    set(others)
    foreach(class ${TEST_ALONE})
        add_test(NAME ${name}.${class} COMMAND test_${name} -silent ${class})
        list(APPEND tests ${name}.${class})
        list(APPEND others !${class})
    endforeach()
    add_test(NAME ${name} COMMAND test_${name} -silent ${others})
    # The longest first, so that none is left to run by itself at the end.
    set_tests_properties(${tests} PROPERTIES COST 1 TIMEOUT 1800 ENVIRONMENT
        "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;QTEST_DISABLE_STACK_DUMP=1;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/leaks.txt:print_suppressions=0")
    list(REMOVE_ITEM tests ${name})
    if(tests)
        set_tests_properties(${tests} PROPERTIES COST 2)
    endif()
endfunction()
