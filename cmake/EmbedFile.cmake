# kest_embed_file(<target> <file> <name>): compiles the bytes of <file> into <target> as the array `engines::<name>`
# (unsigned char, with a zero byte after the last one) and its length `engines::<name>Size` (std::size_t, without it).
function(kest_embed_file target file name)
    get_filename_component(file "${file}" ABSOLUTE)
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cc)
    add_custom_command(OUTPUT ${source}
        COMMAND ${CMAKE_COMMAND} -DFILE=${file} -DNAME=${name} -DSOURCE=${source}
            -P ${CMAKE_SOURCE_DIR}/cmake/WriteEmbedded.cmake
        DEPENDS ${file} ${CMAKE_SOURCE_DIR}/cmake/WriteEmbedded.cmake VERBATIM)
    target_sources(${target} PRIVATE ${source})
endfunction()
