"""The trials of the preferences window on a real desktop, each with a Quillbox and settings of its own."""

from accessible_trial import AccessibleTrial
from menu_world import same_titles
from preferences_trial import FIRST, PreferencesTrial
from preferences_user import WINDOW, PreferencesUser
from virtual_desktop import DesktopError

# What the table calls them, and how each is done.
TRIALS = {
    "window by keys": (PreferencesTrial, PreferencesTrial.by_keys),
    "other programs' drags": (PreferencesTrial, PreferencesTrial.with_other_programs),
    "window by pointer": (PreferencesTrial, PreferencesTrial.by_pointer),
    "window by assistive technology": (AccessibleTrial, AccessibleTrial.all),
}


class UserOfDesktop(PreferencesUser):
    """`menu_class` is the class that opens and reads the menu on this desktop."""

    def __init__(self, desktop, program, directory, menu_class):
        desktop.before_icon()
        super().__init__(desktop, program, directory)
        self.menu = menu_class(desktop, self)

    def choose_preferences(self):
        self.menu.open()
        self.menu.choose(FIRST)

    def wait_until_placed(self):
        super().wait_until_placed()
        # Other programs' windows are at the left edge, and drags begin where they would cover this one.
        self.desktop.put_window(WINDOW, 420, 60)

    def expect_menu(self, titles):
        seen = self.menu.open()
        self.picture("menu")
        self.menu.close()
        if not same_titles(seen, titles):
            raise DesktopError(f"the menu: wanted {titles}, saw {seen}")

    def end(self):
        self.process.terminate()
        self.process.wait(10)


def try_window(feature, desktop, program, directory, menu_class):
    trial, steps = TRIALS[feature]
    directory.mkdir()
    settings = trial.prepare(desktop)
    user = UserOfDesktop(desktop, program, directory, menu_class)
    try:
        steps(trial(user, settings))
    except (DesktopError, OSError):
        user.picture("failed")
        raise
    finally:
        user.end()
