#!/bin/sh
# The public headers as HTML. An operation without a comment, or with a comment that names an argument it
# does not have, fails.
set -eu
mkdir -p build/docs
cat >build/docs/Doxyfile <<EOT
PROJECT_NAME = "zrlsw"
PROJECT_BRIEF = "Chip adaptation library of the switch manager"
INPUT = src README.md docs tests/sweep/transcript/README.md
FILE_PATTERNS = *.h *.md
USE_MDFILE_AS_MAINPAGE = "$PWD/README.md"
RECURSIVE = YES
OUTPUT_DIRECTORY = build/docs
EXTRACT_ALL = YES
OPTIMIZE_OUTPUT_FOR_C = YES
FULL_PATH_NAMES = YES
STRIP_FROM_PATH = src
GENERATE_LATEX = NO
QUIET = YES
HAVE_DOT = NO
FILTER_PATTERNS = "*.h=sed -e 's|^ *// |/// |'"
MACRO_EXPANSION = YES
EXPAND_ONLY_PREDEF = YES
PREDEFINED = ZR_EXPORT= ZR_EXTERN_C_BEGIN= ZR_EXTERN_C_END= "ZR_PRINTF_LIKE(a,b)=" "ZR_ASSERT_SIZE(a,b)=" "ZR_ASSERT_OFFSET(a,b,c)=" "ZR_ASSERT_SLOT(a,b,c)="
EOT
doxygen build/docs/Doxyfile

# Comments are plain text above their declaration: an exported declaration must follow a comment, directly or
# within a group that a comment opens.
awk '
    FNR == 1 { commented = 0 }
    /^\/\// { commented = 1; next }
    /^[[:space:]]*$/ { commented = 0; next }
    /ZR_EXPORT/ && !/#define/ { if (!commented) { print FILENAME ":" FNR ": no comment: " $0; bad = 1 } }
    END { exit bad }
' src/*/*.h
echo "build/docs/html/index.html"
