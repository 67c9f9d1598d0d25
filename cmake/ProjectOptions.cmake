# SPDX-FileCopyrightText: 2026 Tallowmere developers
# SPDX-License-Identifier: MIT

# One interface target carries what every own target is compiled with. Rooms
# link it privately: nobody else's code is held to these warnings.
add_library(project_options INTERFACE)
target_compile_features(project_options INTERFACE cxx_std_20)
target_include_directories(project_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(project_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wshadow -Wimplicit-fallthrough
  -fstack-protector-strong)
target_compile_definitions(project_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS)

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

if(TALLOWMERE_SANITIZERS)
  add_compile_options(-fsanitize=${TALLOWMERE_SANITIZERS} -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=${TALLOWMERE_SANITIZERS})
  if(TALLOWMERE_SANITIZERS MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=all)
  endif()
elseif(CMAKE_BUILD_TYPE STREQUAL "Release")
  target_compile_definitions(project_options INTERFACE _FORTIFY_SOURCE=2)
endif()
