# Writes the manual page of vellum-cli from the program's own help texts, so that the page
# says what the installed program does. Run with cmake -P:
#   -DCLI=<path of vellum-cli> -DVERSION=<version> -DOUTPUT=<page file>
foreach(var CLI VERSION OUTPUT)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "vellumCliManPage.cmake needs -D${var}=...")
  endif()
endforeach()

# Plain text as troff: backslashes escaped, a line starting with "." or "'" kept as text.
function(to_troff text out)
  string(REPLACE "\\" "\\e" text "${text}")
  string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" text "${text}")
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

function(help_of out)
  execute_process(COMMAND ${CLI} ${ARGN} --help OUTPUT_VARIABLE text RESULT_VARIABLE status
                  ERROR_VARIABLE error)
  if(NOT status EQUAL 0 OR text STREQUAL "")
    message(FATAL_ERROR "${CLI} ${ARGN} --help failed (${status}): ${error}")
  endif()
  string(STRIP "${text}" text)
  to_troff("${text}" text)
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

help_of(overview)
set(page ".TH VELLUM-CLI 1 \"\" \"vellum-cli ${VERSION}\" \"User Commands\"
.SH NAME
vellum-cli \\- show and convert Microsoft Access databases (.mdb, .accdb)
.SH SYNOPSIS
.B vellum-cli
.I COMMAND
.RI [ ARGS ]
.br
.B vellum-cli --version
.SH DESCRIPTION
.nf
${overview}
.fi
.SH COMMANDS
")
foreach(command list schema queries rows extract export)
  help_of(text ${command})
  string(APPEND page ".SS ${command}\n.nf\n${text}\n.fi\n")
endforeach()
string(APPEND page ".SH EXIT STATUS
.TP
.B 0
all done
.TP
.B 1
a file cannot be opened, a table named on the command line does not exist, or the work was
not completed
.TP
.B 2
wrong usage
.SH SEE ALSO
.BR mdb-tables (1),
.BR mdb-export (1)
")
file(WRITE ${OUTPUT} "${page}")
