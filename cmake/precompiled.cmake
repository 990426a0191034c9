# Headers that most sources of a target read, read once. For builds that are made to be run, not to be looked at: a
# source that forgets an #include does not show there.
set(TESSAVO_CORE_HEADERS <algorithm> <array> <cstdint> <functional> <map> <memory> <optional> <span> <string>
                         <string_view> <vector>)
set(TESSAVO_WINDOW_HEADERS
    ${TESSAVO_CORE_HEADERS}
    <QApplication>
    <QCheckBox>
    <QComboBox>
    <QDialog>
    <QLabel>
    <QLineEdit>
    <QPainter>
    <QPushButton>
    <QWidget>)
set(TESSAVO_TEST_HEADERS ${TESSAVO_CORE_HEADERS} <chrono> <filesystem> <fstream> <gmock/gmock.h> <gtest/gtest.h>
                         <random> <thread>)
set(TESSAVO_WINDOW_TEST_HEADERS ${TESSAVO_TEST_HEADERS} ${TESSAVO_WINDOW_HEADERS} <QTest>)
list(REMOVE_DUPLICATES TESSAVO_WINDOW_TEST_HEADERS)

# Let the compiler's cache see which header a source was compiled with, and whether it changed.
set(TESSAVO_PRECOMPILED_OPTIONS "$<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>"
                                "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")

# tessavo_precompile(target headers...)
function(tessavo_precompile target)
  if(TESSAVO_PRECOMPILE)
    target_precompile_headers(${target} PRIVATE ${ARGN})
    target_compile_options(${target} PRIVATE ${TESSAVO_PRECOMPILED_OPTIONS})
  endif()
endfunction()

# tessavo_precompile_as(target owner) lets a target read the headers that were precompiled for another one. Both are
# compiled with the same options.
function(tessavo_precompile_as target owner)
  if(TESSAVO_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM ${owner})
    target_compile_options(${target} PRIVATE ${TESSAVO_PRECOMPILED_OPTIONS})
  endif()
endfunction()
