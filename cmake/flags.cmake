# The one place for compiler flags: every target of the project links tessavo_flags.
add_library(tessavo_flags INTERFACE)
target_compile_features(tessavo_flags INTERFACE cxx_std_20)
target_compile_options(
  tessavo_flags
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wconversion
            -Wsign-conversion
            -Wshadow
            -Wold-style-cast
            -Wnon-virtual-dtor
            # Coefficients must come out the same on every processor.
            -ffp-contract=off
            # GCC 12 sees overlaps in the library's own string concatenation that are none.
            $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
            $<$<BOOL:${TESSAVO_WERROR}>:-Werror>)
if(TESSAVO_SANITIZE)
  target_compile_options(tessavo_flags INTERFACE -fsanitize=${TESSAVO_SANITIZE} -fno-omit-frame-pointer
                                                 -fno-sanitize-recover=all)
  target_link_options(tessavo_flags INTERFACE -fsanitize=${TESSAVO_SANITIZE})
endif()
# What the window's own sources are compiled with beyond that. The checker is a plug-in of the compiler: what is compiled
# anyway is checked at no cost.
set(TESSAVO_WINDOW_OPTIONS "")
if(TESSAVO_CLAZY)
  set(TESSAVO_WINDOW_OPTIONS "SHELL:-Xclang -load -Xclang ClazyPlugin.so" "SHELL:-Xclang -add-plugin -Xclang clazy"
                             "SHELL:-Xclang -plugin-arg-clazy -Xclang level1")
endif()
if(TESSAVO_FUZZ)
  # The whole core tells the fuzzer which paths an input took.
  target_compile_options(tessavo_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
