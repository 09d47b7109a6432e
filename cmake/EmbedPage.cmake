# cmake -D OUTPUT=FILE.cpp -D STYLE=FILE.css -D "SCRIPTS=a.js|b.js" -P EmbedPage.cmake: style sheet and scripts as
# constants of C++.  The scripts are joined into one function, so that their names stay among themselves.
file(READ ${STYLE} style)
set(script "(() => {\n'use strict';\n")
string(REPLACE "|" ";" SCRIPTS "${SCRIPTS}")
foreach(file IN LISTS SCRIPTS)
  file(READ ${file} part)
  string(APPEND script "${part}")
endforeach()
string(APPEND script "})();\n")
set(style "\n${style}")
set(script "\n${script}")
string(SHA256 style_sum "${style}")
string(SHA256 script_sum "${script}")
file(WRITE ${OUTPUT}
"#include \"desktop/page/Assets.h\"

namespace desktop::page {

std::string_view const Assets::kStyle = R\"asset(${style})asset\";
std::string_view const Assets::kStyleSum = \"${style_sum}\";
std::string_view const Assets::kScript = R\"asset(${script})asset\";
std::string_view const Assets::kScriptSum = \"${script_sum}\";

} // namespace desktop::page
")
