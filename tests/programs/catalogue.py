"""Catalogue files, block by block."""

import pathlib

CATALOGUE = pathlib.Path("root/vendor/etc/atv/dbg")


def block(title, **rows):
    """A block with a row for each key: belong_module="lamp" is "belong module = lamp"."""
    return f"[{title}]\n" + "".join(
        f"{key.replace('_', ' ')} = {value}\n" for key, value in rows.items()
    )


def write_catalogue(modules, commands, folder=CATALOGUE):
    """Writes both files where the programs look for them, or into another folder."""
    pathlib.Path(folder).mkdir(parents=True, exist_ok=True)
    pathlib.Path(folder, "mods.conf").write_text(modules)
    pathlib.Path(folder, "cmds.conf").write_text(commands, errors="surrogateescape")


def write_commands(rows):
    """A module "lamp" with a command for each row of keys: c0, c1 and so on if it names none."""
    common = {"belong_module": "lamp", "instruction": "0x901"}
    blocks = [block(f"c{i}", **{"command": f"c{i}"} | common | row) for i, row in enumerate(rows)]
    write_catalogue(block("lamp", command="lamp", instruction="0x900"), "".join(blocks))
