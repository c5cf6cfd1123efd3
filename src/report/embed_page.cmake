# Makes a C++ source of the page: its body, its styles and its scripts joined, and the hashes by which its content security
# policy knows them. Run when the program is built: cmake -D PAGE=folder -D OUT=file.cpp -P embed_page.cmake
#
# Bytes go from file to file, and into the source by way of hexadecimal digits, because CMake takes brackets, semicolons
# and backslashes in texts for its own.
include(${PAGE}/files.cmake)

# Joins files byte by byte.
function(join_files result)
  execute_process(COMMAND ${CMAKE_COMMAND} -E cat ${ARGN} OUTPUT_FILE ${result} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Refuses a text with which an element of that name would end early, or in which a browser would see other bytes than
# those of the hash.
function(check_content file element)
  file(READ ${file} text)
  string(TOLOWER "${text}" text)
  foreach(breach "</${element}" "<!--" "\r")
    string(FIND "${text}" "${breach}" found)
    if(NOT found EQUAL -1)
      message(FATAL_ERROR "${PAGE}: a ${element} must have no carriage return, no <!-- and no </${element}")
    endif()
  endforeach()
endfunction()

# The name that a content security policy has for the content of a file: its SHA-256 in base64.
function(policy_hash file result)
  set(alphabet ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
  file(SHA256 ${file} digits)
  # Three digits are two characters; 64 digits are filled up to 66, and the last character is none of them.
  string(APPEND digits 00)
  set(text "")
  foreach(begin RANGE 0 63 3)
    string(SUBSTRING ${digits} ${begin} 3 three)
    math(EXPR high "0x${three} >> 6")
    math(EXPR low "0x${three} & 63")
    string(SUBSTRING ${alphabet} ${high} 1 first)
    string(SUBSTRING ${alphabet} ${low} 1 second)
    string(APPEND text ${first}${second})
  endforeach()
  string(SUBSTRING ${text} 0 43 text)
  set(${result} "sha256-${text}=" PARENT_SCOPE)
endfunction()

# Appends the definition of a text that is the content of a file.
function(define name file)
  file(READ ${file} digits HEX)
  string(REGEX REPLACE "(................................)" "\\1\n" lines "${digits}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${lines}")
  file(APPEND ${OUT}.new "constexpr char ${name}_bytes[] = {\n${bytes}'\\0'};\n")
endfunction()

file(WRITE ${OUT}.begin "(() => {\n'use strict';\n")
file(WRITE ${OUT}.end "})();\n")
list(TRANSFORM page_styles PREPEND ${PAGE}/)
list(TRANSFORM page_scripts PREPEND ${PAGE}/)
join_files(${OUT}.css ${page_styles})
join_files(${OUT}.js ${OUT}.begin ${page_scripts} ${OUT}.end)
check_content(${OUT}.css style)
check_content(${OUT}.js script)
policy_hash(${OUT}.css style_hash)
policy_hash(${OUT}.js script_hash)

file(WRITE ${OUT}.new "#include \"report/page.h\"\n\nnamespace colx::report {\n\nnamespace {\n\n")
define(body ${PAGE}/page.html)
define(style ${OUT}.css)
define(script ${OUT}.js)
file(APPEND ${OUT}.new "\n}  // namespace\n\nconstinit const Page page = {\n")
foreach(name body style script)
  file(APPEND ${OUT}.new "    .${name} = {${name}_bytes, sizeof ${name}_bytes - 1},\n")
endforeach()
file(APPEND ${OUT}.new "    .style_hash = \"${style_hash}\",\n    .script_hash = \"${script_hash}\",\n};\n\n")
file(APPEND ${OUT}.new "}  // namespace colx::report\n")
file(RENAME ${OUT}.new ${OUT})
