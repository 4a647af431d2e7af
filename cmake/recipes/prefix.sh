# about: the Windows folder that every run starts from (about 10 seconds)
# depends: cmake/recipes/wine.sh tools/lib.sh
version=1
set -euo pipefail
source "$(dirname "$0")/../../tools/lib.sh"

folder=$1
wine=$(recipe_folder wine)
export WINEPREFIX="$folder/prefix" WINEARCH=win32 WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
unset DISPLAY
trap '"$wine/bin/wineserver" -k || true' EXIT

timeout 300 "$wine/bin/wine" wineboot -i
"$wine/bin/wineserver" -k || true
timeout 60 "$wine/bin/wineserver" -w

# Fixed-pitch and proportional faces are told apart only when the fonts are really there.
find "$wine/root/usr/share" -name '*.ttf' -exec cp -n {} "$WINEPREFIX/drive_c/windows/Fonts/" \;
cat >"$folder/settings.reg" <<'TEXT'
REGEDIT4

[HKEY_CURRENT_USER\Software\Wine\Fonts\Replacements]
"Courier New"="Liberation Mono"
"Consolas"="Liberation Mono"
"Lucida Console"="Liberation Mono"
"Arial"="Liberation Sans"
"Times New Roman"="Liberation Serif"
"Segoe UI"="Tahoma"
"Microsoft Sans Serif"="Tahoma"
"SimSun"="Droid Sans Fallback"
"MS Gothic"="Droid Sans Fallback"

[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\ThemeManager]
"ThemeActive"="0"

[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000
TEXT
timeout 60 "$wine/bin/wine" regedit /S "$(printf 'Z:%s' "$folder/settings.reg" | tr / '\\')"
"$wine/bin/wineserver" -k || true
timeout 60 "$wine/bin/wineserver" -w
trap - EXIT
