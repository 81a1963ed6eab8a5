#!/bin/sh
# The public headers and the documents as HTML. An operation without a comment, or with a comment that names an argument it
# does not have, fails, and so does a dead link.
set -eu
rm -rf build/docs
mkdir -p build/docs/pages
# A page is named by its file, not by the folder that this is in; links into the source have nothing to lead to.
for page in README.md docs/*.md tests/sweep/transcript/README.md; do
    name=$(echo "${page%.md}" | tr -c 'a-z\n' _)
    copy=build/docs/pages/$page
    mkdir -p "$(dirname "$copy")"
    sed -E 's/\[([^]]*)\]\((\.\.\/)?(src|sim|tools|bench|examples|tests\/?\))[^)]*\)?/\1/g; s/(\.md)#[^)]*\)/\1)/g' "$page" |
        { [ "$page" = README.md ] && cat || sed "1s/\$/ {#$name}/"; } >"$copy"
done
cat >build/docs/Doxyfile <<EOT
PROJECT_NAME = "zrlsw"
PROJECT_BRIEF = "Chip adaptation library of the switch manager"
INPUT = $PWD/src .
FILE_PATTERNS = *.h *.md
USE_MDFILE_AS_MAINPAGE = "$PWD/build/docs/pages/README.md"
RECURSIVE = YES
IMAGE_PATH = $PWD/docs
OUTPUT_DIRECTORY = $PWD/build/docs
EXTRACT_ALL = YES
OPTIMIZE_OUTPUT_FOR_C = YES
FULL_PATH_NAMES = YES
STRIP_FROM_PATH = $PWD/src $PWD/build/docs/pages
GENERATE_LATEX = NO
QUIET = YES
HAVE_DOT = NO
FILTER_PATTERNS = "*.h=sed -e 's|^ *// |/// |'"
MACRO_EXPANSION = YES
EXPAND_ONLY_PREDEF = YES
PREDEFINED = ZR_EXPORT= ZR_EXTERN_C_BEGIN= ZR_EXTERN_C_END= "ZR_PRINTF_LIKE(a,b)=" "ZR_ASSERT_SIZE(a,b)=" "ZR_ASSERT_OFFSET(a,b,c)=" "ZR_ASSERT_SLOT(a,b,c)="
EOT
(cd build/docs/pages && doxygen ../Doxyfile)

# Comments are plain text above their declaration: an exported declaration must follow a comment, directly or
# within a group that a comment opens.
awk '
    FNR == 1 { commented = 0 }
    /^\/\// { commented = 1; next }
    /^[[:space:]]*$/ { commented = 0; next }
    /ZR_EXPORT/ && !/#define/ { if (!commented) { print FILENAME ":" FNR ": no comment: " $0; bad = 1 } }
    END { exit bad }
' src/*/*.h
python3 cmake/links.py build/docs/html/index.html
