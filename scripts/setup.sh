# Sourced by ./run, ./test, ./bench and .ci/run: installs what is missing, configures and builds.
set -euo pipefail
QW_CALLER=$PWD # where the user stands: what they name is relative to it
QW_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$QW_ROOT"

say() { printf '%s\n' "$*" >&2; }

# help_if_asked DOOR ARGUMENT...: prints the comment at the top of the door and ends.
help_if_asked() {
    local door=${1##*/}
    [ -f "$door" ] || door=scripts/$door
    shift
    case " $* " in
    *" --help "* | *" -h "*) sed -n -e 1d -e '/^#/!q' -e 's/^# \{0,1\}//p' "$door"; exit 0 ;;
    esac
}

# For the user: a path of theirs as it is from anywhere.
absolute() { (cd "$QW_CALLER" && realpath -m -- "$1"); }

wanted_packages() { sed -e 's/#.*//' -e '/^[[:space:]]*$/d' scripts/packages; }

missing_packages() {
    comm -23 <(wanted_packages | sort) \
        <(dpkg-query -W -f '${db:Status-Status} ${Package}\n' $(wanted_packages) 2>/dev/null | sed -n 's/^installed //p' | sort -u)
}

# As root or with sudo the packages are installed; otherwise the one command for it is printed.
install_packages() {
    local missing install
    missing=$(missing_packages | tr '\n' ' ')
    [ -n "${missing// /}" ] || return 0
    install="apt-get install -y --no-install-recommends $missing"
    if [ "$(id -u)" = 0 ]; then
        run_install "" "$install"
    elif command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
        run_install sudo "$install"
    else
        say "Some packages are missing. Install them with:"
        say "  $(by_hand "$install")"
        exit 1
    fi
}

# The one command that the user types.
by_hand() {
    if command -v sudo >/dev/null; then
        printf '%s' "sudo apt-get update && sudo $1"
    else
        printf '%s' "su -c 'apt-get update && $1'"
    fi
}

run_install() {
    local log
    log=$(mktemp -t qw-packages.XXXXXX)
    say "Installing packages: ${2#*recommends }"
    # First what an installation that was interrupted has left behind.
    if ! { $1 dpkg --configure -a && $1 apt-get update && $1 env DEBIAN_FRONTEND=noninteractive $2; } >"$log" 2>&1 </dev/null; then
        tail -20 "$log" >&2
        say "The packages could not be installed (whole log: $log). By hand:"
        say "  $(by_hand "$2")"
        exit 1
    fi
    rm -f "$log"
}

# build_preset PRESET [TARGET...]: configures when needed and builds, quietly unless something fails.
build_preset() {
    local preset=$1 folder=build/$1
    shift
    mkdir -p "$folder"
    if [ ! -f "$folder/build.ninja" ]; then
        say "Configuring ($preset) …"
        quietly "$folder/configure.log" cmake --preset "$preset"
    fi
    if ! ninja -C "$folder" -n "$@" 2>/dev/null | grep -q 'no work to do'; then
        say "Building ($preset) …"
    fi
    quietly "$folder/build.log" counting ninja -C "$folder" "$@"
}

# Runs a build and tells how far it is.
counting() { "$@" | telling; }

# Passes the lines of a build on and tells the last step: each one on a terminal, one a minute elsewhere.
telling() {
    local line='' step='' got=0 next=$((SECONDS + ${QW_TELL_EVERY:-60}))
    while true; do
        got=0
        IFS= read -r -t 1 line || got=$?
        [ "$got" -le 128 ] || line='' # nothing came for a second
        [ -z "$line" ] || printf '%s\n' "$line"
        [ "$got" != 1 ] || break
        [[ $line != \[*/*\]* ]] || step=$line
        if [ -t 3 ]; then
            [ -z "$line" ] || printf '\r\033[K  %.76s' "$step" >&3
        elif [ "$SECONDS" -ge "$next" ]; then
            printf '  %s\n' "$step" >&3
            next=$((SECONDS + ${QW_TELL_EVERY:-60}))
        fi
    done
    [ ! -t 3 ] || printf '\r\033[K' >&3
}

# duration SECONDS: for people.
duration() {
    if [ "$1" -lt 60 ]; then printf '%d s' "$1"; else printf '%d min %d s' $(($1 / 60)) $(($1 % 60)); fi
}

# slowest_tests LOG: the ten that took longest in CTest's LastTest.log.
slowest_tests() {
    awk '/^[0-9]+\/[0-9]+ Testing: / { name = $3 } /^Test time = / { printf "%8.1f s  %s\n", $4, name }' "$1" |
        sort -rn | head -10
}

quietly() {
    local log=$1
    shift
    "$@" 3>&2 >"$log" 2>&1 </dev/null || { tail -60 "$log" >&2; say "That failed. The whole log: $QW_ROOT/$log"; exit 1; }
}

has_display() { [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; }

# What a program needs where there is no display, or where root runs it.
headless_environment() {
    has_display || export QT_QPA_PLATFORM=offscreen
    # The browser engine tells at length that it paints without a graphics card.
    has_display || export QT_LOGGING_RULES="qt.webenginecontext*=false;${QT_LOGGING_RULES:-}" QTWEBENGINE_CHROMIUM_FLAGS="--log-level=3"
    [ "$(id -u)" != 0 ] || export QTWEBENGINE_DISABLE_SANDBOX=1
}
