#!/usr/bin/env bash
# Installs the Debian packages of tools/packages.txt that are missing. Says what it does; goes
# through sudo when it is not run as root.
set -eu
cd "$(dirname "$0")/.."

missing=()
while read -r package; do
    case "$package" in ''|'#'*) continue ;; esac
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
        missing+=("$package")
done < tools/packages.txt
[ ${#missing[@]} -eq 0 ] && exit 0

root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
        echo "These packages are missing, and there is neither root nor sudo: ${missing[*]}" >&2
        exit 1
    }
    root=(sudo)
fi
echo "Installing: ${missing[*]}"
"${root[@]}" apt-get update -q
DEBIAN_FRONTEND=noninteractive "${root[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
