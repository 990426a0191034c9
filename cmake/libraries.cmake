# Libraries from outside. Which of them a target uses is its own matter.
find_package(Threads REQUIRED)

if(CMAKE_CROSSCOMPILING)
  # The header-only ones serve every system. The compiler sees them through links of their own, never together
  # with the other headers of this machine.
  set(TESSAVO_HOST_HEADERS
      /usr/include
      CACHE PATH "Folder with the header-only libraries")
  set(linked_headers ${CMAKE_BINARY_DIR}/host_headers)
  file(MAKE_DIRECTORY ${linked_headers})
  foreach(folder CLI nlohmann)
    if(NOT EXISTS ${TESSAVO_HOST_HEADERS}/${folder})
      message(FATAL_ERROR "${TESSAVO_HOST_HEADERS}/${folder} is missing")
    endif()
    file(CREATE_LINK ${TESSAVO_HOST_HEADERS}/${folder} ${linked_headers}/${folder} SYMBOLIC)
  endforeach()
  foreach(library CLI11::CLI11 nlohmann_json::nlohmann_json)
    add_library(${library} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${library} SYSTEM INTERFACE ${linked_headers})
  endforeach()
else()
  find_package(CLI11 REQUIRED)
  find_package(nlohmann_json REQUIRED)
endif()
