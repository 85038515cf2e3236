# Writes a man page from a program's own --help, so that the two never drift apart.
#
#   cmake -DPROGRAM=path -DNAME=orvel-cli -DSUMMARY="…" -DCOMMANDS=times,status,…
#         -DEXTRA=path/to/section.roff -DVERSION=0.1.0 -DOUTPUT=orvel-cli.1 -P make-man.cmake
#
# The page has the program's help under KULLANIM, each command's help under its own heading, and
# the hand-written sections of EXTRA (examples, files) after them.

function(roff_escape text out)
  string(REPLACE "\\" "\\e" text "${text}")
  # A line may not begin with a control character.
  string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" text "${text}")
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

function(help_of out)
  execute_process(COMMAND ${PROGRAM} ${ARGN} --help OUTPUT_VARIABLE text RESULT_VARIABLE result
                  ENCODING UTF-8)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ${ARGN} --help failed: ${result}")
  endif()
  roff_escape("${text}" text)
  set(${out} ".nf\n${text}.fi\n" PARENT_SCOPE)
endfunction()

string(TOUPPER "${NAME}" title)
# Honours SOURCE_DATE_EPOCH, so that package builds are reproducible.
string(TIMESTAMP date "%Y-%m-%d" UTC)
set(page ".TH ${title} 1 \"${date}\" \"${NAME} ${VERSION}\" \"Kullanıcı Komutları\"\n")
string(APPEND page ".SH AD\n${NAME} \\- ${SUMMARY}\n")
help_of(main)
string(APPEND page ".SH KULLANIM\n${main}")
string(REPLACE "," ";" COMMANDS "${COMMANDS}")
foreach(command IN LISTS COMMANDS)
  help_of(text ${command})
  string(APPEND page ".SH \"${NAME} ${command}\"\n${text}")
endforeach()
if(EXTRA)
  file(READ "${EXTRA}" extra)
  string(APPEND page "${extra}")
endif()
file(WRITE "${OUTPUT}" "${page}")
