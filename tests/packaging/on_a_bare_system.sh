#!/usr/bin/env bash
# Installs a package on a Debian 12 that has nothing but the system, replays the example, removes it and looks for what
# it left: nothing may stay.
#
#   tests/packaging/on_a_bare_system.sh PACKAGE.deb
set -euo pipefail
package=$(realpath "$1")
system=$(mktemp -d)
trap 'rm -rf --one-file-system "$system"' EXIT

echo "Making a bare system..."
mmdebstrap --variant=apt --quiet bookworm "$system" "deb http://deb.debian.org/debian bookworm main"
cp "$package" "$system/tmp/merlane.deb"
cp /etc/resolv.conf "$system/etc/resolv.conf"

on_it() { chroot "$system" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
  DEBIAN_FRONTEND=noninteractive QT_QPA_PLATFORM=offscreen HOME=/root "$@"; }
files_named_so() { (cd "$system" && find . -xdev -iname '*merlane*' -not -path './tmp/*' -not -path './var/log/*' \
  -not -path './proc/*' | sort); }

echo "Installing the package..."
on_it apt-get update -qq
on_it apt-get install -qq -y --no-install-recommends /tmp/merlane.deb >/dev/null
on_it merlane-batch --out /tmp/replayed /usr/share/doc/merlane/examples/first_fit.batch >"$system/tmp/transcript.txt"
grep -q 'Minimum found' "$system/tmp/transcript.txt"

# The windows open: whoever is told to go after some seconds was there until then.
status=0
on_it timeout 5 merlane || status=$?
((status == 124 || status == 0)) || { echo "The desktop program ended with status $status." >&2; exit 1; }

on_it apt-get purge -qq -y merlane >/dev/null
rm -rf "$system/root/.local" # the user's own
left=$(files_named_so)
[[ -z $left ]] || { printf 'The package leaves behind:\n%s\n' "$left" >&2; exit 1; }
echo "The package was installed, used and removed without rest."
