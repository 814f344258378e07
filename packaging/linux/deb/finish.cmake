# Turns the standard layout into what Debian's policy asks of a package: compressed manual pages and
# changelogs, the licence as `copyright`. CPack runs this on its copy of the installation.
set(data "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share")
set(documents "${data}/doc/talvo")

# What compiled it says nothing to a user; CPack's own strip leaves it in.
execute_process(
    COMMAND strip --remove-section=.comment "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/bin/talvo"
    COMMAND_ERROR_IS_FATAL ANY)

function(compress)
    execute_process(COMMAND gzip -9nf ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(GLOB_RECURSE manual_pages "${data}/man/*.1")
compress(${manual_pages})

file(REMOVE "${documents}/LICENSE")
file(COPY_FILE "${CMAKE_CURRENT_LIST_DIR}/copyright" "${documents}/copyright")
file(RENAME "${documents}/CHANGELOG.md" "${documents}/changelog")
file(COPY_FILE "${CMAKE_CURRENT_LIST_DIR}/changelog" "${documents}/changelog.Debian")
compress("${documents}/changelog" "${documents}/changelog.Debian")
file(CHMOD
        "${documents}/copyright" "${documents}/changelog.gz" "${documents}/changelog.Debian.gz"
    PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

file(MAKE_DIRECTORY "${data}/lintian/overrides")
file(COPY_FILE "${CMAKE_CURRENT_LIST_DIR}/lintian-overrides" "${data}/lintian/overrides/talvo")
file(CHMOD "${data}/lintian/overrides/talvo" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
