# How everything of ours is compiled and linked. Targets take it by
# target_link_libraries(... PRIVATE mailhearth_build); no user of the library sees it.

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# Sanitizers and coverage bring a runtime of their own: such builds are not installed.
set(MAILHEARTH_INSTRUMENTED OFF)
string(TOUPPER "CMAKE_CXX_FLAGS_${CMAKE_BUILD_TYPE}" flags_of_type)
if("${CMAKE_CXX_FLAGS} ${${flags_of_type}}" MATCHES "-fsanitize|--coverage")
  set(MAILHEARTH_INSTRUMENTED ON)
endif()

add_library(mailhearth_build INTERFACE)
target_include_directories(mailhearth_build INTERFACE "${PROJECT_SOURCE_DIR}/src")
target_compile_options(mailhearth_build INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow
  -fno-semantic-interposition)  # calls within the library stay within it
target_compile_options(mailhearth_build INTERFACE
  $<$<CONFIG:Release,RelWithDebInfo>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2;-fstack-protector-strong>)
target_link_options(mailhearth_build INTERFACE
  $<$<CONFIG:Release,RelWithDebInfo>:-Wl,-z,relro,-z,now,-z,noexecstack>)

# What is installed does not tell where it was built: the same sources give the same bytes.
target_compile_options(mailhearth_build INTERFACE
  "$<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>"
  "$<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=.>")
