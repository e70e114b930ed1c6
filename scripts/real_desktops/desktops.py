"""The desktops that scripts/real_desktop knows: what each needs installed and how its session starts."""

import os
import subprocess
from dataclasses import dataclass
from pathlib import Path

from .gnome_session import GnomeSession
from .menus import PopupMenu, ShellMenu
from .x11_session import BudgieSession, CinnamonSession, MateSession, Plasma6Session, PlasmaSession, PlasmaWaylandSession

# The packages that the walk itself needs; a fresh Debian has none of them.
TOOLS = ["dbus", "xvfb", "xdotool", "x11-utils", "imagemagick", "libglib2.0-bin", "xclip", "python3", "python3-gi",
         "gir1.2-gtk-3.0", "at-spi2-core", "gir1.2-atspi-2.0", "adwaita-icon-theme", "librsvg2-common", "fonts-dejavu-core",
         "shared-mime-info", "dconf-gsettings-backend"]


# The packages that Quillbox needs; a fresh Debian has none of them.
LIBRARIES = ["libqt6widgets6", "libqt6dbus6", "libqt6svg6", "qt6-svg-plugins", "qt6-wayland", "qt6-qpa-plugins", "fonts-symbola",
             "libpugixml1v5", "libsqlite3-0", "libxcb1"]


@dataclass
class RealDesktop:
    title: str
    debian: int
    packages: list
    session: type
    # The class that reads the menu; None if the host does not tell its rows, and only the short walk can be taken.
    menu: type | None
    # Commands that an administrator would have run before a user logs in.
    as_root: tuple = ()

    def lower(self):
        """Returns the system below: this machine's if it has this version of Debian, otherwise a fresh one, which is
        made if needed."""
        if f'VERSION_ID="{self.debian}"' in Path("/etc/os-release").read_text():
            return "/"
        scripts = Path(__file__).resolve().parents[1]
        base = Path(os.environ.get("QUILLBOX_ROOTS") or scripts.parent / "build/roots") / f"base-{self.debian}"
        if not base.exists():
            subprocess.run([scripts / "fresh_root", str(self.debian), "true"], check=True, stdin=subprocess.DEVNULL)
        return str(base)


DESKTOPS = {
    "gnome43": RealDesktop(
        "GNOME 43", 12, ["gnome-shell", "gnome-shell-extension-appindicator", "nautilus", "xwayland",
                         "xdg-desktop-portal-gnome", "python3-dbusmock", *TOOLS],
        GnomeSession, ShellMenu,
        as_root=("setsid /usr/bin/python3 -m dbusmock --system --template logind >/run/logind.log 2>&1 &",)),
    "gnome48": RealDesktop(
        "GNOME 48", 13, ["gnome-shell", "gnome-shell-extension-appindicator", "nautilus", "xwayland",
                         "gnome-shell-extension-prefs", *TOOLS, *LIBRARIES],
        GnomeSession, ShellMenu),
    "mate": RealDesktop(
        "MATE 1.26", 12, ["mate-panel", "marco", "mate-session-manager", "mate-settings-daemon", "mate-desktop", "caja",
                          *TOOLS],
        MateSession, PopupMenu),
    "cinnamon": RealDesktop(
        "Cinnamon 5.6", 12, ["cinnamon", "xapp-sn-watcher", "nemo", *TOOLS], CinnamonSession, PopupMenu),
    "budgie": RealDesktop("Budgie 10.7", 12, ["budgie-core", "gir1.2-peas-1.0", "nautilus", *TOOLS], BudgieSession, PopupMenu),
    "plasma5": RealDesktop(
        "Plasma 5.27, X11", 12, ["plasma-desktop", "plasma-workspace", "kwin-x11", "dolphin", "breeze-icon-theme",
                                 "plasma-integration", "kde-cli-tools", "dbus-x11", *TOOLS],
        PlasmaSession, PopupMenu),
    "plasma5wayland": RealDesktop(
        "Plasma 5.27, Wayland", 12, ["plasma-desktop", "plasma-workspace", "kwin-x11", "kwin-wayland",
                                     "plasma-workspace-wayland", "dolphin", "breeze-icon-theme", "plasma-integration",
                                     "kde-cli-tools", "dbus-x11", *TOOLS],
        PlasmaWaylandSession, None,
        # Capabilities that this process has not would keep the program from starting.
        as_root=("setcap -r /usr/bin/kwin_wayland || true",
                 "getcap -r /usr/lib /usr/bin | grep -iE 'kde|kf5|kwin|plasma' | cut -d' ' -f1 | xargs -r -n1 setcap -r")),
    "plasma6": RealDesktop(
        "Plasma 6.3, X11", 13, ["plasma-desktop", "plasma-workspace", "kwin-x11", "plasma-session-x11", "dolphin",
                                "breeze-icon-theme", "plasma-integration", "kde-cli-tools", "dbus-x11", *TOOLS,
                                *LIBRARIES],
        Plasma6Session, PopupMenu),
}

PASSED_BY_EVERY_CHANGE = ["gnome43", "mate"]
