# Debian packages that the project needs, and their installation. Sourced by run and check.

BUILD_PACKAGES="g++ cmake ninja-build libforms-dev freeglut3-dev libglu1-mesa-dev libgl1-mesa-dri libx11-dev libxpm-dev libegl-dev libpng-dev libmpfr-dev librandom123-dev libhdf5-dev libtomlplusplus-dev libcli11-dev nlohmann-json3-dev x11-utils dpkg-dev file"
DISPLAY_PACKAGES="xvfb x11-apps netpbm xdotool"
ENSEMBLE_PACKAGES="snakemake python3-yaml python3-pandas python3-tables python3-h5py python3-matplotlib"
CLUSTER_PACKAGES="slurm-wlm munge"
MACHINE_PACKAGES="clang-14 g++-aarch64-linux-gnu qemu-user"
CHECK_PACKAGES="libgtest-dev libbenchmark-dev libasan8 libubsan1 libtsan2 openbox admesh clang-format-14 clang-tidy-14 povray openscenegraph prusa-slicer python3-ezdxf python3-vtk9 python3-meshio python3-h5py python3-matplotlib python3-pil lintian desktop-file-utils appstream man-db"

# Installs those of the given packages that are missing: as root or through sudo. Where neither works, prints the one
# line to run and ends the script.
install_missing() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing: ${missing[*]}"
    local install="apt-get update && apt-get install -y --no-install-recommends ${missing[*]}"
    if [ "$(id -u)" -eq 0 ]; then
        DEBIAN_FRONTEND=noninteractive sh -c "$install" >&2
    elif command -v sudo >/dev/null && sudo -v; then
        sudo DEBIAN_FRONTEND=noninteractive sh -c "$install" >&2
    else
        echo "These packages are missing and cannot be installed from here. Run as root:" >&2
        echo "    $install" >&2
        exit 1
    fi
}

# Starts a virtual display, sets DISPLAY to it, and stops it when the script ends.
start_virtual_display() {
    local number
    number=$(mktemp)
    # Without resets: while one runs, after the last client has left, new clients are turned away.
    Xvfb -displayfd 3 -screen 0 1600x1200x24 -nolisten tcp -noreset 3>"$number" >/dev/null 2>&1 &
    virtual_display=$!
    trap 'kill "$virtual_display" 2>/dev/null || true' EXIT
    for _ in $(seq 100); do
        [ -s "$number" ] && break
        sleep 0.1
    done
    DISPLAY=:$(cat "$number")
    rm -f "$number"
    if [ "$DISPLAY" = ":" ]; then
        echo "The virtual display did not start." >&2
        exit 1
    fi
    export DISPLAY
}
