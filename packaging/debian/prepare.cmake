# Makes a Debian package's folder of what cpack installed: run by cpack before it packs. Stops where the tools are missing
# that find out which libraries the package depends on: without them cpack makes a package without dependencies, which
# installs and then lacks libraries.
foreach(tool dpkg-shlibdeps file)
  find_program(found_${tool} ${tool} NO_CMAKE_SYSTEM_PATH)
  if(NOT found_${tool})
    message(FATAL_ERROR "A Debian package needs ${tool}, which is not installed: apt-get install dpkg-dev file")
  endif()
endforeach()

set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr)
set(documents ${root}/share/doc/ngrex)
set(source ${CMAKE_CURRENT_LIST_DIR}/../..)

execute_process(COMMAND awk -v maintainer=${CPACK_PACKAGE_CONTACT} -f ${CMAKE_CURRENT_LIST_DIR}/changelog.awk
                        ${source}/CHANGELOG.md
                OUTPUT_FILE ${documents}/changelog COMMAND_ERROR_IS_FATAL ANY)
file(GLOB pages ${root}/share/man/man1/*.1)
execute_process(COMMAND gzip -9n ${documents}/changelog ${pages} COMMAND_ERROR_IS_FATAL ANY)

file(GLOB programs ${root}/bin/*)
execute_process(COMMAND strip --remove-section=.comment ${programs} COMMAND_ERROR_IS_FATAL ANY)

# The licence once, where Debian looks for it; README.md leads there by its own name.
file(RENAME ${documents}/LICENSE ${documents}/copyright)
file(CREATE_LINK copyright ${documents}/LICENSE SYMBOLIC)

file(MAKE_DIRECTORY ${root}/share/lintian/overrides)
file(COPY_FILE ${CMAKE_CURRENT_LIST_DIR}/lintian-overrides ${root}/share/lintian/overrides/ngrex)
