"""Looks at the running editor as a screen reader does: every control, node and cell has a role and
a name, and Tab reaches every control. Called by scripts/check-accessibility; prints the faults.
"""
import gi
import subprocess
import sys
import time
from collections import Counter
from xml.etree import ElementTree
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib

PROGRAM, SAMPLE = sys.argv[1:]

# What only holds or parts others needs no name, and needs no role while it does no more than that.
# A menu goes by the name of its entry; a label without a text shows nothing.
ROLELESS = {"filler", "unknown", "invalid"}
UNNAMED = ROLELESS | {"panel", "layered pane", "separator", "menu bar", "popup menu", "label"}
WITH_PARTS = {"combo box", "list", "table", "tree"}  # Tab reaches them as a whole
CELLS = {"table cell", "list item"}

# A list is compared with the file cell by cell, so that a cell may be empty where the file has no
# text for it (a comment), and nowhere else.
BRANCH, ITEM = "HOBBY_ROOM", "Light_Workbench"
ITEMS = [[tag.findtext(key) for key in ("name", "comment", "eistype", "address", "accessrights")]
         for tag in ElementTree.parse(SAMPLE).find(f".//{BRANCH}")]
faults = set()

def children(node):
    return [*filter(None, (node.get_child_at_index(i) for i in range(node.get_child_count())))]

def walk(node, whole=()):
    """The node and all below it, but nothing below the roles of `whole`."""
    yield node
    if node.get_role_name() not in whole:
        for child in children(node):
            yield from walk(child, whole)

def has(node, *states):
    held = node.get_state_set()
    return all(held.contains(getattr(Atspi.StateType, state)) for state in states)

def name_of(node):
    if node.get_role_name() != "combo box":
        return node.get_name().strip()
    # Its own name is the text that it shows; its label names it.
    return " ".join(relation.get_target(0).get_name() for relation in node.get_relation_set()
                    if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY)

def told(node):
    return " ".join(f'{node.get_role_name()} "{name_of(node)}" {node.get_description()}'.split())

def until(condition, what):
    end = time.monotonic() + 15
    while not (value := condition()):
        if time.monotonic() > end:
            raise TimeoutError(f"{what} did not come")
        time.sleep(0.02)
    return value

def find(top, role, name, *states):
    whole = () if role in CELLS else WITH_PARTS
    return until(lambda: next((node for node in walk(top, whole) if node.get_name() == name
                               and node.get_role_name().endswith(role)
                               and has(node, "SHOWING", *states)), None), f'{role} "{name}"')

def xdotool(*words):
    subprocess.run(["xdotool", *map(str, words)], check=True)

def click(node, times=1):
    at = node.get_extents(Atspi.CoordType.SCREEN)
    xdotool("mousemove", at.x + at.width // 2, at.y + at.height // 2, "click", "--repeat", times, 1)

def choose(*menu_and_entry):
    for name in menu_and_entry:
        click(find(window, "menu item", name, "ENABLED"))

def pick(view, name, times=1):
    click(find(find(window, "tree", view), "table cell", name), times)
    time.sleep(0.5)  # the next click is no double click

def press(button):
    click(find(children(editor)[-1], "button", button))  # some versions say "push button"

def leave(*keys):
    until(lambda: len(children(editor)) > 1, "dialog")
    xdotool("key", *keys, "Escape")
    until(lambda: len(children(editor)) == 1, "end of the dialog")

TREE, LIST = "Configuration tree", "Contents"
# Every dialog by its title, and how it is opened. The file chooser is not the editor's own.
DIALOGS = [
    ("EDI Global Settings", [(choose, "Objects", "Global Settings")]),
    ("Phisical Group Properties", [(pick, TREE, SAMPLE), (choose, "Objects", "Add Object")]),
    ("Phisical Group Properties", [(pick, TREE, "Cellar_Line", 2)]),
    ("Branch", [(choose, "Objects", "Add Branch")]),
    ("Branch", [(pick, TREE, BRANCH, 2)]),
    ("Group Address Properties", [(choose, "Objects", "Add Item")]),
    ("Group Address Properties", [(choose, "Objects", "Add Item"), (press, "Add Vector....")]),
    ("Group Address Properties", [(pick, LIST, ITEM, 2)]),
    ("Find Item", [(choose, "Tools", "Find")]),
    ("Replace Text", [(pick, LIST, ITEM, 2), (leave, "ctrl+a", "ctrl+c"), (pick, LIST, ITEM),
                      (choose, "Edit", "Paste Item comments from Clipboard")]),
    ("About OPCOlvan", [(choose, "About")]),
]

def check_names(top, where):
    letters = Counter()
    for node in walk(top):
        role, name, parent = node.get_role_name(), name_of(node), node.get_parent()
        action = node.get_action_iface()
        keys = [action.get_key_binding(i) for i in range(action.get_n_actions())] if action else []
        if role in ROLELESS and (role == "invalid" or keys or has(node, "FOCUSABLE")):
            faults.add(f"{where}: {told(node)} has no role")
        # The contents are compared with the file; the list of a combo box goes by the box's name.
        elsewhere = (role in CELLS and parent.get_name() == LIST
                     or role == "list" and parent.get_role_name() == "combo box")
        if not (name or elsewhere or role in UNNAMED):
            faults.add(f"{where}: a {role} below {told(parent)} has no name")
        if role == "table column header" and name.isdigit():
            faults.add(f"{where}: a header of {told(parent)} has only its number for a name")
        if role == "radio button" and not node.get_description():
            faults.add(f"{where}: {told(node)} does not describe what is chosen with it")
        # A menu entry with a shortcut tells that in place of its letter; a combo box tells none.
        menu = told(parent.get_parent()) if role == "menu item" else where
        letters.update((menu, key.upper()) for key in keys if key.startswith("Alt+"))
    faults.update(f"{where}: {key} stands for {times} things in {menu}"
                  for (menu, key), times in letters.items() if times > 1)

def check_keyboard(top, where):
    nodes = [node for node in walk(top, WITH_PARTS) if has(node, "FOCUSABLE", "ENABLED", "SHOWING")]
    faults.update(f"{where}: {times} controls tell no difference: {text}"
                  for text, times in Counter(map(told, nodes)).items() if times > 1)
    def focused():
        time.sleep(0.02)
        return {told(node) for node in nodes if has(node, "FOCUSED")}
    now, reached = until(focused, f"focus in {where}"), set()
    while now - reached:
        reached |= now
        xdotool("key", "Tab")
        now = next((new for _ in range(50) if (new := focused()) and new != now), set())
    # Tab reaches the chosen one of radio buttons, the arrow keys the others.
    faults.update(f"{where}: Tab does not reach {told(node)}" for node in nodes
                  if (node.get_role_name() != "radio button" or has(node, "CHECKED"))
                  and told(node) not in reached)

def check_contents(role, where):
    cells = children(find(window, role, LIST))
    columns = sum(cell.get_role_name() == "table column header" for cell in cells)
    names = [cell.get_name() for cell in cells[columns:] if columns or has(cell, "SHOWING")]
    width = len(ITEMS[0]) if columns else 1  # without a header only the names are in sight
    shown = [names[i:i + width] for i in range(0, len(names), columns or 1)]
    rows = [item[:width] for item in ITEMS]
    faults.update(f"{where}: the {role} tells {told_row} where the file holds {row}"
                  for told_row, row in zip([*shown, None], [*rows, None]) if told_row != row)

def check_everything():
    choose("File", "Open Configuration")
    until(lambda: len(children(editor)) > 1, "file chooser")
    xdotool("type", SAMPLE)
    xdotool("key", "Return")
    pick(TREE, BRANCH)
    for mode in ("Icon", "SmallIcon", "List", "Report"):
        choose("View", mode)
        check_contents("tree" if mode == "Report" else "list", f"View {mode}")
        check_names(window, "Main window")
        check_keyboard(window, f"View {mode}")
    for title, steps in DIALOGS:
        for step, *words in steps:
            step(*words)
        check_names(find(editor, "dialog", title), title)
        check_keyboard(find(editor, "dialog", title), title)
        leave()

def at_rest():
    """The window manager has placed the window and made it the active one."""
    before = window.get_extents(Atspi.CoordType.SCREEN)
    time.sleep(0.5)
    now = window.get_extents(Atspi.CoordType.SCREEN)
    return has(window, "ACTIVE") and (now.x, now.y) == (before.x, before.y)

program = subprocess.Popen([PROGRAM])
try:
    editor = until(lambda: next(filter(children, children(Atspi.get_desktop(0))), None), "editor")
    editor.set_cache_mask(Atspi.Cache.NONE)
    window = children(editor)[0]
    until(at_rest, "editor's window at rest")
    check_everything()
except (TimeoutError, GLib.Error) as error:
    faults.add(f"Not all was checked: {error}; the editor's status is {program.poll()}")
finally:
    program.kill()
print(*(sorted(faults) or ["Every control, node and cell has a role and a name, and is reached."]),
      sep="\n")
sys.exit(bool(faults))
