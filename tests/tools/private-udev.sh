# Run by tst_GridRule under "unshare -mn": a udev daemon of its own that sees the pseudo-terminal $1 as /dev/ttyS0, a
# serial device of the serial number $2, with the rules in the folder $3; and the host $4 beside it. Each line of input
# is a uevent of that device ("add", "remove"), or "tell", which prints what udev knows of it and its speed.
set -eu
mount --make-rprivate /
mount -t tmpfs none /run
mkdir -p /run/rules /run/pts /run/nodes /run/bin /run/udev/rules.d
cp "$3"/*.rules /run/udev/rules.d
mount --rbind /dev/pts /run/pts
cp -a /dev/null /dev/zero /dev/urandom /dev/tty /run/nodes
mount -t tmpfs none /dev
cp -a /run/nodes/* /dev
mknod /dev/ttyS0 c 4 64
mount --bind "/run/pts/$(basename "$1")" /dev/ttyS0
echo "SUBSYSTEM==\"tty\", KERNEL==\"ttyS0\", ENV{ID_SERIAL_SHORT}=\"$2\"" > /run/udev/rules.d/65-serial.rules

cp "$(readlink -f "$(command -v udevadm)")" /run/bin/systemd-udevd
/run/bin/systemd-udevd < /dev/null >&2 &
daemon=$!
trap 'kill $daemon; wait $daemon' EXIT
for i in $(seq 100); do
    [ ! -e /run/udev/control ] || break
    sleep 0.1
done

mkfifo /run/host-input
"$4" < /run/host-input &
exec 3> /run/host-input # the host ends when this is closed
while read -r action; do
    case $action in
    tell)
        udevadm info --query=property --path=/sys/class/tty/ttyS0
        echo "SPEED=$(stty -F /dev/ttyS0 speed)"
        ;;
    *) echo "$action" > /sys/class/tty/ttyS0/uevent ;;
    esac
done
exec 3>&-
wait %2
