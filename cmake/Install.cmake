# Where the parts of the program lie once installed, and the same shape in the build folder, so that
# a program finds its companions and the guide by one rule in both.

include(GNUInstallDirs)

# The name of the desktop entry, its icon and its metadata.
set(VIREO_APPLICATION_ID org.vireo_routing.vireo)
set(VIREO_INSTALL_LIBEXECDIR ${CMAKE_INSTALL_LIBEXECDIR}/vireo)
set(VIREO_INSTALL_DATADIR ${CMAKE_INSTALL_DATADIR}/vireo)

function(_vireo_link target place)
  get_filename_component(folder ${CMAKE_BINARY_DIR}/${place} DIRECTORY)
  file(MAKE_DIRECTORY ${folder})
  file(CREATE_LINK ${target} ${CMAKE_BINARY_DIR}/${place} SYMBOLIC)
endfunction()

_vireo_link(${CMAKE_RUNTIME_OUTPUT_DIRECTORY} ${VIREO_INSTALL_LIBEXECDIR})
_vireo_link(${CMAKE_SOURCE_DIR}/docs ${VIREO_INSTALL_DATADIR}/guide)
