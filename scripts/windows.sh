# Running Windows programs: a Wine of one's own for each command, so that commands do not meet each other's processes, and
# a display without a screen. To be sourced after common.sh. Everything that is started here ends with the script.
# shellcheck shell=bash disable=SC2154

wine_template=$build/wine/template

# Starts a display on a free number and sets DISPLAY. Nobody else can tell which number is free without a race, so the
# server itself chooses one and writes it to a file.
StartDisplay() {
    local folder
    folder=$(mktemp -d "$build/display.XXXXXX")
    Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset 3>"$folder/number" >"$folder/log" 2>&1 </dev/null &
    display_process=$!
    AtExit StopDisplay
    if ! WaitFor 30 test -s "$folder/number"; then
        tail -n 20 "$folder/log" >&2
        rm -rf "$folder"
        Fail "no display could be started"
    fi
    DISPLAY=:$(tr -d '[:space:]' <"$folder/number")
    export DISPLAY
    rm -rf "$folder"
}

StopDisplay() {
    if [[ -n $display_process ]]; then
        kill "$display_process" 2>/dev/null || true
        wait "$display_process" 2>/dev/null || true
        display_process=
        unset DISPLAY
    fi
}

# Starts with a fresh Wine in WINEPREFIX. Its Windows folder shares the template's files, which Wine never writes to.
StartWine() {
    export WINEDEBUG=-all
    # No offers to download browsers and run-time systems, no entries in the user's menus.
    export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
    # Texts and pictures must not depend on who runs the command.
    export LC_ALL=C.UTF-8
    RemoveLeftWines
    MakeWineTemplate
    export WINEPREFIX=$build/wine/process-$$
    AtExit StopWine
    mkdir "$WINEPREFIX"
    cp -al "$wine_template/." "$WINEPREFIX/"
    # The registry and the system's settings are written to, so they must not be shared.
    (
        cd "$wine_template" || exit
        find . -xdev \( -name '*.reg' -o -name '*.ini' \) -type f \
            -exec cp -a --parents --remove-destination -t "$WINEPREFIX" {} +
    )
    if [[ -n ${display_process:-} ]]; then
        # On a display of our own nobody manages windows. Wine would wait for such a one whenever a window goes, two
        # seconds each time.
        printf '\n[Software\\\\Wine\\\\X11 Driver]\n"Managed"="N"\n' >>"$WINEPREFIX/user.reg"
    fi
}

# Puts a library into the system folder of this command's own Wine, in the place of Wine's library of that name.
ReplaceSystemLibrary() {
    local file=$1 name
    name=$(basename -- "$file")
    # What stands there is the template's own file, which must stay as it is.
    cp --remove-destination "$file" "$WINEPREFIX/drive_c/windows/system32/$name"
    export WINEDLLOVERRIDES="$WINEDLLOVERRIDES;${name%.dll}=n"
}

MakeWineTemplate() {
    local version
    version=$(wine --version)
    if [[ -f $wine_template/made-by && $(<"$wine_template/made-by") == "$version" ]]; then
        return
    fi
    local fresh=$build/wine/process-$$
    mkdir -p "$fresh"
    export WINEPREFIX=$fresh
    AtExit StopWine
    RunOrFail "Preparing Wine" 300 "$logs/wine.log" wineboot --init
    # A crash must end a program, not ask somebody; and the program is for the Windows of today.
    RunBounded 60 "$logs/wine.log" wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f ||
        Fail "Wine could not be set up; see $logs/wine.log"
    RunBounded 60 "$logs/wine.log" wine winecfg -v win10 || Fail "Wine could not be set up; see $logs/wine.log"
    RunBounded 120 "$logs/wine.log" wineserver -w || Fail "Wine did not come to rest; see $logs/wine.log"
    # Debian's Wine does not look where Debian keeps its fonts; without them texts and window buttons look foreign.
    mkdir -p "$fresh/drive_c/windows/Fonts"
    cp -t "$fresh/drive_c/windows/Fonts" /usr/share/wine/fonts/*.ttf
    printf '%s\n' "$version" >"$fresh/made-by"
    rm -rf "$wine_template"
    mv "$fresh" "$wine_template"
}

# Ends every Windows process of this command and removes its Wine.
StopWine() {
    if [[ -n ${WINEPREFIX:-} && -d $WINEPREFIX && $WINEPREFIX == "$build"/wine/process-* ]]; then
        timeout 30 wineserver -k 2>/dev/null || true
        timeout 30 wineserver -w 2>/dev/null || true
        rm -rf "$WINEPREFIX"
    fi
}

# What a killed command left behind; the number in the name is the command's process.
RemoveLeftWines() {
    local folder
    for folder in "$build"/wine/process-*; do
        if [[ -d $folder ]] && ! kill -0 "${folder##*-}" 2>/dev/null; then
            (
                export WINEPREFIX=$folder
                StopWine
            )
        fi
    done
}

# Gives Wine the letters of East Asia, India and Greece, which its own fonts lack: under the names of the fonts that
# Windows has for them, and as fallbacks of the usual one.
LendFonts() {
    local name machine='HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontLink\SystemLink'
    Say "Lending fonts to Wine"
    for name in 'Malgun Gothic' 'Microsoft YaHei UI' 'Microsoft JhengHei UI' 'Yu Gothic UI'; do
        SetWineValue 'HKCU\Software\Wine\Fonts\Replacements' "$name" REG_SZ 'WenQuanYi Micro Hei'
    done
    for name in 'Nirmala UI' Mangal; do
        SetWineValue 'HKCU\Software\Wine\Fonts\Replacements' "$name" REG_SZ 'Lohit Devanagari'
    done
    for name in Tahoma 'Tahoma Bold'; do
        SetWineValue "$machine" "$name" REG_MULTI_SZ \
            'DejaVuSans.ttf,DejaVu Sans\0wqy-microhei.ttc,WenQuanYi Micro Hei\0Lohit-Devanagari.ttf,Lohit Devanagari'
    done
}

# SetWineValue KEY NAME TYPE VALUE
SetWineValue() {
    RunBounded 60 "$logs/wine.log" wine reg add "$1" /v "$2" /t "$3" /d "$4" /f ||
        Fail "Wine could not be set up; see $logs/wine.log"
}

# The name by which Windows programs know a file: Wine shows the whole file system as drive Z.
WindowsPath() {
    local path
    path=$(realpath -- "$1")
    printf '%s' "Z:${path//\//\\}"
}
