# Copies SOURCE to DESTINATION with mode 0755 if EXECUTABLE, else 0644, whatever the mode of
# SOURCE: everybody can use what is shipped. The copy is made beside its place and renamed over
# it, since the old one may be running.
set(mode OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
if(EXECUTABLE)
  list(APPEND mode OWNER_EXECUTE GROUP_EXECUTE WORLD_EXECUTE)
endif()
get_filename_component(folder "${DESTINATION}" DIRECTORY)
get_filename_component(name "${DESTINATION}" NAME)
file(MAKE_DIRECTORY "${folder}")
file(COPY_FILE "${SOURCE}" "${folder}/.${name}.new")
file(CHMOD "${folder}/.${name}.new" PERMISSIONS ${mode})
file(RENAME "${folder}/.${name}.new" "${DESTINATION}")
