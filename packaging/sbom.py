#!/usr/bin/python3
"""Writes an SPDX 2.3 bill of materials of a Debian package to the standard output.

    packaging/sbom.py PACKAGE.deb SOURCE.tar.xz

It names the files in the package, the source and, with the versions of the system that it runs on,
the packages that are depended on. The time in it is SOURCE_DATE_EPOCH.
"""
import hashlib
import io
import json
import os
import re
import subprocess
import sys
import tarfile
from datetime import datetime, timezone
from pathlib import Path
from urllib.parse import quote


def output_of(*command: str) -> str:
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout.strip()


def checksums(content: bytes) -> list[dict[str, str]]:
    return [{"algorithm": name.upper(), "checksumValue": hashlib.new(name, content).hexdigest()}
            for name in ("sha1", "sha256")]


def spdx_id(kind: str, name: str) -> str:
    """Different names have different ids."""
    short = hashlib.sha256(name.encode()).hexdigest()[:8]
    return f"SPDXRef-{kind}-{re.sub('[^A-Za-z0-9.]+', '-', name).strip('-')}-{short}"


def files_of(deb: Path) -> list[dict[str, object]]:
    data = subprocess.run(["dpkg-deb", "--fsys-tarfile", str(deb)], check=True,
                          stdout=subprocess.PIPE).stdout
    files = []
    with tarfile.open(fileobj=io.BytesIO(data)) as archive:
        for member in archive:
            content = archive.extractfile(member) if member.isfile() else None
            if content:
                files.append({"fileName": member.name, "SPDXID": spdx_id("File", member.name),
                              "checksums": checksums(content.read()), "copyrightText": "NOASSERTION",
                              "licenseConcluded": "NOASSERTION"})
    return sorted(files, key=lambda file: str(file["fileName"]))


def verification_code(files: list[dict[str, object]]) -> str:
    sums = sorted(file["checksums"][0]["checksumValue"] for file in files)  # type: ignore[index]
    return hashlib.sha1("".join(sums).encode()).hexdigest()


def package(name: str, version: str, licence: str, **more: object) -> dict[str, object]:
    return {"name": name, "SPDXID": spdx_id("Package", name), "versionInfo": version,
            "downloadLocation": "NOASSERTION", "filesAnalyzed": False,
            "licenseConcluded": licence, "licenseDeclared": licence,
            "copyrightText": "NOASSERTION", **more}


def debian_package(name: str) -> dict[str, object]:
    """With the version that is installed here, if it is."""
    query = subprocess.run(["dpkg-query", "-W", "-f", "${Version} ${Architecture}", name],
                           stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False)
    if query.returncode != 0 or len(query.stdout.split()) != 2:
        return package(name, "NOASSERTION", "NOASSERTION")
    version, architecture = query.stdout.split()
    exact = quote(version, safe=":~")
    reference = {"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                 "referenceLocator": f"pkg:deb/debian/{quote(name)}@{exact}?arch={architecture}"}
    return package(name, version, "NOASSERTION", externalRefs=[reference])


def dependencies(deb: Path) -> list[str]:
    """The first of alternatives."""
    words = output_of("dpkg-deb", "--field", str(deb), "Depends").split(",")
    return sorted({word.split("|")[0].split("(")[0].strip().split(":")[0] for word in words})


def document(deb: Path, source: Path) -> dict[str, object]:
    name, version, homepage = (output_of("dpkg-deb", "--field", str(deb), field)
                               for field in ("Package", "Version", "Homepage"))
    content, files = deb.read_bytes(), files_of(deb)
    main = package(name, version, "MIT", packageFileName=deb.name, checksums=checksums(content),
                   homepage=homepage, primaryPackagePurpose="APPLICATION",
                   copyrightText="2026 The Oxlade authors", filesAnalyzed=True,
                   packageVerificationCode={"packageVerificationCodeValue": verification_code(files)})
    origin = package(source.name, version, "MIT", packageFileName=source.name,
                     checksums=checksums(source.read_bytes()), primaryPackagePurpose="SOURCE")
    needed = [debian_package(each) for each in dependencies(deb)]

    def related(one: object, kind: str, other: object) -> dict[str, object]:
        return {"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
    created = datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), timezone.utc)
    return {
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
        "name": deb.stem,
        "documentNamespace": f"{homepage.rstrip('/')}/spdx/{deb.stem}-{hashlib.sha256(content).hexdigest()}",
        "creationInfo": {"created": created.strftime("%Y-%m-%dT%H:%M:%SZ"),
                         "creators": ["Organization: The Oxlade authors", "Tool: oxlade-sbom"]},
        "packages": [main, origin, *needed], "files": files,
        "relationships": [
            related("SPDXRef-DOCUMENT", "DESCRIBES", main["SPDXID"]),
            related(main["SPDXID"], "GENERATED_FROM", origin["SPDXID"]),
            *(related(main["SPDXID"], "CONTAINS", file["SPDXID"]) for file in files),
            *(related(main["SPDXID"], "DEPENDS_ON", each["SPDXID"]) for each in needed)]}


def main() -> int:
    if len(sys.argv) != 3:
        print("usage: packaging/sbom.py PACKAGE.deb SOURCE.tar.xz", file=sys.stderr)
        return 2
    text = json.dumps(document(Path(sys.argv[1]), Path(sys.argv[2])), indent=2, ensure_ascii=False)
    print(text)
    return 0


sys.exit(main())
