# Writing single settings into the program's settings file from a shell. To be sourced.
# shellcheck shell=bash

# WriteSetting FILE SECTION KEY VALUE: replaces or adds one setting; with an empty value the setting is removed. The file is
# kept as the program writes it, in UTF-16 with a byte order mark.
WriteSetting() {
    local file=$1 text
    text=$(mktemp "$file.XXXXXX")
    if [[ $(head -c 2 "$file" 2>/dev/null | od -An -tx1 | tr -d ' \n') == fffe ]]; then
        iconv -f UTF-16 -t UTF-8 "$file" >"$text"
    fi
    {
        printf '\xff\xfe'
        section=$2 key=$3 value=$4 awk '
            BEGIN { wanted = tolower("[" ENVIRON["section"] "]"); key = tolower(ENVIRON["key"]) }
            function Add() {
                if (ENVIRON["value"] != "") printf "%s=%s\r\n", ENVIRON["key"], ENVIRON["value"]
                done = 1
            }
            { sub(/\r$/, "") }
            /^[ \t]*\[/ { inside = tolower($0) == wanted }
            inside && index($0, "=") && tolower(substr($0, 1, index($0, "=") - 1)) == key { next }
            { printf "%s\r\n", $0 }
            inside && !done && tolower($0) == wanted { Add() }
            END { if (!done && ENVIRON["value"] != "") { printf "[%s]\r\n", ENVIRON["section"]; Add() } }
        ' "$text" | iconv -f UTF-8 -t UTF-16LE
    } >"$text.new"
    rm -f "$text"
    mv "$text.new" "$file"
}
