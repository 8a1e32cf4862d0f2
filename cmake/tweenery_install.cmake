# What `cmake --install` puts where: programs, desktop entry, icons, guide.
include(GNUInstallDirs)
set(id org.tweenery.Tweenery)
set(resources ${PROJECT_SOURCE_DIR}/resources)
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)

install(FILES ${resources}/desktop/${id}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${resources}/desktop/${id}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${resources}/icons/tweenery.svg DESTINATION ${icons}/scalable/apps RENAME ${id}.svg)
foreach(size 16 22 24)
    install(FILES ${resources}/icons/tweenery_small.svg DESTINATION ${icons}/${size}x${size}/apps
            RENAME ${id}.svg)
endforeach()
# Where Help looks for it, from the program's own folder.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/guide DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tweenery)
# What tweenc certify compiles exports against; the program looks for it from its own folder.
install(DIRECTORY ${resources}/certify DESTINATION ${CMAKE_INSTALL_DATADIR}/tweenery)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tweenery)
install(TARGETS tweenc RUNTIME)
if(TARGET tweenery)
    install(TARGETS tweenery RUNTIME)
endif()
