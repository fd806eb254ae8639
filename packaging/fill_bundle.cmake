# Puts the helper, the keeper and the image into the bundle. An image that an
# earlier build left goes when this one ships none.
function(place source directory name)
  file(MAKE_DIRECTORY "${directory}")
  # Beside its place and then over it: the old one may be running.
  file(COPY_FILE "${source}" "${directory}/.${name}.new")
  file(RENAME "${directory}/.${name}.new" "${directory}/${name}")
endfunction()

place("${HELPER}" "${MACOS}" oxlade)
file(CHMOD "${MACOS}/oxlade" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
     GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
place("${KEEPER}" "${MACOS}" oxlade-keeper)
file(MAKE_DIRECTORY "${RESOURCES}")
if(IMAGE)
  place("${IMAGE}" "${RESOURCES}" mpcv171.bin)
  # Every user reads it, however the packager keeps it.
  file(CHMOD "${RESOURCES}/mpcv171.bin" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
else()
  file(REMOVE "${RESOURCES}/mpcv171.bin")
endif()
get_filename_component(folder "${STAMP}" DIRECTORY)
file(GLOB stamps "${folder}/bundle-*.stamp")
if(stamps)
  file(REMOVE ${stamps})
endif()
file(TOUCH "${STAMP}")
