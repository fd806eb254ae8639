"""A package that upgrades another one."""
from __future__ import annotations

import re
import subprocess
from pathlib import Path

KEEPER = "usr/lib/oxlade/Oxlade.app/Contents/MacOS/oxlade-keeper"


def next_version(package: Path, suffix: str, keeper: bytes, folder: Path) -> Path:
    """The same package with a suffix to its version and with another keeper."""
    tree, result = folder / suffix, folder / f"oxlade{suffix}.deb"
    subprocess.run(["dpkg-deb", "--raw-extract", package, tree], check=True)
    control = tree / "DEBIAN" / "control"
    control.write_text(re.sub(r"^(Version: .*)$", rf"\g<1>{suffix}",
                              control.read_text(encoding="utf-8"), flags=re.MULTILINE),
                       encoding="utf-8")
    (tree / KEEPER).write_bytes(keeper)
    subprocess.run(["dpkg-deb", "--root-owner-group", "-Znone", "--build", tree, result],
                   check=True, stdout=subprocess.DEVNULL)
    return result


def keeper_of_another_protocol(source: Path, folder: Path) -> bytes:
    """The keeper, compiled with the next protocol version."""
    header = (source / "interfaces/keeper_protocol.h").read_text(encoding="utf-8")
    changed = re.sub(r'(keeperProtocolVersion\[\] = ")\d+', r"\g<1>next", header)
    if changed == header:
        raise AssertionError("keeper_protocol.h has no version")
    (folder / "interfaces").mkdir()
    (folder / "interfaces/keeper_protocol.h").write_text(changed, encoding="utf-8")
    program = folder / "keeper"
    # The changed header is found first.
    subprocess.run(["g++", "-std=c++20", "-O1", f"-I{folder}", f"-I{source}",
                    *(source / "keeper").glob("*.cpp"), "-o", program], check=True)
    return program.read_bytes()
