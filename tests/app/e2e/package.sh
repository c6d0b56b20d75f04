# Scenario of run-e2e.sh: the Debian packages of this build (TARROW_BUILD_DIR), made with CPack,
# installed with dpkg into a private root (its own package database, so the machine's is left
# alone) and used from there: `tarrow --version` and `tarrow help`, desktop-file-validate and
# appstreamcli on the installed files, and on Xvfb, `xdg-open tarrow://` through the installed
# desktop entry reaching the installed binary. Also asks apt whether the declared dependencies
# can be met on this system.
build=${TARROW_BUILD_DIR:?TARROW_BUILD_DIR names the build folder}
app_id=org.tarrow.Tarrow
debs="$world/debs"
(cd "$build" && cpack -G DEB -B "$debs" >"$out/cpack.log" 2>&1) || fail "cpack failed: $(tail -n 20 "$out/cpack.log")"
main_deb=$(compgen -G "$debs/tarrow_*.deb" | head -n1)
[[ -n $main_deb ]] || fail "cpack made no tarrow package: $(ls "$debs")"
echo "Packages: $(cd "$debs" && ls -- *.deb | tr '\n' ' ')"

# What the package declares and holds.
depends=$(dpkg-deb -f "$main_deb" Depends)
for needed in libqt6quick6 libqt6dbus6 libical3 qml6-module-qtquick-controls; do
    [[ $depends == *"$needed"* ]] || fail "the package does not depend on $needed: $depends"
done
contents=$(dpkg-deb -c "$main_deb")
for path in /usr/bin/tarrow "/usr/share/applications/$app_id.desktop" \
    "/usr/share/metainfo/$app_id.metainfo.xml" "/usr/share/icons/hicolor/scalable/apps/$app_id.svg" \
    "/usr/share/icons/hicolor/48x48/apps/$app_id.png" /usr/share/man/man1/tarrow.1 \
    /usr/share/doc/tarrow/copyright; do
    grep -q " \.$path\$" <<<"$contents" || fail "the package lacks $path"
done
# apt resolves the packages' dependencies against this system, without installing anything.
apt-get install --simulate --no-install-recommends "$debs"/*.deb >"$out/apt-simulate.log" 2>&1 ||
    fail "apt cannot meet the dependencies: $(tail -n 20 "$out/apt-simulate.log")"

# A private root with its own package database.
root="$world/root"
mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates"
touch "$root/var/lib/dpkg/status"
force=(--force-depends --force-script-chrootless)
[[ $(id -u) -eq 0 ]] || force+=(--force-not-root)
dpkg --root="$root" --log=/dev/null "${force[@]}" -i "$debs"/*.deb >"$out/dpkg.log" 2>&1 ||
    fail "dpkg -i failed: $(tail -n 20 "$out/dpkg.log")"
dpkg --root="$root" -s tarrow | grep -q "^Status: install ok installed" || fail "tarrow is not installed"

installed="$root/usr/bin/tarrow"
version=$("$installed" --version) || fail "tarrow --version failed"
[[ $version == "tarrow $(dpkg-deb -f "$main_deb" Version | sed 's/-[^-]*$//')" ]] ||
    fail "tarrow --version says \"$version\""
"$installed" help >"$out/help.txt" || fail "tarrow help failed"
grep -q "^  tarrow add TITLE" "$out/help.txt" || fail "tarrow help lists no commands: $(cat "$out/help.txt")"
desktop-file-validate "$root/usr/share/applications/$app_id.desktop" ||
    fail "the installed desktop entry does not validate"
appstreamcli validate-tree --no-net "$root" >"$out/appstream.log" 2>&1 ||
    fail "appstreamcli validate-tree failed: $(cat "$out/appstream.log")"
echo "Installed: $version; desktop entry and AppStream data valid"

# The installed entry registers the scheme as the dpkg trigger of desktop-file-utils would.
update-desktop-database "$root/usr/share/applications"
export PATH="$root/usr/bin:$PATH" XDG_DATA_DIRS="$root/usr/share:$XDG_DATA_DIRS"
handler=$(xdg-mime query default x-scheme-handler/tarrow)
[[ $handler == "$app_id.desktop" ]] || fail "the handler of tarrow: links is \"$handler\""

start_xvfb
export QT_LOGGING_RULES="PopoverController.debug=true"
tarrow >"$log" 2>&1 &
pids+=($!)
retry 100 gdbus introspect --session --dest "$app_id" --object-path "/${app_id//.//}" ||
    fail "the installed tarrow did not take its name on the bus"
xdg-open tarrow://open || fail "xdg-open tarrow:// failed"
retry 100 grep -q "Opened the popup" "$log" || fail "the popup did not open for tarrow://"
echo "xdg-open tarrow:// opened the installed Tarrow's popup"
echo PASS
