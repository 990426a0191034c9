# Libraries from outside. Which of them a target uses is its own matter.
find_package(Threads REQUIRED)

# The YAML library, pinned. Here it is the system's own, which the package depends on; for Windows it is linked whole into the
# programs.
set(TESSAVO_YAML_VERSION 0.2.5)
if(CMAKE_CROSSCOMPILING)
  set(TESSAVO_YAML_FOLDER
      ""
      CACHE PATH "Folder with libyaml for the other system; scripts/windows-yaml builds it")
  set(TESSAVO_YAML_HEADERS ${TESSAVO_YAML_FOLDER}/include)
  set(TESSAVO_YAML_LIBRARY ${TESSAVO_YAML_FOLDER}/lib/libyaml.a)
else()
  find_path(TESSAVO_YAML_HEADERS yaml.h REQUIRED)
  find_library(TESSAVO_YAML_LIBRARY yaml REQUIRED)
endif()
foreach(file ${TESSAVO_YAML_HEADERS}/yaml.h ${TESSAVO_YAML_LIBRARY})
  if(NOT EXISTS ${file})
    message(FATAL_ERROR "${file} of libyaml ${TESSAVO_YAML_VERSION} is missing; for Windows scripts/windows-yaml builds "
                        "it, and TESSAVO_YAML_FOLDER names its folder")
  endif()
endforeach()
# Its header does not tell the version; the library does.
string(REPLACE "." "\\." yaml_version_pattern ${TESSAVO_YAML_VERSION})
file(STRINGS ${TESSAVO_YAML_LIBRARY} yaml_version REGEX "^${yaml_version_pattern}$")
if(NOT yaml_version)
  message(FATAL_ERROR "${TESSAVO_YAML_LIBRARY} is not of version ${TESSAVO_YAML_VERSION}")
endif()
add_library(tessavo_yaml UNKNOWN IMPORTED GLOBAL)
set_target_properties(
  tessavo_yaml
  PROPERTIES IMPORTED_LOCATION ${TESSAVO_YAML_LIBRARY}
             INTERFACE_INCLUDE_DIRECTORIES ${TESSAVO_YAML_HEADERS})
if(CMAKE_CROSSCOMPILING)
  set_target_properties(tessavo_yaml PROPERTIES INTERFACE_COMPILE_DEFINITIONS YAML_DECLARE_STATIC)
endif()

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
