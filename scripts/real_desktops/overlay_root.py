"""A separate root directory for trying a desktop: an overlay over a Debian system, in separate namespaces, in which
packages are installed without changing the system below. Everything that runs there ends with the process that
entered it."""

import ctypes
import os
import pwd
import shutil
import subprocess
from pathlib import Path

USER, USER_ID = "tester", 4711
CLONE_NEWNET = 0x40000000


class PackagesMissing(Exception):
    """The packages could not be installed: the archive can't be reached, or does not have them."""


def run(*command, **options):
    subprocess.run([str(part) for part in command], check=True, stdin=subprocess.DEVNULL, **options)


def enter(lower, scratch, archives, shared):
    """Makes an overlay over `lower` the root of this process, which is the first of namespaces made by unshare(1).
    `scratch` gets what is changed, `archives` what is downloaded; the directories `shared` are the same as outside."""
    upper, work, merged = (Path(scratch, name) for name in ("upper", "work", "merged"))
    for directory in (upper, work, merged, Path(archives, "partial")):
        directory.mkdir(parents=True, exist_ok=True)
    run("mount", "--make-rprivate", "/")
    run("mount", "-t", "overlay", "overlay", "-o", f"lowerdir={lower},upperdir={upper},workdir={work}", merged)
    for kind, place, *options in (("proc", "proc"), ("tmpfs", "run"), ("tmpfs", "tmp", "-o", "mode=1777")):
        run("mount", "-t", kind, *options, kind, merged / place)
    for directory in (*shared, archives):
        inside = merged / ("var/cache/apt/archives" if directory == archives else Path(directory).relative_to("/"))
        inside.mkdir(parents=True, exist_ok=True)
        run("mount", "--rbind", directory, inside)
    for directory in ("sys", "dev"):
        run("mount", "--rbind", f"/{directory}", merged / directory)
    # A package that changes a setting there would change it for the whole machine.
    run("mount", "--bind", merged / "proc/sys", merged / "proc/sys")
    run("mount", "-o", "remount,bind,ro", merged / "proc/sys")
    for name in ("etc/resolv.conf", "etc/hosts"):
        if lower != "/":
            shutil.copyfile(Path("/", name), merged / name)
    os.chdir(merged)
    run("pivot_root", ".", "mnt")
    os.chdir("/")
    run("umount", "-l", "/mnt")
    for directory in ("/run/lock", "/run/user", "/run/dbus", "/tmp/.X11-unix", "/tmp/.ICE-unix"):
        Path(directory).mkdir(parents=True, exist_ok=True)
    for directory in ("/tmp/.X11-unix", "/tmp/.ICE-unix"):
        os.chmod(directory, 0o1777)


def install(packages, log):
    """Installs Debian packages, unless that was done here. Raises PackagesMissing if they can't be downloaded."""
    done = Path("/installed-for-the-walk")
    if done.exists() and done.read_text() == " ".join(packages):
        return
    os.environ["DEBIAN_FRONTEND"] = "noninteractive"
    # Installing a package must not start a service.
    policy = Path("/usr/sbin/policy-rc.d")
    policy.write_text("#!/bin/sh\nexit 101\n")
    policy.chmod(0o755)
    get = ["apt-get", "-q", "-y", "--no-install-recommends", "-o", "Acquire::Retries=3"]
    with open(log, "wb") as out:
        def apt(*arguments):
            return subprocess.run([*get, *arguments], stdin=subprocess.DEVNULL, stdout=out, stderr=out).returncode
        apt("update")  # If this fails, the present lists may be enough.
        if apt("install", "--download-only", *packages):
            raise PackagesMissing(f"can't download {' '.join(packages)}; see {log}")
        if apt("install", *packages):
            raise OSError(f"the packages could not be installed; see {log}")
    done.write_text(" ".join(packages))


def add_user():
    """Adds the ordinary user whose desktop it is."""
    try:
        pwd.getpwnam(USER)
    except KeyError:
        run("useradd", "--uid", USER_ID, "--create-home", "--shell", "/bin/bash", USER)


def start_system_bus():
    if not Path("/run/dbus/system_bus_socket").exists():
        run("dbus-daemon", "--system", "--fork")


def run_as_user(command):
    """Runs the command as the ordinary user, without a network and without the abstract sockets of other programs on
    this machine. Returns its exit code. Other processes that end here in the meantime are reaped."""
    child = os.fork()
    if not child:
        try:
            if ctypes.CDLL(None, use_errno=True).unshare(CLONE_NEWNET):
                raise OSError(ctypes.get_errno(), "no network namespace")
            os.setgroups([])
            os.setgid(USER_ID)
            os.setuid(USER_ID)
            os.execv(command[0], command)
        except OSError as error:
            print(f"  {error}", flush=True)
        finally:
            os._exit(1)
    while True:
        pid, status = os.wait()
        if pid == child:
            return os.waitstatus_to_exitcode(status)
