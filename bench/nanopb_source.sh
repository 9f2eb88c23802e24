#!/usr/bin/env bash
# Unpacks Debian's sources of nanopb into a directory, for its faster build (PB_BUFFER_ONLY), and
# prints where they are. Changes nothing of the system: apt gets lists of its own below the directory.
#
#     bench/nanopb_source.sh DIR
set -euo pipefail

[ $# -eq 1 ] || {
    sed -n '2,6s/^# \{0,1\}//p' "$0" >&2
    exit 2
}
mkdir -p "$1"
cd "$1"

if ! compgen -G 'nanopb-*/pb_decode.c' >/dev/null; then
    . /etc/os-release
    mkdir -p lists/partial cache/archives/partial
    printf 'deb-src http://deb.debian.org/debian %s main\n' "$VERSION_CODENAME" >sources.list
    own_lists=(-o "Dir::Etc::SourceList=$PWD/sources.list" -o Dir::Etc::SourceParts=-
        -o "Dir::State::Lists=$PWD/lists" -o "Dir::Cache=$PWD/cache" -o APT::Sandbox::User=)
    apt-get "${own_lists[@]}" -qq update >&2
    apt-get "${own_lists[@]}" -qq source --download-only nanopb >&2
    tar -xzf nanopb_*.orig.tar.gz
fi
sources=$(compgen -G "$PWD/nanopb-*/pb_decode.c")
dirname "$sources"
