# cmake -D TEMPLATE=... -D OUTPUT=... -D CHECKOUT=... -D ... -P About.cmake
# Writes the resources of the about box, with the commit that CHECKOUT has now; without one
# when the sources did not come by git. A file that would not change is left as it is.
set(commit "")
if(EXISTS ${CHECKOUT}/.git) # else git would answer for a checkout around the sources
  execute_process(COMMAND git -C ${CHECKOUT} describe --always --dirty
                  OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
set(HIVESWEEP_BUILD "")
if(commit)
  set(HIVESWEEP_BUILD ", build ${commit}")
endif()
configure_file(${TEMPLATE} ${OUTPUT} @ONLY)
