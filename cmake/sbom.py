#!/usr/bin/env python3
"""sbom.py DEB...: the bill of these packages on standard output, SPDX 2.3 as JSON: what each holds, depends on, and has
compiled into it. The time is SOURCE_DATE_EPOCH."""
import hashlib
import io
import json
import os
import subprocess
import sys
import tarfile
import time

# Header packages of the build machine whose code is part of the programs.
COMPILED_IN = {"nlohmann-json3-dev": "MIT", "libcli11-dev": "BSD-3-Clause", "libfmt-dev": "MIT"}


def output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout


def identifier(*words):
    return "SPDXRef-" + "-".join("".join(c if c.isalnum() else "-" for c in word) for word in words)


def package(name, version, **more):
    return {"SPDXID": identifier("package", name), "name": name, "versionInfo": version, "licenseDeclared": "NOASSERTION",
            "licenseConcluded": "NOASSERTION", "copyrightText": "NOASSERTION", "downloadLocation": "NOASSERTION",
            "filesAnalyzed": False, **more}


def digests(content, *kinds):
    return [{"algorithm": kind.upper(), "checksumValue": hashlib.new(kind, content).hexdigest()} for kind in kinds]


def main(debs):
    packages, files, relationships = {}, [], []

    def related(one, kind, other):
        relationships.append({"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other})

    for deb in debs:
        name, version, depends = (output("dpkg-deb", "-f", deb, field).decode().strip()
                                  for field in ("Package", "Version", "Depends"))
        with open(deb, "rb") as content:
            entry = package(name, version, packageFileName=os.path.basename(deb),
                            checksums=digests(content.read(), "sha256"))
        packages[name] = entry
        related("SPDXRef-DOCUMENT", "DESCRIBES", entry["SPDXID"])
        for member in (archive := tarfile.open(fileobj=io.BytesIO(output("dpkg-deb", "--fsys-tarfile", deb)))):
            if member.isfile():
                file = {"SPDXID": identifier("file", name, member.name), "fileName": member.name,
                        "licenseConcluded": "NOASSERTION", "copyrightText": "NOASSERTION",
                        "checksums": digests(archive.extractfile(member).read(), "sha1", "sha256")}
                files.append(file)
                related(entry["SPDXID"], "CONTAINS", file["SPDXID"])
        for needed in filter(None, depends.split(", ")):
            other, _, bound = needed.partition(" ")
            packages.setdefault(other, package(other, bound.strip("()") or "NOASSERTION"))
            related(entry["SPDXID"], "DEPENDS_ON", identifier("package", other))
        if name == "zrlsw-bench":
            for other, licence in COMPILED_IN.items():
                installed = output("dpkg-query", "-W", "-f", "${Version}", other).decode()
                packages[other] = package(other, installed, licenseDeclared=licence)
                related(entry["SPDXID"], "STATIC_LINK", identifier("package", other))

    title = os.path.basename(debs[0]).rsplit(".", 1)[0]
    bill = {"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT", "name": title,
            "documentNamespace": "https://zrlsw.example.org/spdx/" + title + "-" +
            hashlib.sha256(json.dumps(packages).encode()).hexdigest()[:16],
            "creationInfo": {"created": time.strftime("%Y-%m-%dT%H:%M:%SZ",
                                                      time.gmtime(int(os.environ["SOURCE_DATE_EPOCH"]))),
                             "creators": ["Organization: zrlsw"]},
            "packages": list(packages.values()), "files": files, "relationships": relationships}
    json.dump(bill, sys.stdout, indent=1)
    print()


main(sys.argv[1:])
