# What every target of this project shares: warnings, exact floating point, sanitizers, precompiled headers.
add_library(tweenery_options INTERFACE)
# All rooms have both, since they share one precompiled header; tests/house tells which may not use Gui.
target_link_libraries(tweenery_options INTERFACE Qt6::Core Qt6::Gui Threads::Threads)
target_include_directories(tweenery_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(tweenery_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
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

# The first target that asks for a precompiled header builds it, the others reuse it.
function(tweenery_precompile target header)
    get_property(first GLOBAL PROPERTY TWEENERY_FIRST_${header})
    if(first)
        target_precompile_headers(${target} REUSE_FROM ${first})
    else()
        target_precompile_headers(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/${header}.h)
        set_property(GLOBAL PROPERTY TWEENERY_FIRST_${header} ${target})
    endif()
endfunction()

# "model/images" is the library tweenery_model_images.
function(tweenery_room_target result room)
    string(REPLACE "/" "_" name ${room})
    set(${result} tweenery_${name} PARENT_SCOPE)
endfunction()

# One static library a room, of every source file in src/<room> but main.cpp; sub-folders are rooms of
# their own. It links the rooms that are named.
function(tweenery_add_room room)
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${room}/*.cpp)
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    tweenery_room_target(target ${room})
    add_library(${target} STATIC ${sources})
    target_link_libraries(${target} PRIVATE tweenery_options)
    foreach(used ${ARGN})
        tweenery_room_target(used_target ${used})
        target_link_libraries(${target} PUBLIC ${used_target})
    endforeach()
endfunction()

function(tweenery_room room)
    tweenery_add_room(${room} ${ARGN})
    tweenery_room_target(target ${room})
    tweenery_precompile(${target} precompiled)
endfunction()

# A room that links Qt Widgets. All have the same libraries, since they share one precompiled header.
function(tweenery_widget_room room)
    tweenery_add_room(${room} ${ARGN})
    tweenery_room_target(target ${room})
    target_link_libraries(${target} PUBLIC Qt6::Widgets Qt6::Svg Qt6::DBus Qt6::Network)
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    tweenery_precompile(${target} precompiled_widgets)
endfunction()
