"""What is in the packages that VELTRO_PACKAGES names (paths, a blank between them; without it all of dist/)."""

import gettext
import io
import os
import pathlib
import re
import shutil
import subprocess
import tarfile
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
ENTRY = ROOT / "plugin" / "entry"
FOLDER = "./usr/lib/enigma2/python/Plugins/Extensions/Veltro"
LEFT_OUT = {".po", ".svg", ".pyc", ".pyo"}


def packages():
    names = os.environ.get("VELTRO_PACKAGES", "").split()
    return [pathlib.Path(name) for name in names] or sorted((ROOT / "dist").glob("*.ipk"))


def output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, cwd=ROOT).stdout


class Package:
    """An unpacked package."""

    def __init__(self, path):
        self.package, self.version, self.architecture = path.stem.split("_", 2)
        self.python2 = self.package.endswith("-py2")
        self.parts = output("ar", "t", path).decode().split()
        self.format = output("ar", "p", path, "debian-binary")
        self.control = self.archive(path, "control.tar.gz")
        self.data = self.archive(path, "data.tar.gz")

    @staticmethod
    def archive(path, part):
        return tarfile.open(fileobj=io.BytesIO(output("ar", "p", path, part)))

    @property
    def files(self):
        """The plug-in's files and their contents, by their paths in its folder."""
        return {os.path.relpath(member.name, FOLDER): self.data.extractfile(member).read()
                for member in self.data.getmembers() if member.isfile()}

    @property
    def fields(self):
        text = self.control.extractfile("./control").read().decode("ascii")
        return dict(line.split(": ", 1) for line in text.splitlines() if not line.startswith(" "))


class Packages(unittest.TestCase):
    def setUp(self):
        self.assertTrue(packages(), "script/package has made none")

    def each(self):
        for path in packages():
            with self.subTest(package=path.name):
                yield Package(path)

    def test_container(self):
        for package in self.each():
            self.assertEqual(package.parts, ["debian-binary", "control.tar.gz", "data.tar.gz"])
            self.assertEqual(package.format, b"2.0\n")

    def test_control(self):
        project = (ROOT / "CMakeLists.txt").read_text()
        version = re.search(r"^project\(Veltro VERSION ([\d.]+)", project, re.MULTILINE).group(1)
        names = {"enigma2-plugin-extensions-veltro", "enigma2-plugin-extensions-veltro-py2"}
        for package in self.each():
            fields = package.fields
            self.assertEqual(fields["Package"], package.package)
            self.assertEqual([fields["Version"], package.version], [version, version])
            self.assertEqual(fields["Architecture"], package.architecture)
            self.assertEqual({fields["Package"], fields["Conflicts"]}, names)
            self.assertEqual(fields["Depends"], "enigma2, " + ("python-core" if package.python2 else "python3-core (>= 3.8)"))
            for name in ("Section", "Priority", "Maintainer", "Description"):
                self.assertTrue(fields[name], name)
            self.assertNotIn("@", "".join(fields.values()))

    def test_files_of_the_entry(self):
        expected = {str(path.relative_to(ENTRY)): path.read_bytes() for path in ENTRY.rglob("*")
                    if path.is_file() and path.suffix not in LEFT_OUT}
        for package in self.each():
            files = package.files
            self.assertEqual({name: files.pop(name, None) for name in expected}, expected)
            self.assertEqual({name for name in files if not name.startswith("locale/")},
                             {"Veltro.so" if package.python2 else "Veltro.abi3.so", "LICENSE"})
            self.assertIn("plugin.png", expected)

    def test_catalogues(self):
        languages = {path.stem for path in (ENTRY / "locale").glob("*.po")}
        for package in self.each():
            files = package.files
            self.assertEqual({name for name in files if name.startswith("locale/")},
                             {"locale/%s/LC_MESSAGES/Veltro.mo" % language for language in languages})
            german = gettext.GNUTranslations(io.BytesIO(files["locale/de/LC_MESSAGES/Veltro.mo"]))
            self.assertEqual(german.gettext("Favourites"), "Favoriten")

    def test_owners_modes_and_times(self):
        for package in self.each():
            members = package.data.getmembers() + package.control.getmembers()
            self.assertEqual({(member.uid, member.gid) for member in members}, {(0, 0)})
            self.assertEqual(len({member.mtime for member in members}), 1)
            self.assertEqual({oct(member.mode) for member in package.data.getmembers() if member.isfile()}, {"0o644"})
            self.assertEqual({oct(member.mode) for member in members if member.isdir()}, {"0o755"})

    def test_nothing_outside_the_folder(self):
        for package in self.each():
            for member in package.data.getmembers():
                self.assertTrue(member.name.startswith(FOLDER) or member.isdir() and FOLDER.startswith(member.name), member.name)

    def test_twins_hold_the_same(self):
        by_name = {path.name: path for path in packages()}
        for name, path in by_name.items():
            twin = by_name.get(name.replace("armv7ahf-neon", "cortexa15hf-neon-vfpv4"))
            if twin not in (None, path):
                self.assertEqual(Package(path).files, Package(twin).files)


class SameBytesAgain(unittest.TestCase):
    def test_built_anew(self):
        before = {path: path.read_bytes() for path in packages() if path.stem.endswith("_amd64")}
        if not before:
            self.skipTest("no package for amd64")
        date = Package(next(iter(before))).data.getmembers()[0].mtime
        shutil.rmtree(ROOT / "build" / "cmake" / "amd64")
        output("env", "SOURCE_DATE_EPOCH=%d" % date, "script/package", "amd64")
        for path in before:
            self.assertTrue(path.read_bytes() == before[path], path.name + " is another one")



class RemovalTest(unittest.TestCase):
    """What the package's script for removal leaves of the image's own blacklist."""

    def remove(self, ours, there, step="remove"):
        root = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, root)
        folder = pathlib.Path(root) / "etc" / "enigma2"
        folder.mkdir(parents=True)
        (folder / "blacklist.eit.veltro").write_bytes(ours)
        (folder / "blacklist.eit").write_bytes(there)
        subprocess.run(["sh", ROOT / "packaging" / "postrm", step], check=True, env={**os.environ, "D": root})
        return (folder / "blacklist.eit").read_bytes(), (folder / "blacklist.eit.veltro").exists()

    def test_our_lines_go(self):
        self.assertEqual(self.remove(b"1:0:1:A:\n1:0:1:B:\n", b"1:0:1:A:\n1:0:1:B:\nhis\xff\n1:0:1:A:\n"),
                         (b"his\xff\n1:0:1:A:\n", False))

    def test_an_update_leaves_them(self):
        self.assertEqual(self.remove(b"1:0:1:A:\n", b"1:0:1:A:\nhis\n", "upgrade"), (b"1:0:1:A:\nhis\n", True))

    def test_no_line_of_ours(self):
        self.assertEqual(self.remove(b"", b"his\n")[0], b"his\n")

if __name__ == "__main__":
    unittest.main()
