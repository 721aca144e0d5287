#!/usr/bin/env bash
# Builds the .deb from the programs of build/release, unpacks it into a scratch root and looks at what
# is there: the files, the program, the pages, and what desktop and system make of the rest.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
cd "$here/../.."

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failures=0
fail() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}
# expect WHAT EXPECTED FOUND
expect() { [ "$2" = "$3" ] || fail "$1: expected \"$2\", found \"$3\""; }

deb=$(scripts/package deb --into "$scratch/first")
again=$(scripts/package deb --into "$scratch/second")
cmp "$deb" "$again" || fail "two packages of the same sources differ"

# Documents for pilots may come and go; none may lead to one that is not there.
dpkg-deb -c "$deb" | awk '!/\/$/ {print $1, $2, $6}' |
  grep -v '^-rw-r--r-- root/root ./usr/share/doc/skyhaul/[A-Za-z-]*\.md$' >"$scratch/files"
diff - "$scratch/files" <<'END' || fail "the package holds other files"
-rwxr-xr-x root/root ./usr/bin/skyhaul
-rwxr-xr-x root/root ./usr/bin/skyhaul-instrument
-rw-r--r-- root/root ./usr/lib/udev/rules.d/70-skyhaul-garmin.rules
-rw-r--r-- root/root ./usr/share/applications/skyhaul.desktop
-rw-r--r-- root/root ./usr/share/doc/skyhaul/changelog.gz
-rw-r--r-- root/root ./usr/share/doc/skyhaul/copyright
-rw-r--r-- root/root ./usr/share/icons/hicolor/scalable/apps/skyhaul.svg
-rw-r--r-- root/root ./usr/share/man/man1/skyhaul-instrument.1.gz
-rw-r--r-- root/root ./usr/share/man/man1/skyhaul.1.gz
-rw-r--r-- root/root ./usr/share/mime/packages/skyhaul.xml
END
dpkg-deb -f "$deb" Depends | grep -q 'libc6 (>= ' || fail "no dependency on the C library"
expect "Recommends" libsecret-1-0 "$(dpkg-deb -f "$deb" Recommends)"

lintian --allow-root --fail-on error,warning "$deb" || fail "lintian has found something"

root=$scratch/root
dpkg-deb -x "$deb" "$root"
share=$root/usr/share
[ -f "$share/doc/skyhaul/command-line.md" ] || fail "no documents"
[ ! -e "$share/doc/skyhaul/architecture.md" ] || fail "documents for developers"
dead=$("$here/dead-links" "$share/doc/skyhaul") || fail "no links in the documents"
expect "links that lead nowhere" "" "$dead"
expect "version" "Skyhaul $(dpkg-deb -f "$deb" Version)" "$("$root/usr/bin/skyhaul" --version)"

for program in skyhaul skyhaul-instrument; do
  zcat "$share/man/man1/$program.1.gz" >"$scratch/page"
  expect "$program.1" "" "$(groff -man -Tutf8 -ww -z "$scratch/page" 2>&1)"
  groff -man -Tascii -P-cbou "$scratch/page" >"$scratch/text"
  for option in $("$root/usr/bin/$program" --help | grep -oE '(^|[^a-z])(--[a-z]+|/[A-Z_0-9]+)' |
    grep -oE '[-/].*'); do
    grep -qF -- "$option" "$scratch/text" || fail "$program.1 does not know $option"
  done
done

# As the desktop starts it, in a terminal that has only this input.
desktop-file-validate "$share/applications/skyhaul.desktop" || fail "desktop entry"
bin=$scratch/bin
mkdir "$bin"
ln -s "$root/usr/bin/skyhaul" "$(command -v sh)" "$bin/"
mkfifo "$scratch/screen"
cat >"$bin/xterm" <<END
#!/bin/sh
shift
exec "\$@" </dev/null >"$scratch/screen" 2>&1
END
chmod +x "$bin/xterm"
flight="$scratch/\$HOME 'a flight'.igc"
printf '%s\r\n' AXSH000 HFDTE240526 B0900004730000N01130000EA0100001000 \
  B0900054730010N01130010EA0100501005 >"$flight"
PATH=$bin "$(command -v gio)" launch "$share/applications/skyhaul.desktop" "$flight"
timeout 20 cat "$scratch/screen" >"$scratch/shown" || true
expect "first line shown" "File            $flight" "$(head -n 1 "$scratch/shown")"
expect "last line shown" "Press Enter to close this window" "$(tail -n 1 "$scratch/shown")"

# type_of FILE: what the desktop takes it for.
type_of() {
  XDG_DATA_HOME=$scratch/none XDG_DATA_DIRS=$share:/usr/share \
    gio info -a standard::content-type "$1" | sed -n 's/.*content-type: //p'
}
update-mime-database "$share/mime" 2>"$scratch/log" || fail "types: $(cat "$scratch/log")"
cp "$flight" "$scratch/unnamed"
printf 'ABOUT PARAGLIDERS\n' >"$scratch/text"
expect "type by name" application/vnd.fai.igc "$(type_of "$flight")"
expect "type by content" application/vnd.fai.igc "$(type_of "$scratch/unnamed")"
expect "type of a text" text/plain "$(type_of "$scratch/text")"

# What the rule says, and that systemd sees its tag in time. Only newer systems can check its grammar.
rules=$(echo "$root"/usr/lib/udev/rules.d/*.rules)
number=$(basename "$rules")
[ "${number%%-*}" -lt 73 ] || fail "the udev rule comes too late: $rules"
grep -v '^#' "$rules" >"$scratch/rule"
for part in 'SUBSYSTEM=="usb"' 'ATTR{idVendor}=="091e"' 'ATTR{idProduct}=="0003"' 'TAG+="uaccess"'; do
  grep -qF -- "$part" "$scratch/rule" || fail "the udev rule lacks $part"
done
expect "udev rules" 1 "$(grep -c . "$scratch/rule")"
if udevadm verify --help >/dev/null 2>&1; then
  udevadm verify "$rules" || fail "udev rule"
else
  echo "This system's udevadm cannot check the grammar of rules: that is not checked"
fi

[ "$failures" -eq 0 ] || exit 1
echo "The package is as it should be"
