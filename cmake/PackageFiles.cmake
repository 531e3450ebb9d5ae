# Run by cpack before the staged components become packages: adds and changes what the
# policy of Debian asks of a package and a plain installation has otherwise.

cmake_policy(VERSION 3.25)

# run(COMMAND...): stops where it fails; its standard output becomes `output`.
macro(run)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${CPACK_TEMPORARY_DIRECTORY}"
    OUTPUT_VARIABLE output OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endmacro()

set(unneeded --remove-section=.comment --remove-section=.note)
file(WRITE "${CPACK_TEMPORARY_DIRECTORY}/debian/control" "")  # dpkg-shlibdeps looks for it

# What is linked: its symbols move into a package of their own, where gdb looks them up by
# build id, and the packages it needs are found out.
foreach(component IN ITEMS Runtime Command)
  set(usr "${CPACK_TEMPORARY_DIRECTORY}/${component}/usr")
  file(GLOB linked "${usr}/bin/*" "${usr}/lib/*/*.so.${CPACK_PACKAGE_VERSION}")
  run(readelf -n ${linked})
  if(NOT output MATCHES "Build ID: ([0-9a-f][0-9a-f])([0-9a-f]+)")
    message(FATAL_ERROR "${linked} is not one file with a build id")
  endif()
  set(debug "${CPACK_TEMPORARY_DIRECTORY}/${component}Debug/usr/lib/debug/.build-id")
  set(debug "${debug}/${CMAKE_MATCH_1}/${CMAKE_MATCH_2}.debug")
  cmake_path(GET debug PARENT_PATH folder)
  file(MAKE_DIRECTORY "${folder}")
  run(objcopy --only-keep-debug --compress-debug-sections "${linked}" "${debug}")
  file(CHMOD "${debug}" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  run(strip --strip-unneeded ${unneeded} "${linked}")
  run(dpkg-shlibdeps -O "${linked}")
  string(TOUPPER "${component}" COMPONENT)
  string(REGEX REPLACE "^shlibs:Depends=" "" CPACK_DEBIAN_${COMPONENT}_PACKAGE_DEPENDS "${output}")
endforeach()

file(GLOB archive "${CPACK_TEMPORARY_DIRECTORY}/Development/usr/lib/*/*.a")
run(strip --strip-debug ${unneeded} --enable-deterministic-archives "${archive}")

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  set(share "${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share")
  string(TOUPPER "${component}" COMPONENT)
  set(doc "${share}/doc/${CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME}")
  file(MAKE_DIRECTORY "${doc}")
  file(REMOVE "${doc}/LICENSE")  # it is the copyright file
  file(COPY_FILE "${CPACK_MAILHEARTH_LICENSE}" "${doc}/copyright")
  file(COPY_FILE "${CPACK_MAILHEARTH_CHANGELOG}" "${doc}/changelog")
  file(CHMOD "${doc}/copyright" "${doc}/changelog"
    PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  file(GLOB manuals "${share}/man/*/*")
  run(gzip -9n "${doc}/changelog" ${manuals})
endforeach()

# Folders are made as the umask has it; in a package they are everybody's.
run(find ${CPACK_COMPONENTS_ALL} -type d -exec chmod 755 {} +)
