# The program's resources: into Resources/ of the build directory, where a program that runs from the build
# tree looks for them, and into the places of an installed desktop program.

file(GLOB_RECURSE resources CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/Resources" "${PROJECT_SOURCE_DIR}/Resources/*")
foreach(resource IN LISTS resources)
    if(resource MATCHES "\\.in$")
        string(REGEX REPLACE "\\.in$" "" name "${resource}")
        configure_file("Resources/${resource}" "${CMAKE_BINARY_DIR}/Resources/${name}" @ONLY)
    else()
        configure_file("Resources/${resource}" "${CMAKE_BINARY_DIR}/Resources/${resource}" COPYONLY)
    endif()
endforeach()

foreach(file IN ITEMS ${QUILLBOX_IDENTIFIER}.service ${QUILLBOX_IDENTIFIER}.metainfo.xml quillbox.1 quillbox-defaults.1)
    configure_file("Packaging/${file}.in" "${CMAKE_BINARY_DIR}/Packaging/${file}" @ONLY)
endforeach()

install(TARGETS quillbox quillbox-defaults)
install(TARGETS quillbox-mount-helper DESTINATION "${CMAKE_INSTALL_LIBEXECDIR}/quillbox")
install(DIRECTORY "${CMAKE_BINARY_DIR}/Resources/" DESTINATION "${CMAKE_INSTALL_DATADIR}/quillbox" PATTERN icons EXCLUDE)
# The index file of the installed theme belongs to the package of that icon theme.
install(DIRECTORY "${CMAKE_BINARY_DIR}/Resources/icons/" DESTINATION "${CMAKE_INSTALL_DATADIR}/icons" PATTERN index.theme EXCLUDE)
install(FILES "Packaging/${QUILLBOX_IDENTIFIER}.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${CMAKE_BINARY_DIR}/Packaging/${QUILLBOX_IDENTIFIER}.metainfo.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES "${CMAKE_BINARY_DIR}/Packaging/${QUILLBOX_IDENTIFIER}.service"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/services")
# Debian wants its manual pages compressed, other systems compress them themselves.
foreach(page IN ITEMS quillbox.1 quillbox-defaults.1)
    install(FILES "${CMAKE_BINARY_DIR}/Packaging/${page}$<$<BOOL:${QUILLBOX_DEB}>:.gz>"
            DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endforeach()

# Shell completion, where each shell looks for what packages bring.
set(QUILLBOX_ZSH_COMPLETIONS "${CMAKE_INSTALL_DATADIR}/zsh/$<IF:$<BOOL:${QUILLBOX_DEB}>,vendor-completions,site-functions>"
    CACHE STRING "Where zsh looks for completions")
foreach(program IN ITEMS quillbox quillbox-defaults)
    install(FILES "Packaging/completions/${program}.bash" DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
            RENAME "${program}")
    install(FILES "Packaging/completions/_${program}" DESTINATION "${QUILLBOX_ZSH_COMPLETIONS}")
    install(FILES "Packaging/completions/${program}.fish" DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")
endforeach()
