#!/usr/bin/env bash
# Builds the installer around FOLDER/skyhaul.exe and runs it under Wine: what it installs, what it
# leaves when it is removed, and who opens .igc files before, meanwhile and afterwards.
#   tests/packaging/installer_test.sh FOLDER
set -euo pipefail
program=$(cd "${1:?the folder of skyhaul.exe}" && pwd)/skyhaul.exe
cd "$(dirname "$0")/../.."

scratch=$(mktemp -d)
# Without winemenubuilder, which would put the start menu's entry into this machine's own menu.
export WINEPREFIX=$scratch/prefix WINEARCH=win64 WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
unset DISPLAY
trap 'wineserver -k 2>/dev/null || true; wineserver -w || true; rm -rf "$scratch"' EXIT
failures=0
fail() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}
# expect WHAT EXPECTED FOUND
expect() { [ "$2" = "$3" ] || fail "$1: expected \"$2\", found \"$3\""; }

classes='HKCU\Software\Classes'
# value KEY [NAME]: a value in the registry, empty without one.
value() {
  local which=(/ve)
  [ $# -lt 2 ] || which=(/v "$2")
  wine reg query "$1" "${which[@]}" 2>/dev/null | tr -d '\r' |
    sed -n 's/.*  REG_[A-Z]*  *//p' || true
}
# run LINE: a line as Windows' own programs write it, quotes and all.
run() {
  printf '@%s\r\n' "$1" >"$scratch/run.cmd"
  wine cmd /c "$(winepath -w "$scratch/run.cmd")"
}
# snapshot NAME: all files of the drive and the user's registry, to be compared. Of the temporary
# folder Windows takes care itself.
snapshot() {
  wineserver -w
  (cd "$WINEPREFIX/drive_c" && find . -path '*/Temp/*' -prune -o -print | LC_ALL=C sort) >"$scratch/$1"
  sed 's/^\(\[.*\]\) [0-9]*$/\1/; /^#time=/d' "$WINEPREFIX/user.reg" >>"$scratch/$1"
}
# unchanged WHAT BEFORE: nothing differs from the snapshot.
unchanged() {
  snapshot now
  diff "$scratch/$2" "$scratch/now" >&2 || fail "$1 left something behind"
}
# uninstall [OPTION]. An uninstaller goes on in a copy of itself; the server ends with the last program.
uninstall() {
  wine "$home/uninstall.exe" /S "$@"
  wineserver -w
}

installer=$(scripts/package installer --program "$program" --into "$scratch")
version=$(cmake -P cmake/Version.cmake)
wineboot -i >/dev/null 2>&1
wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null
user=$WINEPREFIX/drive_c/users/$(id -un)
home=$user/AppData/Local/Programs/Skyhaul
entry='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Skyhaul'
# What every Windows has and a new prefix has not.
mkdir -p "$(dirname "$home")"
wine reg add "${entry%Skyhaul}" /f >/dev/null
snapshot empty

# Files, registry and start menu, and nothing of .igc unasked.
wine "$installer" /S || fail "the installer ended with $?"
mkdir "$scratch/zip"
unzip -q "$(scripts/package zip --program "$program" --into "$scratch")" -d "$scratch/zip"
diff -r "$scratch/zip/Skyhaul" "$home" >"$scratch/differences" || true
expect "more than the zip holds" "Only in $home: uninstall.exe" "$(cat "$scratch/differences")"
expect "links that lead nowhere" "" "$(tests/packaging/dead-links "$home" || echo "no links")"
grep -q $'\r$' "$home/README.txt" || fail "README.txt has no Windows line ends"
expect "version" "Skyhaul $version" "$(wine "$home/skyhaul.exe" --version | tr -d '\r')"
expect "DisplayVersion" "$version" "$(value "$entry" DisplayVersion)"
[ -f "$user/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Skyhaul.lnk" ] ||
  fail "no entry in the start menu"
expect ".igc unasked" "" "$(value "$classes\\.igc")"
uninstall
unchanged "a removal" empty

# While the program runs, here because it waits for a password, neither removing nor updating begins.
wine "$installer" /S
mkfifo "$scratch/password"
wine "$home/skyhaul.exe" --set SkylogPassword <"$scratch/password" >"$scratch/asked" 2>&1 &
waiting=$!
exec 3>"$scratch/password"
timeout 60 sh -c "until grep -qsF /skyhaul.exe /proc/$waiting/maps; do sleep 0.1; done" ||
  fail "it does not run: $(cat "$scratch/asked")"
status=0
run "\"$(winepath -w "$installer")\" /S" || status=$?
expect "updating while it runs" 2 "$status"
status=0
run "\"$(winepath -w "$home")\\uninstall.exe\" /S _?=$(winepath -w "$home")" || status=$?
expect "removing while it runs" 2 "$status"
diff -r "$scratch/zip/Skyhaul" "$home" >"$scratch/differences" || true
expect "files while it runs" "Only in $home: uninstall.exe" "$(cat "$scratch/differences")"
expect "entry while it runs" "$version" "$(value "$entry" DisplayVersion)"
exec 3>&-
wait $waiting || true
grep -q 'press Enter' "$scratch/asked" || fail "no password was asked for: $(cat "$scratch/asked")"

# Settings outlive a removal and a new version, unless they are to go as well.
settings='HKCU\Software\Skyhaul'
wine "$home/skyhaul.exe" --set IgcGliderType=Omega >/dev/null || fail "no settings"
uninstall
expect "setting after a removal" Omega "$(value "$settings" IgcGliderType)"
wine "$installer" /S
uninstall /SETTINGS
! wine reg query "$settings" >/dev/null 2>&1 || fail "the settings are still there"
unchanged "a removal with settings" empty

# .igc files are taken over when asked, kept by the next version, and given back.
wine reg add "$classes\\.igc" /ve /d Other.Viewer /f >/dev/null
wine reg add "$classes\\.igc" /v PerceivedType /d text /f >/dev/null
snapshot other
wine "$installer" /S /ASSOCIATE || fail "the installer ended with $?"
wine reg query "$classes\\.igc\\OpenWithProgids" /v Skyhaul.igc >/dev/null || fail "not offered"
expect ".igc taken over" Skyhaul.igc "$(value "$classes\\.igc")"
run "\"$(winepath -w "$installer")\" /S /D=C:\\Other place\\Skyhaul" || fail "the second installation ended with $?"
expect ".igc in the next version" Skyhaul.igc "$(value "$classes\\.igc")"
[ ! -e "$home" ] || fail "the version before is still there"
home="$WINEPREFIX/drive_c/Other place/Skyhaul"
flight="$scratch/a flight.igc"
printf '%s\r\n' AXSH000 HFDTE240526 B0900004730000N01130000EA0100001000 >"$flight"
# As a double click runs it; "pause" is answered.
command=$(value "$classes\\Skyhaul.igc\\shell\\open\\command")
path=$(winepath -w "$flight")
echo | run "${command//%1/$path}" >"$scratch/shown" 2>&1 || true
grep -qF "$path" "$scratch/shown" || fail "opening a flight shows \"$(cat "$scratch/shown")\""
touch "$home/own notes.txt"
uninstall
expect "files that are not ours" "own notes.txt" "$(ls "$home")"
rm -r "$WINEPREFIX/drive_c/Other place"
unchanged "a removal after taking over .igc" other

# Who took them over meanwhile keeps them.
wine "$installer" /S /ASSOCIATE
wine reg add "$classes\\.igc" /ve /d Third.Viewer /f >/dev/null
home=$user/AppData/Local/Programs/Skyhaul
uninstall
expect ".igc of a third program" Third.Viewer "$(value "$classes\\.igc")"

[ "$failures" -eq 0 ] || exit 1
echo "The installer is as it should be"
