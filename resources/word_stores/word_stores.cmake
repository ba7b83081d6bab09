# SPDX-License-Identifier: MIT
# The default user word stores, built from readable UTF-8 sources into the data folder:
#   AutoCrt.crt      auto-correct pairs (autocorrect.txt)
#   data.dic         the phrase store, SQLite table Express(Value TEXT) (phrases.txt)
#   Define/*.def     abbreviation definitions (define/*.txt)
set(word_stores_src ${CMAKE_CURRENT_LIST_DIR})

add_executable(vntts_make_word_stores ${word_stores_src}/make_word_stores.cpp)
target_link_libraries(vntts_make_word_stores PRIVATE vntts_store vntts_warnings)

set(word_store_outputs)
function(vntts_word_store kind source output)
  add_custom_command(
    OUTPUT ${output}
    COMMAND vntts_make_word_stores ${kind} ${source} ${output}
    DEPENDS vntts_make_word_stores ${source}
    COMMENT "Building ${output}"
    VERBATIM)
  set(word_store_outputs ${word_store_outputs} ${output} PARENT_SCOPE)
endfunction()

vntts_word_store(crt ${word_stores_src}/autocorrect.txt ${VNTTS_INDEX_DIR}/AutoCrt.crt)
vntts_word_store(dic ${word_stores_src}/phrases.txt ${VNTTS_INDEX_DIR}/data.dic)
file(GLOB definition_sources CONFIGURE_DEPENDS ${word_stores_src}/define/*.txt)
file(MAKE_DIRECTORY ${VNTTS_INDEX_DIR}/Define)
foreach(source ${definition_sources})
  get_filename_component(name ${source} NAME_WE)
  vntts_word_store(define ${source} ${VNTTS_INDEX_DIR}/Define/${name}.def)
endforeach()

add_custom_target(vntts_word_stores ALL DEPENDS ${word_store_outputs})
install(FILES ${VNTTS_INDEX_DIR}/AutoCrt.crt ${VNTTS_INDEX_DIR}/data.dic
        DESTINATION share/vntts/index)
install(DIRECTORY ${VNTTS_INDEX_DIR}/Define DESTINATION share/vntts/index)
