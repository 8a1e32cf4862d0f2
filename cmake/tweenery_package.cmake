# Two Debian packages of what is built, by cpack: tweenc, and tweenery, which needs it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tweenery)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The Tweenery founders <founders@tweenery.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_OUTPUT_FILE_PREFIX packages)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL program tool)

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME tweenc)
# For tweenc certify alone, which says what is missing.
set(CPACK_DEBIAN_TOOL_PACKAGE_SUGGESTS "clang, libobjc-12-dev")
set(CPACK_COMPONENT_TOOL_DESCRIPTION
"command-line tool for animation projects of user interfaces
tweenc reads, checks, copies, draws and exports the projects of the animation
design program Tweenery, without a window.")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME tweenery)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "tweenc (= ${PROJECT_VERSION}), fonts-inter, libqt6svg6")
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
"animation design for user interfaces
Tweenery arranges images on a canvas, moves, scales, rotates and fades them
along a timeline of milliseconds, plays the result, and exports it as one view
class in Objective-C or Swift with its artwork.")

# What Debian's policy wants in each package.
if(GZIP_PROGRAM)
    foreach(pair "tool tweenc" "program tweenery")
        separate_arguments(parts UNIX_COMMAND "${pair}")
        list(GET parts 0 component)
        list(GET parts 1 CPACK_CHANGELOG_PACKAGE)
        set(folder ${CMAKE_BINARY_DIR}/debian/${component})
        configure_file(${PROJECT_SOURCE_DIR}/resources/debian/changelog.in ${folder}/changelog @ONLY)
        execute_process(COMMAND ${GZIP_PROGRAM} -9nf ${folder}/changelog)
        install(FILES ${folder}/changelog.gz ${PROJECT_SOURCE_DIR}/resources/debian/copyright
                DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_CHANGELOG_PACKAGE}
                COMPONENT ${component})
    endforeach()
endif()
include(CPack)
