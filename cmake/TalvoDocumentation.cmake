# `cmake --build --preset release --target doc`: the reference of the headers, in <build folder>/doc/html.
# A public declaration without a comment, or a comment that does not fit it, fails the target.
find_program(DOXYGEN doxygen)
if(NOT DOXYGEN)
    return() # packaging/linux/lint-packages.txt
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/Doxyfile.in" "${PROJECT_BINARY_DIR}/doc/Doxyfile" @ONLY)
add_custom_target(doc
    COMMAND "${DOXYGEN}" "${PROJECT_BINARY_DIR}/doc/Doxyfile"
    COMMENT "Writing the reference of the headers"
    VERBATIM)
