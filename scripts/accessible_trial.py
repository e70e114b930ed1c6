"""Quillbox's preferences window as a screen reader and an on-screen keyboard use it: its tree is read, and rows,
buttons and fields are used through the accessibility bus alone."""

import warnings

from preferences_trial import FIRST, PICKED, expect, stored_items
from preferences_user import PANEL
from running_quillbox import record, write_settings
from virtual_desktop import DesktopError, wait_for

LIST, SUGGESTIONS = "Your Quillbox", "Suggested Menu Items"
REST = [f"Row {number}" for number in range(6, 11)]


class Reader:
    def __init__(self):
        # It connects to the bus of the environment as soon as it is loaded.
        import gi
        warnings.simplefilter("ignore", DeprecationWarning)
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi
        self.atspi = Atspi

    def children(self, node):
        node.clear_cache()
        return [node.get_child_at_index(i) for i in range(node.get_child_count())]

    def all(self, node):
        """The node and everything below it, in the tree's order."""
        yield node
        for child in self.children(node):
            if child:
                yield from self.all(child)

    def windows(self):
        for application in self.children(self.atspi.get_desktop(0)):
            if application and "uillbox" in application.get_name():
                return [child for child in self.children(application) if child and child.get_child_count()]
        return []

    @staticmethod
    def role(node):
        """The role's name; newer libraries call a push button only a button."""
        name = node.get_role_name()
        return "push button" if name == "button" else name

    def find(self, role, name):
        return next((node for window in self.windows() for node in self.all(window)
                     if self.role(node) == role and node.get_name() == name), None)

    def wait_for(self, role, name):
        return wait_for(f"{role} \"{name}\"", lambda: self.find(role, name), 10)

    def actions(self, node):
        return [self.atspi.Action.get_action_name(node, i) for i in range(self.atspi.Action.get_n_actions(node))]

    def act(self, node, name):
        actions = self.actions(node)
        if name not in actions:
            raise DesktopError(f"\"{node.get_name()}\" has no action \"{name}\", only {actions}")
        self.atspi.Action.do_action(node, actions.index(name))

    def put_text(self, field, text):
        self.atspi.EditableText.set_text_contents(field, text)

    def is_modal(self, node):
        node.clear_cache()
        return node.get_state_set().contains(self.atspi.StateType.MODAL)


class AccessibleTrial:
    """`user` has started Quillbox with the settings that prepare() has written."""

    def __init__(self, user, settings):
        self.user, self.settings, self.reader = user, settings, Reader()

    @staticmethod
    def prepare(desktop):
        """Makes the settings and the files, and has Quillbox be open to assistive technology. Returns the path of the
        settings."""
        desktop.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        desktop.start_accessibility()
        (desktop.home / PICKED).mkdir(exist_ok=True)
        return write_settings(desktop, [record("plaintext", "One"), record("separator"), record("plaintext", "Two"),
                                        record("recentItems", "Recent Items"),
                                        *(record("plaintext", title) for title in REST)])

    def all(self):
        self.user.open()
        self.order()
        self.rows_are_used()
        self.sheet()
        self.panel()
        self.reset()

    def rows(self):
        return [row.get_name() for row in self.reader.children(self.reader.wait_for("list", LIST))]

    def expect_rows(self, titles):
        """Expects these rows of assistive technology, and as many on the screen."""
        wait_for(f"the rows {titles}", lambda: self.rows() == titles)
        expect(f"rows: {', '.join(titles)}", len(self.user.rows()), len(titles))

    def act(self, role, name, action):
        self.reader.act(self.reader.wait_for(role, name), action)

    def add(self, suggestion):
        self.reader.act(next(item for item in self.reader.children(self.reader.wait_for("list", SUGGESTIONS))
                             if item.get_name() == suggestion), "Add")

    def order(self):
        reader, list_ = self.reader, ("list", LIST)
        seen = [(reader.role(node), node.get_name()) for node in reader.all(reader.windows()[0])]
        order = [list_, ("list", SUGGESTIONS), *(("push button", name) for name in ("Reset", "Cancel", "Apply"))]
        expect("the tree's order is the eye's", [one for one in seen if one in order], order)
        expect("the heading comes before its list", seen.index(("label", LIST)) < seen.index(list_), True)
        expect("rows and separators have names", self.rows(), [FIRST, "One", "Separator", "Two", "Recent Items", *REST])

    def rows_are_used(self):
        self.act("list item", "Two", "Move up")
        self.expect_rows([FIRST, "One", "Two", "Separator", "Recent Items", *REST])
        self.act("list item", "One", "Remove")
        self.expect_rows([FIRST, "Two", "Separator", "Recent Items", *REST])
        self.act("list item", "Two", "Press")
        self.add("Plain Text")
        self.expect_rows([FIRST, "Two", "Plain Text", "Separator", "Recent Items", *REST])
        expect("what was done is announced", self.reader.wait_for("list", SUGGESTIONS).get_description(), "Added")

    def sheet(self):
        reader, user = self.reader, self.user
        self.act("list item", "Two", "Settings")
        user.wait_for_windows(2)
        sheet = next(window for node in reader.windows() for window in reader.all(node)
                     if window.get_role_name() == "dialog")
        expect("the sheet is modal", reader.is_modal(sheet), True)
        self.expect_held("a sheet")
        reader.put_text(reader.wait_for("text", "Display Name"), "Put there")
        self.act("push button", "Use this Setting", "Press")
        user.wait_for_sheet_to_end()
        self.expect_rows([FIRST, "Put there", "Plain Text", "Separator", "Recent Items", *REST])
        self.act("list item", "Recent Items", "Settings")
        user.wait_for_windows(2)
        reader.wait_for("combo box", "Number of Recent Items to Display:")
        print("  the pop-up has its label as its name", flush=True)
        self.act("push button", "Use this Setting", "Press")
        user.wait_for_sheet_to_end()

    def panel(self):
        self.add("[Any File/Directory]")
        wait_for("the panel", lambda: self.user.desktop.windows_titled(PANEL))
        self.user.picture("panel by assistive technology")
        self.expect_held("the panel")
        self.reader.put_text(self.reader.wait_for("text", "Path"), str(self.user.desktop.home / PICKED))
        self.act("push button", "Add This Item", "Press")
        wait_for("the panel to close", lambda: not self.user.desktop.windows_titled(PANEL))
        self.expect_rows([FIRST, "Put there", "Plain Text", PICKED, "Separator", "Recent Items", *REST])

    def expect_held(self, by):
        """Expects that the window below does nothing."""
        before = self.rows()
        for button in ("Apply", "Reset"):
            self.act("push button", button, "Press")
        expect(f"no press reaches the window below {by}", self.rows(), before)

    def reset(self):
        """Applies, and applies again after Reset, which leaves fewer rows: what is shown is what is stored."""
        for is_reset in (False, True):
            if is_reset:
                self.user.open()
                self.act("push button", "Reset", "Press")
                self.expect_rows([FIRST, "Separator", "System Settings", "Separator", "Applications"])
            shown = self.rows()
            self.act("push button", "Apply", "Press")
            self.user.wait_until_closed()
            stored = ["Separator" if item["menuItemType"] == "separator" else item["displayString"]
                      for item in stored_items(self.settings)]
            expect(f"shown was what is stored: {', '.join(stored)}", shown, stored)
