# SPDX-License-Identifier: MIT
# Finds the voice for the current generator in the cache, makes it there when it is missing, and
# copies it into the data folder. Called by the build with GENERATOR, INPUTS, DIC, INDEX_DIR and
# STAMP set.
set(digest "")
foreach(f ${INPUTS})
  file(SHA256 ${f} h)
  string(APPEND digest "${h}")
endforeach()
execute_process(COMMAND espeak-ng --version OUTPUT_VARIABLE espeak_version ERROR_QUIET)
string(APPEND digest "${espeak_version}")
string(SHA256 digest "${digest}")
string(SUBSTRING ${digest} 0 16 key)

if(DEFINED ENV{XDG_CACHE_HOME} AND NOT "$ENV{XDG_CACHE_HOME}" STREQUAL "")
  set(cache_root "$ENV{XDG_CACHE_HOME}/vntts")
else()
  set(cache_root "$ENV{HOME}/.cache/vntts")
endif()
set(cache ${cache_root}/voice-${key})
file(MAKE_DIRECTORY ${cache_root})

# Several build folders may ask at once: one makes the voice, the others wait for it.
file(LOCK ${cache_root}/voice-${key}.lock GUARD PROCESS TIMEOUT 900)
if(NOT EXISTS ${cache}/main_dic.arr)
  set(work ${cache}.work)
  file(REMOVE_RECURSE ${work})
  file(MAKE_DIRECTORY ${work})
  message(STATUS "Making the default voice in ${cache}")
  execute_process(COMMAND nice -n 10 ${GENERATOR} --out ${work} --dic ${DIC}
                  RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    file(REMOVE_RECURSE ${work})
    message(FATAL_ERROR "The default voice generator failed (${status})")
  endif()
  file(REMOVE_RECURSE ${cache})
  file(RENAME ${work} ${cache})
endif()
file(LOCK ${cache_root}/voice-${key}.lock RELEASE)

file(MAKE_DIRECTORY ${INDEX_DIR})
foreach(ext dat idx arr)
  file(COPY_FILE ${cache}/main_dic.${ext} ${INDEX_DIR}/main_dic.${ext} ONLY_IF_DIFFERENT)
endforeach()
file(COPY_FILE ${cache}/inventory.txt ${INDEX_DIR}/../voice-inventory.txt ONLY_IF_DIFFERENT)
file(WRITE ${STAMP} "${key}\n")
