# The modules that stand in for the platforms' frameworks, compiled once for the tests of exported
# Swift. A machine without swiftc has none, and the tests are skipped.
find_program(TWEENERY_SWIFTC swiftc)
set(swift_stubs ${CMAKE_BINARY_DIR}/swift)
target_compile_definitions(test_codegen PRIVATE TWEENERY_SWIFT_STUBS="${swift_stubs}"
    TWEENERY_SWIFTC="$<IF:$<BOOL:${TWEENERY_SWIFTC}>,${TWEENERY_SWIFTC},>")
if(NOT TWEENERY_SWIFTC)
    message(STATUS "There is no swiftc: exported Swift is not compiled in the tests")
    return()
endif()

# In the order in which they import each other.
set(made "")
foreach(module CoreGraphics QuartzCore AVFoundation UIKit AppKit SwiftUI)
    set(source ${CMAKE_CURRENT_LIST_DIR}/stubs/${module}.swift)
    add_custom_command(
        OUTPUT ${swift_stubs}/${module}.o
        BYPRODUCTS ${swift_stubs}/${module}.swiftmodule
        COMMAND ${CMAKE_COMMAND} -E make_directory ${swift_stubs}
        COMMAND ${TWEENERY_SWIFTC} -swift-version 6 -warnings-as-errors -parse-as-library
                -module-name ${module} -I ${swift_stubs} -module-cache-path ${swift_stubs}/cache
                -emit-module -emit-module-path ${swift_stubs}/${module}.swiftmodule
                -emit-object -o ${swift_stubs}/${module}.o ${source}
        DEPENDS ${source} ${made}
        COMMENT "Compiling the stand-in for ${module}"
        VERBATIM)
    list(APPEND made ${swift_stubs}/${module}.o)
endforeach()
add_custom_target(swift_stubs DEPENDS ${made})
add_dependencies(test_codegen swift_stubs)
