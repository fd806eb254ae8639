# Compile options of every target. The developer presets turn warnings into errors.
add_library(oxlade_options INTERFACE)
target_compile_options(oxlade_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # False positives in std::string's operator+ (GCC bug 105651).
  target_compile_options(oxlade_options INTERFACE -Wno-restrict)
endif()
target_include_directories(oxlade_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_definitions(oxlade_options INTERFACE QT_NO_CAST_FROM_ASCII
                           QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)

set(OXLADE_SANITIZE "" CACHE STRING "Sanitizers for everything, as -fsanitize= takes them")
if(OXLADE_SANITIZE)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # False positives inside the standard library once it is instrumented.
    target_compile_options(oxlade_options INTERFACE -Wno-maybe-uninitialized)
  endif()
  add_compile_options(-fsanitize=${OXLADE_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
  add_link_options(-fsanitize=${OXLADE_SANITIZE})
endif()

# oxlade_library(NAME SOURCES...): a static library, one or two a folder.
function(oxlade_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC oxlade_options)
endfunction()

if(CMAKE_CXX_CLANG_TIDY)
  # Generated sources are not checked. clang-tidy refuses an empty list, and this check
  # finds nothing outside of LLVM.
  file(WRITE "${PROJECT_BINARY_DIR}/.clang-tidy" "Checks: '-*,llvm-twine-local'\n")
endif()
