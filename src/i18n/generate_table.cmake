# Turns a table of interface texts into C++:
#   cmake -DTABLE=english.txt -DLANGUAGE=english -DOUTPUT=english_table.cpp -P generate_table.cmake
# A slot that is missing, doubled or out of order, an unknown escape and a blank that an editor would take off stop the
# build, since they would show wrong texts in places that nobody looks at.
cmake_policy(VERSION 3.23)

set(fewest_slots 253)
set(most_slots 254)

# Only `string` on quoted values is used: CMake's lists would fall over brackets and semicolons in texts.
file(READ "${TABLE}" rest)
string(REPLACE "\r\n" "\n" rest "${rest}")
set(slots 0)
set(line_number 0)
set(literals "")

while(NOT rest STREQUAL "")
  math(EXPR line_number "${line_number} + 1")
  string(FIND "${rest}" "\n" line_end)
  if(line_end EQUAL -1)
    message(FATAL_ERROR "${TABLE}:${line_number}: the last line does not end")
  endif()
  string(SUBSTRING "${rest}" 0 ${line_end} line)
  math(EXPR line_end "${line_end} + 1")
  string(SUBSTRING "${rest}" ${line_end} -1 rest)

  if(line MATCHES "^#" OR line STREQUAL "")
    continue()
  endif()
  if(NOT line MATCHES "^([0-9]+)([ \t](.*))?$")
    message(FATAL_ERROR "${TABLE}:${line_number}: not a slot number, a blank and a text")
  endif()
  set(text "${CMAKE_MATCH_3}")
  if(NOT CMAKE_MATCH_1 STREQUAL "${slots}")
    message(FATAL_ERROR "${TABLE}:${line_number}: slot ${CMAKE_MATCH_1} stands where slot ${slots} is expected")
  endif()
  if(text MATCHES "^[ \t]" OR text MATCHES "[ \t]$")
    message(FATAL_ERROR "${TABLE}:${line_number}: a blank at an end of a text is written \\s")
  endif()
  string(REGEX REPLACE "\\\\[nts\\\\]" "" without_escapes "${text}")
  if(without_escapes MATCHES "\\\\")
    message(FATAL_ERROR "${TABLE}:${line_number}: the escapes are \\n, \\t, \\s and \\\\")
  endif()

  # A doubled backslash is set aside first, so that what follows it is not taken for an escape.
  string(ASCII 1 backslash)
  string(REPLACE "\\\\" "${backslash}" text "${text}")
  string(REPLACE "\\s" " " text "${text}")
  string(REPLACE "${backslash}" "\\\\" text "${text}")
  string(REPLACE "\"" "\\\"" text "${text}")
  string(APPEND literals "    L\"${text}\",  // ${slots}\n")
  math(EXPR slots "${slots} + 1")
endwhile()

if(slots LESS fewest_slots OR slots GREATER most_slots)
  message(FATAL_ERROR "${TABLE}: ${slots} slots instead of ${fewest_slots} or ${most_slots}")
endif()

file(WRITE "${OUTPUT}" "// Made from the table of interface texts; changes belong there.
#include <span>
#include <string_view>

namespace corvina::i18n {

namespace {

constexpr std::wstring_view Texts[] = {
${literals}};

}  // namespace

std::span<const std::wstring_view> Table_${LANGUAGE}();

std::span<const std::wstring_view> Table_${LANGUAGE}() { return Texts; }

}  // namespace corvina::i18n
")
