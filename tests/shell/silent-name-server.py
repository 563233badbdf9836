# Run by tst_QuitWhileLoading under "unshare -mn": a machine whose name server takes every question and answers none. The
# host in the arguments is told to quit once it has asked; its exit status is this program's.
import fcntl, os, socket, struct, subprocess, sys, tempfile

SIOCSIFFLAGS, IFF_UP = 0x8914, 0x1


def bring_up_loopback():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as s:
        fcntl.ioctl(s, SIOCSIFFLAGS, struct.pack("16sh14x", b"lo", IFF_UP))


def replace(path, text):
    with tempfile.NamedTemporaryFile("w", delete=False) as file:
        file.write(text)
    subprocess.run(["mount", "--bind", file.name, os.path.realpath(path)], check=True)
    os.unlink(file.name)


bring_up_loopback()
subprocess.run(["mount", "--make-rprivate", "/"], check=True)
replace("/etc/resolv.conf", "nameserver 127.0.0.1\noptions timeout:30 attempts:5\n")
replace("/etc/nsswitch.conf", "hosts: files dns\n")
server = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
server.bind(("127.0.0.1", 53))
host = subprocess.Popen(sys.argv[1:], stdin=subprocess.PIPE)
while b"support" not in server.recv(512):
    pass
host.stdin.write(b"quit\n")
host.stdin.close()
try:
    sys.exit(host.wait(20))
except subprocess.TimeoutExpired:
    host.kill()
    sys.exit("The host is still there")
