# Installs the build in BUILD into the folder ROOT and starts the program from there: it must find its textures, its
# manual and its examples.
file(REMOVE_RECURSE ${ROOT})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${ROOT} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
foreach(file share/man/man1/orvvalis.1.gz share/applications/orvvalis.desktop share/mime/packages/orvvalis.xml
        share/icons/hicolor/scalable/apps/orvvalis.svg share/doc/orvvalis/copyright share/orvvalis/docs/README.md
        share/orvvalis/docs/tutorial.md share/orvvalis/textures/earthjpg.jpg share/orvvalis/textures/moonjpg.jpg)
  if(NOT EXISTS ${ROOT}/${file})
    message(SEND_ERROR "${file} is not installed")
  endif()
endforeach()

function(run_installed)
  execute_process(COMMAND ${ROOT}/bin/orvvalis ${ARGN} --settings ${ROOT}/settings WORKING_DIRECTORY ${ROOT}
                  RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT code EQUAL 0 OR "${out}${err}" MATCHES "was not read")
    message(SEND_ERROR "orvvalis ${ARGN}: ${code}\n${out}${err}")
  endif()
endfunction()
set(examples ${ROOT}/share/orvvalis/examples)
run_installed(run ${examples}/telecom_satellite.xlsx --plot 13 --out ${ROOT}/results --quiet)
# An orbit with the Earth: a texture that is not found would be told.
run_installed(show ${examples}/range_plots.xlsx --sheet Orbit --spec "=0.5*MAX(A24:O114)" --image ${ROOT}/orbit.png
              --size 200x150)
if(NOT EXISTS ${ROOT}/orbit.png)
  message(SEND_ERROR "the installed program drew no picture")
endif()
