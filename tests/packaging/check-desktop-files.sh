#!/usr/bin/env bash
# `check-desktop-files.sh PACKAGING_BUILD_DIR SOURCE_DIR TARROW APP_ID`: the files the build makes
# for installation. The desktop entry passes desktop-file-validate without a remark and carries
# the five languages; the AppStream file passes `appstreamcli validate`, also with the web links
# and screenshots a release build names; the man page formats without a warning and lists every
# command `tarrow help` prints; the icon is there in each hicolor size.
set -euo pipefail
build=$1 source_dir=$2 tarrow=$3 app_id=$4
failures=0
fail() {
    echo "FAIL: $*" >&2
    failures=$((failures + 1))
}

entry="$build/$app_id.desktop"
remarks=$(desktop-file-validate "$entry" 2>&1) || fail "desktop-file-validate failed"
[[ -z $remarks ]] && echo "desktop-file-validate: no remarks" || fail "desktop-file-validate: $remarks"
for key in GenericName Comment Keywords; do
    for language in tr de es fr; do
        grep -q "^$key\[$language\]=." "$entry" || fail "$entry has no $key[$language]"
    done
done
grep -qx "MimeType=x-scheme-handler/tarrow;" "$entry" || fail "$entry does not handle tarrow: links"
grep -qx "Icon=$app_id" "$entry" || fail "$entry does not name the icon $app_id"

work=$(mktemp -d "${TMPDIR:-/tmp}/tarrow-desktop-files.XXXXXX")
trap 'rm -rf "$work"' EXIT
# As built, and as a release names its web page, bug tracker and screenshots.
cmake -DTEMPLATE="$source_dir/packaging/tarrow.metainfo.xml.in" -DOUTPUT="$work/$app_id.metainfo.xml" \
    -DTABLES="$source_dir/src/core/l10n/tables" -DTARROW_APP_ID="$app_id" -DTARROW_VERSION=1.0.0 \
    -DTARROW_RELEASE_DATE=2026-01-01 -DTARROW_HOMEPAGE_URL=https://tarrow.example.org \
    -DTARROW_BUGTRACKER_URL=https://tarrow.example.org/issues \
    -DTARROW_SCREENSHOTS_URL=https://tarrow.example.org/screenshots \
    -P "$source_dir/packaging/AppStream.cmake" || fail "AppStream.cmake failed"
grep -q "<screenshot type=\"default\">" "$work/$app_id.metainfo.xml" || fail "no screenshots with a web folder"
for shot in $(grep -o 'screenshots/[^<]*' "$work/$app_id.metainfo.xml" | cut -d/ -f2); do
    [[ -f "$source_dir/docs/screenshots/$shot" ]] || fail "the AppStream file shows $shot, not in docs/screenshots"
done
for metainfo in "$build/$app_id.metainfo.xml" "$work/$app_id.metainfo.xml"; do
    if report=$(appstreamcli validate --no-net --pedantic "$metainfo" 2>&1); then
        echo "appstreamcli validate $metainfo: passed"
    else
        fail "appstreamcli validate $metainfo: $report"
    fi
done
for language in tr de es fr; do
    grep -q "<summary xml:lang=\"$language\">" "$build/$app_id.metainfo.xml" ||
        fail "the AppStream file has no $language summary"
done

man_page="$build/tarrow.1"
warnings=$(groff -man -Tutf8 -ww -z "$man_page" 2>&1) || fail "groff failed on $man_page"
[[ -z $warnings ]] || fail "groff warns about $man_page: $warnings"
# The page as man shows it, as one line: every usage line of `tarrow help` is in it.
shown=$(groff -man -Tutf8 -P-cbou "$man_page" 2>/dev/null | tr -s ' \n' '  ')
count=0
while IFS= read -r line; do
    usage=$(tr -s ' ' <<<"${line#  }")
    usage=${usage%%  *}
    [[ $shown == *"$usage"* ]] || fail "the man page lacks \"$usage\""
    count=$((count + 1))
done < <("$tarrow" help | grep '^  tarrow ' | sed 's/   */  /')
((count > 10)) || fail "tarrow help printed only $count usage lines"
echo "man page: $count usage lines of tarrow help"

for size in 16 22 24 32 48 64 128 256; do
    [[ -s "$build/icons/${size}x${size}/apps/$app_id.png" ]] || fail "no icon at $size px"
done

((failures == 0)) || exit 1
echo PASS
