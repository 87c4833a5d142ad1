"""The inventory as a CycloneDX document, the same for the same files."""

import base64
import urllib.parse
import uuid

SPECIFICATION = "1.6"
NAMESPACE = uuid.UUID("5a1f6a5c-6f0b-4f5e-9f0e-0c1d6d1a7b52")
PROPERTY = "zt-telemetry:"


def prop(name, value):
    return {"name": PROPERTY + name, "value": value}


def reference(package):
    """The address of a package as one that is written: what is no letter of an address is escaped."""
    kind, _, rest = package.purl.partition("@")
    version, _, arch = rest.partition("?")
    return f"{kind.replace('+', '%2B')}@{urllib.parse.quote(version)}" + (f"?{arch}" if arch else "")


def fetched(package):
    """What was fetched of it, with hashes."""
    for name, digest in sorted(package.hashes.items()):
        if name == "npm":
            algorithm, _, value = digest.partition("-")
            name, value = f"{package.name}-{package.version}.tgz", base64.b64decode(value).hex()
            hashes = [{"alg": algorithm.upper().replace("SHA", "SHA-"), "content": value}]
        else:
            hashes = [{"alg": "SHA-256", "content": digest}]
        kind = "source-distribution" if "arch=source" in package.purl else "distribution"
        yield {"type": kind, "url": urllib.parse.quote(name), "hashes": hashes}


def component_of(package, is_handed_out):
    component = {
        "type": "library",
        "bom-ref": reference(package),
        "name": package.name,
        "version": package.version,
        "licenses": [{"expression": package.licence}],
        "purl": reference(package),
        "properties": [
            prop("source-package", package.source),
            prop("handed-out", "yes" if is_handed_out else "no: the system that it runs on has it"),
        ],
    }
    references = list(fetched(package))
    if package.homepage:
        references.insert(0, {"type": "website", "url": package.homepage})
    if references:
        component["externalReferences"] = references
    return component


def file_reference(name):
    return f"file:{name}"


def component_of_file(file):
    component = {
        "type": "file",
        "bom-ref": file_reference(file.name),
        "name": file.name,
        "hashes": [{"alg": "SHA-256", "content": file.sha256}],
    }
    if file.system_libraries:
        component["properties"] = [prop("needs-of-windows", " ".join(sorted(file.system_libraries)))]
    return component


def dependency(ref, others):
    return {"ref": ref, "dependsOn": sorted(others)}


def depends_on(file):
    packages = {reference(package) for package in file.packages | file.system_packages}
    return packages | {file_reference(name) for name in file.needs}


def product(inventory, name, version, commit):
    properties = [prop("licence", "its owner has not chosen one")]
    if commit:
        properties.append(prop("commit", commit))
    return {
        "type": "application",
        "bom-ref": f"{name}@{version}",
        "name": name,
        "version": version,
        "properties": properties,
    }


def document(inventory, name, version, commit, time):
    """`time` is a datetime in UTC, or None where none is known."""
    files = sorted(inventory.files, key=lambda file: file.name)
    contained, asked_for = inventory.contained(), inventory.asked_of_the_system()
    whole = "\n".join(f"{file.sha256} {file.name}" for file in files)
    metadata = {"component": product(inventory, name, version, commit)}
    if time is not None:
        metadata["timestamp"] = time.strftime("%Y-%m-%dT%H:%M:%SZ")
    return {
        "bomFormat": "CycloneDX",
        "specVersion": SPECIFICATION,
        "serialNumber": f"urn:uuid:{uuid.uuid5(NAMESPACE, name + version + whole)}",
        "version": 1,
        "metadata": metadata,
        "components": [component_of_file(file) for file in files]
        + [component_of(package, True) for package in contained]
        + [component_of(package, False) for package in asked_for],
        "dependencies": [dependency(metadata["component"]["bom-ref"], [file_reference(file.name) for file in files])]
        + [dependency(file_reference(file.name), depends_on(file)) for file in files]
        + [dependency(reference(package), []) for package in contained + asked_for],
    }
