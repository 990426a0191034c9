# What makes the window known to a desktop, and the tests that hold each file to its own validator.
set(linux ${CMAKE_CURRENT_SOURCE_DIR}/linux)
install(FILES ${linux}/org.tessavo.Tessavo.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${linux}/org.tessavo.Tessavo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${linux}/org.tessavo.Tessavo.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${linux}/icons/tessavo.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size 16 24 32 48 64 128 256 512)
  install(
    FILES ${linux}/icons/tessavo-${size}.png
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
    RENAME tessavo.png)
endforeach()

if(TESSAVO_TESTS)
  # A missing validator fails the test.
  add_test(NAME packaging.desktop_entry_is_valid COMMAND desktop-file-validate ${linux}/org.tessavo.Tessavo.desktop)
  add_test(NAME packaging.appstream_is_valid COMMAND appstreamcli validate --no-net
                                                     ${linux}/org.tessavo.Tessavo.metainfo.xml)
  add_test(NAME packaging.mime_type_is_valid
           COMMAND sh ${CMAKE_CURRENT_SOURCE_DIR}/check-mime-type ${linux}/org.tessavo.Tessavo.xml)
  add_test(NAME packaging.installed_files_are_valid
           COMMAND sh ${CMAKE_CURRENT_SOURCE_DIR}/check-installed ${CMAKE_BINARY_DIR} ${linux}/icons)
  set_tests_properties(packaging.installed_files_are_valid PROPERTIES TIMEOUT 120)
  add_test(NAME packaging.icons_have_their_sizes COMMAND sh ${CMAKE_CURRENT_SOURCE_DIR}/check-icons ${linux}/icons)
endif()
