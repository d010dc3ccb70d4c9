# Writes the C++ source for kest_embed_file().
file(READ "${FILE}" bytes HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
file(WRITE "${SOURCE}" "#include <cstddef>\nnamespace engines {\nextern const unsigned char ${NAME}[];\n\
extern const std::size_t ${NAME}Size;\nconst unsigned char ${NAME}[] = {${bytes}0};\n\
const std::size_t ${NAME}Size = sizeof ${NAME} - 1;\n}\n")
