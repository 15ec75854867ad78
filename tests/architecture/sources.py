"""The folders of sources, found and not listed: a new one is under every rule from its first file on."""
import os

LEFT_OUT = {"build", "docs"}  # what is built, and what is shown
BESIDE = {"bench", "fuzz", "samples", "tests"}  # beside the programs


def folders(root):
    """The top folders that hold sources."""
    return [name for name in sorted(os.listdir(root))
            if name not in LEFT_OUT and not name.startswith(".") and any(files_in(root, name))]


def program_folders(root):
    """Those of them that the programs are made of."""
    return [name for name in folders(root) if name not in BESIDE]


def files_in(root, folder, endings=(".h", ".cpp")):
    """The paths of a folder's sources, below it too."""
    for base, below, names in os.walk(os.path.join(root, folder)):
        below[:] = sorted(name for name in below if name not in ("corpus", "found", "__pycache__"))
        for name in sorted(names):
            if name.endswith(endings):
                yield os.path.join(base, name)


def all_files(root, names=None):
    """The paths of the sources in these top folders, or in all of them."""
    return [path for folder in names or folders(root) for path in files_in(root, folder)]
