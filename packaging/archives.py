"""Archives with the same bytes for the same files, whoever packs them and when.

CPack is not asked: it packs files in the order in which the file system lists them, with the times at which they were
made.
"""

import gzip
import hashlib
import pathlib
import stat
import tarfile
import time
import zipfile

FILE, PROGRAM, LINK = 0o100644, 0o100755, 0o120777


def entries(folder: pathlib.Path) -> list[pathlib.Path]:
    """The files and links below a folder, in the order of their names."""
    found = [path for path in folder.rglob("*") if path.is_symlink() or path.is_file()]
    return sorted(found, key=lambda path: path.relative_to(folder).parts)


def kind(path: pathlib.Path) -> int:
    if path.is_symlink():
        return LINK
    return PROGRAM if path.stat().st_mode & stat.S_IXUSR else FILE


def write_zip(archive: pathlib.Path, folder: pathlib.Path, root: str, epoch: int) -> None:
    """Packs what lies below `folder` as `root`/…; `epoch`: the time of every file, not before 1980."""
    moment = time.gmtime(max(epoch, 315532800))[:6]
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as packed:
        for path in entries(folder):
            entry = zipfile.ZipInfo(f"{root}/{path.relative_to(folder).as_posix()}", moment)
            entry.create_system = 3  # whose permissions follow
            entry.external_attr = kind(path) << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            content = str(path.readlink()).encode() if path.is_symlink() else path.read_bytes()
            packed.writestr(entry, content)


def write_tar(archive: pathlib.Path, folder: pathlib.Path, root: str, epoch: int) -> None:
    """The same as a compressed tar."""
    with open(archive, "wb") as file, gzip.GzipFile("", "wb", 9, file, mtime=0) as packed:
        with tarfile.open(fileobj=packed, mode="w", format=tarfile.PAX_FORMAT) as tar:
            for path in entries(folder):
                entry = tarfile.TarInfo(f"{root}/{path.relative_to(folder).as_posix()}")
                entry.mtime, entry.mode = epoch, kind(path) & 0o777
                if path.is_symlink():
                    entry.type, entry.linkname = tarfile.SYMTYPE, str(path.readlink())
                    tar.addfile(entry)
                    continue
                entry.size = path.stat().st_size
                with open(path, "rb") as content:
                    tar.addfile(entry, content)


def write_sums(folder: pathlib.Path) -> pathlib.Path:
    """SHA256SUMS of every other file of the folder, as `sha256sum --check` reads it."""
    sums = folder / "SHA256SUMS"
    files = sorted(path for path in folder.iterdir() if path.is_file() and path != sums)
    sums.write_text("".join(f"{hashlib.sha256(file.read_bytes()).hexdigest()}  {file.name}\n" for file in files))
    return sums
