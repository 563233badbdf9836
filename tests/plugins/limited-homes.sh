# Run by tst_PluginScans under "unshare -m": scans with the host $1 from homes on small disks of their own, below the
# folder $2. "--" and a word precede what each scan prints.
set -eu
scan() {
    echo "-- $1"
    HOME=$2 "$host" || echo "the host ended with $?"
}
host=$1 full=$2/full fixed=$2/fixed
mkdir -p "$full" "$fixed"

mount -t tmpfs -o size=512k none "$full"
head -c 1m /dev/zero >"$full/ballast" 2>/dev/null || true
scan full "$full"
rm "$full/ballast"
scan room "$full"
head -c 1m /dev/zero >"$full/ballast" 2>/dev/null || true
scan known "$full"

mount -t tmpfs -o size=4m none "$fixed"
mount -o remount,ro "$fixed"
scan fixed "$fixed"
mount -o remount,rw "$fixed"
scan writable "$fixed"
