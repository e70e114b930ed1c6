"""Writes and reads settings files with Python's own property lists, independently of the program."""

import datetime
import plistlib
import sys

KINDS = [
    "fixedAppPreferences", "separator", "systemSettings", "systemApplicationsDirectory", "plaintext", "arbitraryPath",
    "recentItems", "recentItemsApps", "recentItemsDocs", "userHomeDirectory", "userDesktopDirectory",
    "userDocumentsDirectory", "userDownloadsDirectory", "other",
]


def record(kind, number):
    return {
        "menuItemType": kind, "displayString": f"{kind} \u00e9\U0001F600", "unixPath": f"/none/{number}",
        "bookmarkData": b"", "optionFlags": 2 ** 63 + number,
        "noRecentItemsOlderThan": datetime.datetime(2100 if number % 2 else 1, 2, 3, 4, 5, 6),
        "maxNumberOfRecentItems": -number,
    }


def old_record(kind, number):
    current = record(kind, number)
    del current["optionFlags"]
    return current | {"showHiddenFiles": True, "showPathAsTooltip": False, "showAsEnabled": False}


def write(path, version):
    make = old_record if version == 1 else record
    records = plistlib.dumps([make(kind, number) for number, kind in enumerate(KINDS)], fmt=plistlib.FMT_BINARY)
    values = {"UserPickedMenuItems": records, "MenuSaveVersion": version, "ShowDebugTab": True, "saveVersion": 1}
    with open(path, "wb") as file:
        plistlib.dump(values, file, fmt=plistlib.FMT_BINARY)


def read(path):
    with open(path, "rb") as file:
        values = plistlib.load(file)
    print(sorted((key, type(value).__name__) for key, value in values.items() if key != "UserPickedMenuItems"))
    for entry in plistlib.loads(values["UserPickedMenuItems"]):
        print([(key, type(value).__name__) for key, value in sorted(entry.items())] == [
            ("bookmarkData", "bytes"), ("displayString", "str"), ("maxNumberOfRecentItems", "int"),
            ("menuItemType", "str"), ("noRecentItemsOlderThan", "datetime"), ("optionFlags", "int"),
            ("unixPath", "str")],
            entry["menuItemType"], entry["optionFlags"], entry["maxNumberOfRecentItems"],
            entry["noRecentItemsOlderThan"], ascii(entry["displayString"]))


if __name__ == "__main__":
    write(sys.argv[2], int(sys.argv[3])) if sys.argv[1] == "write" else read(sys.argv[2])
