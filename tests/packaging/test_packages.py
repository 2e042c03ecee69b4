"""What is in the packages that VELTRO_PACKAGES names (paths, a blank between them; without it all of dist/)."""

import gettext
import gzip
import hashlib
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


class Feed(unittest.TestCase):
    """dist/ as `opkg update` reads it."""

    def setUp(self):
        self.index = (ROOT / "dist" / "Packages").read_text(encoding="ascii")

    def test_each_package_is_in_it(self):
        entries = [dict(line.split(": ", 1) for line in entry.splitlines() if not line.startswith(" "))
                   for entry in self.index.strip().split("\n\n")]
        self.assertEqual(sorted(entry["Filename"] for entry in entries),
                         sorted(path.name for path in (ROOT / "dist").glob("*.ipk")))
        for entry in entries:
            path = ROOT / "dist" / entry.pop("Filename")
            content = path.read_bytes()
            self.assertEqual(int(entry.pop("Size")), len(content))
            self.assertEqual(entry.pop("MD5Sum"), hashlib.md5(content).hexdigest())
            self.assertEqual(entry.pop("SHA256sum"), hashlib.sha256(content).hexdigest())
            self.assertEqual(entry, Package(path).fields)

    def test_compressed(self):
        self.assertEqual(gzip.decompress((ROOT / "dist" / "Packages.gz").read_bytes()).decode("ascii"), self.index)


class OnABox(unittest.TestCase):
    """What a user does with a package, on a root folder. Debian has no opkg; dpkg reads the same format, takes a package only
    if the box knows its architecture, and runs the same scripts."""

    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="veltro-box-"))
        self.addCleanup(shutil.rmtree, self.root)
        for folder in ("info", "updates", "triggers"):
            (self.root / "var/lib/dpkg" / folder).mkdir(parents=True)
        (self.root / "var/lib/dpkg/status").touch()
        self.folder = self.root / FOLDER

    def dpkg(self, *arguments):
        """Its exit code; what it says is in self.said."""
        result = subprocess.run(
            ["dpkg", "--root=%s" % self.root, "--log=/dev/null", "--force-not-root,bad-path,script-chrootless", *map(str, arguments)],
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8",
            env={**os.environ, "D": str(self.root), "LC_ALL": "C.UTF-8", "LANGUAGE": "en"})
        self.said = result.stdout
        return result.returncode

    def make(self, name, version, architecture, files=(), like=None):
        """A package of another version, with the control fields, the script and the files of a given one, and more files."""
        folder = pathlib.Path(tempfile.mkdtemp(dir=self.root))
        control, data = folder / "control", folder / "data"
        control.mkdir()
        data.mkdir()
        fields = "Package: %s\nVersion: %s\nArchitecture: %s\nMaintainer: a test\nDescription: a test\n" % (
            name, version, architecture)
        if like is not None:
            like.control.extractall(control)
            like.data.extractall(data)
            fields = re.sub("^Version: .*$", "Version: " + version, (control / "control").read_text(), flags=re.MULTILINE)
        (control / "control").write_text(fields)
        for file in files:
            (data / file).write_text("")
        (folder / "debian-binary").write_text("2.0\n")
        for part, content in (("control.tar.gz", control), ("data.tar.gz", data)):
            with tarfile.open(folder / part, "w:gz", format=tarfile.GNU_FORMAT) as archive:
                archive.add(content, ".")
        path = folder / "made.ipk"
        output("ar", "rc", path, folder / "debian-binary", folder / "control.tar.gz", folder / "data.tar.gz")
        return path

    def box(self, architecture, python2):
        """A box of an architecture with what the package depends on."""
        if architecture != output("dpkg", "--print-architecture").decode().strip():
            self.assertEqual(self.dpkg("--add-architecture", architecture), 0, self.said)
        python = ("python-core", "2.7.18") if python2 else ("python3-core", "3.9.2")
        for name, version in (("enigma2", "1"), python):
            self.assertEqual(self.dpkg("--install", self.make(name, version, architecture)), 0, self.said)

    def each(self):
        for path in packages():
            with self.subTest(package=path.name):
                self.doCleanups()
                self.setUp()
                yield path, Package(path)

    def installed(self, package):
        """The version that is installed, if any."""
        lines = output("dpkg-query", "--admindir=%s" % (self.root / "var/lib/dpkg"), "--show",
                       "--showformat=${Package} ${db:Status-Status} ${Version}\n").decode().splitlines()
        return dict(line.split()[::2] for line in lines if " installed " in line).get(package.package)

    def test_install_upgrade_remove(self):
        for path, package in self.each():
            self.box(package.architecture, package.python2)
            old = self.make(None, "1.0.0", None, [FOLDER + "/of_1_0_0.py"], like=package)
            self.assertEqual(self.dpkg("--install", old), 0, self.said)
            self.assertEqual(self.installed(package), "1.0.0")
            for name in ("plugin.pyo", "__pycache__/plugin.cpython-39.pyc", "bridge/names.pyc"): # what an interpreter leaves
                (self.folder / name).parent.mkdir(exist_ok=True)
                (self.folder / name).write_bytes(b"compiled")

            self.assertEqual(self.dpkg("--install", path), 0, self.said)
            self.assertEqual(self.installed(package), package.version)
            self.assertEqual({name: (self.folder / name).read_bytes() for name in package.files}, package.files)
            self.assertFalse((self.folder / "of_1_0_0.py").exists())

            name = "%s:%s" % (package.package, package.architecture)
            self.assertEqual(self.dpkg("--remove", name), 0, self.said)
            self.assertFalse(self.folder.exists(), list(self.folder.rglob("*")) if self.folder.exists() else "")

    def test_not_on_another_box(self):
        for path, package in self.each():
            self.box("mips32el" if package.architecture != "mips32el" else "aarch64", package.python2)
            if package.architecture == output("dpkg", "--print-architecture").decode().strip():
                continue # which is what dpkg itself runs on
            self.assertNotEqual(self.dpkg("--install", path), 0)
            self.assertIn("architecture", self.said)
            self.assertFalse(self.folder.exists())

    def test_not_without_its_python(self):
        for path, package in self.each():
            self.box(package.architecture, not package.python2)
            self.assertNotEqual(self.dpkg("--install", path), 0)
            self.assertIn("depends on python", self.said)

    def test_not_beside_the_other_one(self):
        by_name = {path.name: path for path in packages()}
        for path, package in self.each():
            other = by_name.get(path.name.replace("veltro-py2_", "veltro_")) if package.python2 else None
            if other is None:
                continue
            self.box(package.architecture, True)
            self.assertEqual(self.dpkg("--install", self.make("python3-core", "3.9.2", package.architecture)), 0, self.said)
            self.assertEqual(self.dpkg("--install", path), 0, self.said)
            self.assertNotEqual(self.dpkg("--install", other), 0)
            self.assertIn("conflict", self.said)


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
