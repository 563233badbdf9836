# Makes the links of one framework below LIB_DIR; run by the build and by the installation.
set(framework ${LIB_DIR}/${NAME}.framework)
file(CREATE_LINK A ${framework}/Versions/Current SYMBOLIC)
file(CREATE_LINK Versions/Current/lib${NAME}.so.A ${framework}/${NAME} SYMBOLIC)
file(CREATE_LINK Versions/Current/Resources ${framework}/Resources SYMBOLIC)
file(CREATE_LINK ${NAME}.framework/Versions/A/lib${NAME}.so.A ${LIB_DIR}/lib${NAME}.so.A SYMBOLIC)
