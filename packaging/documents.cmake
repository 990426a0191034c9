# Documents, with the links between them intact.
set(root ${PROJECT_SOURCE_DIR})
install(FILES ${root}/docs/manual.md ${root}/docs/formats.md ${root}/docs/protocol.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR}/manual)
install(DIRECTORY ${root}/docs/pictures DESTINATION ${CMAKE_INSTALL_DOCDIR}/manual)
install(FILES ${root}/examples/first-tuning.txt DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/linux/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})

# tessavo_compressed(source name): installs a document compressed, as Debian wants it.
function(tessavo_compressed source name)
  set(compressed ${CMAKE_CURRENT_BINARY_DIR}/${name}.gz)
  add_custom_command(
    OUTPUT ${compressed}
    COMMAND gzip -9nc ${source} > ${compressed}
    DEPENDS ${source}
    VERBATIM)
  add_custom_target(compressed_${name} ALL DEPENDS ${compressed})
  install(FILES ${compressed} DESTINATION ${CMAKE_INSTALL_DOCDIR})
endfunction()
tessavo_compressed(${root}/CHANGELOG.md changelog)
tessavo_compressed(${CMAKE_CURRENT_SOURCE_DIR}/linux/changelog.Debian changelog.Debian)
