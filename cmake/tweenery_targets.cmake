# What every target of this project shares: warnings, exact floating point, sanitizers, precompiled headers.
add_library(tweenery_options INTERFACE)
target_include_directories(tweenery_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(tweenery_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Werror
    # Qt's own macros and containers convert signs; our code is held by -Wconversion.
    -Wno-sign-conversion
    # Every machine must give the same bits: no fused multiply-add, no fast-math.
    -ffp-contract=off)
target_compile_definitions(tweenery_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH
    TWEENERY_VERSION="${PROJECT_VERSION}")
if(TWEENERY_SANITIZE)
    target_compile_options(tweenery_options INTERFACE -fsanitize=${TWEENERY_SANITIZE}
                           -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(tweenery_options INTERFACE -fsanitize=${TWEENERY_SANITIZE})
endif()
if(TWEENERY_FUZZ)
    target_compile_options(tweenery_options INTERFACE -fsanitize=fuzzer-no-link)
    target_link_options(tweenery_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# The first target that asks builds the precompiled header, the others reuse it.
function(tweenery_precompile target)
    get_property(first GLOBAL PROPERTY TWEENERY_PRECOMPILED)
    if(first)
        target_precompile_headers(${target} REUSE_FROM ${first})
    else()
        target_precompile_headers(${target} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/precompiled.h)
        set_property(GLOBAL PROPERTY TWEENERY_PRECOMPILED ${target})
    endif()
endfunction()

# One static library a level: every source file of src/<name>. A library links only what lies below it.
function(tweenery_library name)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${name}/*.cpp)
    add_library(tweenery_${name} STATIC ${sources})
    target_link_libraries(tweenery_${name} PUBLIC ${ARGN} PRIVATE tweenery_options)
    tweenery_precompile(tweenery_${name})
endfunction()
