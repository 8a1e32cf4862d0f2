# What `cmake --install` puts where: the component "tool" is tweenc, "program" the rest.
include(GNUInstallDirs)
set(id org.tweenery.Tweenery)
set(resources ${PROJECT_SOURCE_DIR}/resources)
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
set(man ${CMAKE_INSTALL_MANDIR}/man1)
find_program(GZIP_PROGRAM gzip REQUIRED)

install(TARGETS tweenc RUNTIME COMPONENT tool)
# Made by the tool from its own options: kind, name, folder, and through what it goes.
set(documents ${CMAKE_BINARY_DIR}/documents)
foreach(document "man tweenc.1.gz ${man} ${GZIP_PROGRAM} -9n"
                 "bash tweenc ${CMAKE_INSTALL_DATADIR}/bash-completion/completions cat"
                 "zsh _tweenc ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions cat"
                 "fish tweenc.fish ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d cat")
    separate_arguments(parts UNIX_COMMAND "${document}")
    list(GET parts 0 kind)
    list(GET parts 1 name)
    list(GET parts 2 folder)
    list(SUBLIST parts 3 -1 filter)
    add_custom_command(OUTPUT ${documents}/${kind}/${name} DEPENDS tweenc VERBATIM
        COMMAND ${CMAKE_COMMAND} -E make_directory ${documents}/${kind}
        COMMAND sh -c "tool=$1 made=$2; shift 2; \"$tool\" completion ${kind} | \"$@\" > \"$made\"" sh
                $<TARGET_FILE:tweenc> ${documents}/${kind}/${name} ${filter})
    list(APPEND made ${documents}/${kind}/${name})
    install(FILES ${documents}/${kind}/${name} DESTINATION ${folder} COMPONENT tool)
endforeach()
# What tweenc certify compiles exports against; the program looks for it from its own folder.
install(DIRECTORY ${resources}/certify DESTINATION ${CMAKE_INSTALL_DATADIR}/tweenery COMPONENT tool)
add_custom_target(shell_documents ALL DEPENDS ${made})
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tweenc
        COMPONENT license)

if(TARGET tweenery)
    install(TARGETS tweenery RUNTIME COMPONENT program)
    install(FILES ${resources}/desktop/${id}.desktop COMPONENT program
            DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
    install(FILES ${resources}/desktop/${id}.metainfo.xml COMPONENT program
            DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
    install(FILES ${resources}/icons/tweenery.svg DESTINATION ${icons}/scalable/apps
            RENAME ${id}.svg COMPONENT program)
    foreach(size 16 22 24)
        install(FILES ${resources}/icons/tweenery_small.svg DESTINATION ${icons}/${size}x${size}/apps
                RENAME ${id}.svg COMPONENT program)
    endforeach()
    # Where the start window looks for them, from the program's own folder.
    install(DIRECTORY ${CMAKE_BINARY_DIR}/share/tweenery/samples COMPONENT program
            DESTINATION ${CMAKE_INSTALL_DATADIR}/tweenery)
    # Where Help looks for it, from the program's own folder.
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/guide COMPONENT program
            DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tweenery)
    configure_file(${resources}/man/tweenery.1.in ${documents}/tweenery.1 @ONLY)
    execute_process(COMMAND ${GZIP_PROGRAM} -9nf ${documents}/tweenery.1)
    install(FILES ${documents}/tweenery.1.gz DESTINATION ${man} COMPONENT program)
endif()
