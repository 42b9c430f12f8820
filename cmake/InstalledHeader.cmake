# Copies the header SOURCE to OUTPUT and has it include its neighbours as an installed one does:
# "qlink.h" and "links/qlink.h" become <tarnwick/qlink.h>.
file(READ ${SOURCE} text)
string(REGEX REPLACE "#include \"([a-z]+/)?([a-z0-9_]+\\.h)\"" "#include <tarnwick/\\2>" text "${text}")
file(WRITE ${OUTPUT} "${text}")
