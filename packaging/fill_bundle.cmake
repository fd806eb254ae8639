# Puts the helper, the keeper and the image into the bundle. An image that an
# earlier build left goes when this one ships none.

# Whatever mode the packager keeps them in: everybody can use what is shipped.
set(readable OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
set(executable ${readable} OWNER_EXECUTE GROUP_EXECUTE WORLD_EXECUTE)
function(place source directory name permissions)
  file(MAKE_DIRECTORY "${directory}")
  # Beside its place and then over it: the old one may be running.
  file(COPY_FILE "${source}" "${directory}/.${name}.new")
  file(CHMOD "${directory}/.${name}.new" PERMISSIONS ${permissions})
  file(RENAME "${directory}/.${name}.new" "${directory}/${name}")
endfunction()

place("${HELPER}" "${MACOS}" oxlade "${executable}")
place("${KEEPER}" "${MACOS}" oxlade-keeper "${executable}")
file(MAKE_DIRECTORY "${RESOURCES}")
if(IMAGE)
  place("${IMAGE}" "${RESOURCES}" mpcv171.bin "${readable}")
else()
  file(REMOVE "${RESOURCES}/mpcv171.bin")
endif()
get_filename_component(folder "${STAMP}" DIRECTORY)
file(GLOB stamps "${folder}/bundle-*.stamp")
if(stamps)
  file(REMOVE ${stamps})
endif()
file(TOUCH "${STAMP}")
