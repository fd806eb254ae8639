"""A Debian system in a folder, with nothing in it but what debootstrap calls minimal, and an
ordinary user. Mounts are seen by this process and its children alone: scripts/check-package gives
them a namespace of their own.
"""
from __future__ import annotations

import os
import tempfile
from pathlib import Path

from identity import NAME, USER, as_root

HOME = Path("/home") / NAME
_APT = ("apt-get", "--yes", "--quiet", "--option=DPkg::Options::=--force-unsafe-io")
_ENVIRONMENT = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C.UTF-8", "HOME": "/root",
                "DEBIAN_FRONTEND": "noninteractive"}


class BareSystem:
    """To be used with `with`: the folder is deleted at the end. `archives` is where downloaded
    packages are kept from one system to the next."""

    def __init__(self, tarball: Path, folder: Path, archives: Path) -> None:
        self.root = folder
        self._outside(f"mkdir -p '{folder}' '{archives}'",
                      f"tar --extract --file='{tarball}' --directory='{folder}'",
                      f"mount --rbind '{folder}' '{folder}'",
                      f"mount -t proc proc '{folder}/proc'",
                      f"mount --rbind /dev '{folder}/dev'",
                      f"mount --bind /sys '{folder}/sys'",
                      f"mount --bind '{archives}' '{folder}/var/cache/apt/archives'")
        self.share(Path(tempfile.gettempdir()))  # the world's sockets and the sampler's files
        self.share(Path("/tmp/.X11-unix"))
        # No package starts a service.
        self.write("/usr/sbin/policy-rc.d", b"#!/bin/sh\nexit 101\n", 0o755)
        self.run("useradd", "--create-home", f"--uid={USER}", NAME)
        self.run(*_APT, "update")

    def __enter__(self) -> BareSystem:
        return self

    def __exit__(self, *_: object) -> None:
        self._outside(f"umount --recursive --lazy '{self.root}'", f"rm -rf --one-file-system '{self.root}'")

    def _outside(self, *commands: str) -> None:
        for command in commands:
            as_root("sh", "-c", command)

    def outside(self, path: str | Path) -> Path:
        """The path from outside."""
        return self.root / str(path).lstrip("/")

    def run(self, *command: str) -> str:
        """What a command prints that root runs in it."""
        return as_root("chroot", str(self.root), *command, environment=_ENVIRONMENT)

    def share(self, folder: Path) -> None:
        """Makes a folder of this machine visible in it, at the same place."""
        self._outside(f"mkdir -p '{self.outside(folder)}'",
                      f"mount --bind '{folder}' '{self.outside(folder)}'")

    def write(self, path: str, content: bytes, mode: int = 0o644) -> None:
        """A file of root's; replaces one."""
        with tempfile.NamedTemporaryFile() as file:
            file.write(content)
            file.flush()
            as_root("install", "-D", f"--mode={mode:o}", file.name, str(self.outside(path)))

    def install(self, package: Path, recommends: bool = False) -> None:
        """A package file, with apt; upgrades an older one."""
        self.write(f"/var/tmp/{package.name}", package.read_bytes())
        self.run(*_APT, "install", "--install-recommends" if recommends else
                 "--no-install-recommends", f"/var/tmp/{package.name}")
        self.run("rm", f"/var/tmp/{package.name}")

    def remove(self, package: str) -> None:
        self.run(*_APT, "remove", package)

    def purge(self, package: str) -> None:
        """Also what was installed for its sake alone."""
        purge = ("purge", package) if self.has_package(package) else ("autoremove",)
        self.run(*_APT, "--purge", "--auto-remove", *purge)

    def has_package(self, package: str) -> bool:
        try:
            return "install ok installed" in self.run("dpkg-query", "--show",
                                                      "--showformat=${Status}", package)
        except RuntimeError:
            return False

    def files(self, *folders: str) -> set[str]:
        """All paths below these folders, or of the whole system but for what is not its own."""
        places = folders or ("/",)
        foreign = "/proc /dev /sys /tmp /var/cache/apt /var/lib/apt /var/log /home".split()
        prune = " -o ".join(f"-path {each}" for each in foreign)
        command = f"find {' '.join(places)} \\( {prune} \\) -prune -o -print"
        if folders:
            command = f"find {' '.join(places)} -type f -o -type l"
        return set(self.run("sh", "-c", command).splitlines())


def user_environment(world: dict[str, str]) -> dict[str, str]:
    """The world's environment as a login in the system has it: a home of its own, and the places
    for settings are the usual ones."""
    own = {name: value for name, value in world.items()
           if name not in ("XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME")}
    return own | {"HOME": str(HOME), "USER": NAME, "PATH": os.defpath + ":/usr/local/bin"}
