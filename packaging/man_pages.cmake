# Manual pages, made at build time from what the programs say to --help.
find_program(TESSAVO_HELP2MAN help2man)
find_program(TESSAVO_GZIP gzip)
if(TESSAVO_SANITIZE)
  # Programs under a sanitizer do not run everywhere, and nobody installs them.
elseif(TESSAVO_HELP2MAN AND TESSAVO_GZIP)
  set(pages "")
  # tessavo_man_page(program purpose)
  function(tessavo_man_page program purpose)
    if(NOT TARGET ${program})
      return()
    endif()
    set(page ${CMAKE_CURRENT_BINARY_DIR}/${program}.1)
    add_custom_command(
      OUTPUT ${page}.gz
      COMMAND sh ${CMAKE_CURRENT_SOURCE_DIR}/make-man-page $<TARGET_FILE:${program}> ${purpose} ${page}
      COMMAND ${TESSAVO_GZIP} -9nf ${page}
      DEPENDS ${program} ${CMAKE_CURRENT_SOURCE_DIR}/make-man-page
      COMMENT "Making ${program}.1"
      VERBATIM)
    install(FILES ${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    set(pages ${pages} ${page}.gz PARENT_SCOPE)
  endfunction()
  tessavo_man_page(tessavo "tune an eight-channel car-audio signal processor")
  tessavo_man_page(tessavoctl "edit, show and exchange settings of a car-audio signal processor")
  tessavo_man_page(tessavo-target "play a car-audio signal processor on a pseudo-terminal")
  add_custom_target(man_pages ALL DEPENDS ${pages})
else()
  message(STATUS "help2man is not installed: no manual pages ('scripts/install-packages package' installs it)")
endif()
