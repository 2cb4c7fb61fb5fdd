"""The module lxbridge: the same as the command says, errors, threads, processes."""
import concurrent.futures
import datetime
import errno
import fractions
import io
import json
import mmap
import multiprocessing
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import lxbridge

ROOT = pathlib.Path(__file__).resolve().parents[2]
COMMAND = os.environ["LX_COMMAND"]
CORPUS = pathlib.Path(os.environ["LX_CORPUS_DIR"])
RDF = "http://www.w3.org/1999/02/22-rdf-syntax-ns#"


def with_packet(jpeg, packet):
    """The packet in front of the one that the file has: the first counts."""
    block = b"http://ns.adobe.com/xap/1.0/\0" + packet
    return jpeg[:2] + b"\xff\xe1" + (len(block) + 2).to_bytes(2, "big") + block + jpeg[2:]


def nested_packet(levels):
    """A structure in a structure, each with a qualifier."""
    opened = '<v:A rdf:parseType="Resource"><v:Q>q</v:Q><rdf:value rdf:parseType="Resource">' * levels
    closed = "</rdf:value></v:A>" * levels
    return (f'<rdf:RDF xmlns:rdf="{RDF}"><rdf:Description rdf:about="" xmlns:v="http://example.com/v/">{opened}'
            f"<v:A>deep</v:A>{closed}</rdf:Description></rdf:RDF>").encode()


# Passes mypy --strict only with the types that the package has.
TYPED = """
import lxbridge

photo = lxbridge.open("photo.jpg")
photo["dc:subject"].append("harbour")
photo.array("dc:subject").append("harbour")
title: str = photo.languages("dc:title")["de"]
path: str = photo.save_sidecar()
node: lxbridge.types.Node = lxbridge.xmp("photo.jpg")["properties"][0]["value"]
while not isinstance(node, str):
    if "bag" in node:
        node = node["bag"][0]
    elif "seq" in node:
        node = node["seq"][0]
    elif "alt" in node:
        node = node["alt"][0]
    elif "struct" in node:
        node = node["struct"]["exif:Fired"]
    else:
        node = node["value"]
width: int = lxbridge.pool("photo.jpg")["attributes"]["width"]
"""


class ModuleTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.holder = tempfile.TemporaryDirectory()
        cls.folder = pathlib.Path(cls.holder.name)
        cls.sample = cls.folder / "sample.jpg"
        subprocess.run([os.environ["LX_MAKE_SAMPLE"], cls.sample], check=True)
        whole = cls.sample.read_bytes()
        cls.files = [cls.sample]
        for name, data in [("half.jpg", whole[:len(whole) // 2]), ("empty", b""), ("text.txt", b"no picture at all\n" * 10),
                           ("bad.tif", b"II*\0\x08\0\0\0\x01\0"), ("deep.jpg", with_packet(whole, nested_packet(25))),
                           ("H\u00e4fen \u65e5\u672c.jpg", whole), ("latin.jpg", whole[:2] + b"\xff\xfe\0\x07caf\xe9!" + whole[2:])]:
            cls.files.append(cls.folder / name)
            cls.files[-1].write_bytes(data)
        if CORPUS.is_dir():
            cls.files += sorted(file for file in CORPUS.iterdir() if file.is_file())[:40]

    @classmethod
    def tearDownClass(cls):
        cls.holder.cleanup()

    def said(self, *arguments):
        return subprocess.run([COMMAND, *arguments], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False).stdout

    def test_gives_what_the_command_prints(self):
        for form, read in [("xmp", lxbridge.xmp), ("pool", lxbridge.pool)]:
            for file, line in zip(self.files, self.said(form, "--format", "json", *self.files).splitlines(), strict=True):
                with self.subTest(form=form, file=file.name):
                    # As texts, so that the order counts.
                    self.assertEqual(json.dumps(read(file)), json.dumps(json.loads(line)))
        for file in self.files:
            self.assertEqual(lxbridge.packet(file), self.said(file).decode().removesuffix("\n"), file.name)
        self.assertEqual(json.dumps(lxbridge.xmp(self.folder / "deep.jpg")).count('"v:Q": "q"'), 25)
        self.assertIn('"display": {"hex": "636166e921"}', json.dumps(lxbridge.pool(self.folder / "latin.jpg")))
        self.assertLess(lxbridge.pool(self.folder / "half.jpg")["status"], 0)

    def test_calls_leave_nothing_behind(self):
        held = []
        for _ in range(20):
            _ = [read(file) for read in (lxbridge.xmp, lxbridge.pool, lxbridge.packet) for file in self.files]
            del _
            held.append(sys.getallocatedblocks())
        self.assertLess(held[-1] - held[1], 2 * len(self.files))  # One object for each call would be 54 * len(self.files).

    def test_takes_paths_as_open_does(self):
        expected = lxbridge.xmp(self.sample)
        self.assertEqual(expected["file"], str(self.sample))
        self.assertEqual(lxbridge.xmp(str(self.sample)), expected)
        strange = os.fsdecode(os.fsencode(self.folder) + b"/b\xe4d.jpg")  # No UTF-8.
        os.link(self.sample, strange)
        answer = lxbridge.xmp(strange)
        self.assertEqual(answer["properties"], expected["properties"])
        self.assertEqual(lxbridge.pool(answer["file"])["file"], strange)
        os.unlink(strange)
        for path, kind in [(3, TypeError), (None, TypeError), ("a\0b", ValueError)]:
            with self.assertRaises(kind):
                lxbridge.pool(path)

    def test_contents_read_as_the_file_does(self):
        for file in self.files:
            data = file.read_bytes()
            with self.subTest(file.name), file.open("rb") as opened:
                self.assertEqual(lxbridge.packet(data), lxbridge.packet(file))
                self.assertEqual(lxbridge.pool(memoryview(data)), {**lxbridge.pool(file), "file": ""})
                self.assertEqual(lxbridge.pool(opened), lxbridge.pool(file))
                self.assertEqual(opened.tell(), len(data))
        with self.sample.open("rb") as opened, mmap.mmap(opened.fileno(), 0, access=mmap.ACCESS_READ) as mapped:
            expected = lxbridge.open(self.sample)
            positioned = io.BytesIO(b"before" + bytearray(mapped))
            positioned.seek(6)
            contents = bytearray(mapped)
            photos = [lxbridge.open(mapped), lxbridge.open(contents), lxbridge.open(positioned)]
            self.assertRaises(BufferError, contents.clear)  # It is not copied, so it may not go while it is read from.
            for photo in photos:
                self.assertEqual(photo, expected)
                photo["dc:subject"].append("quay")
                self.assertRaises(ValueError, photo.save_sidecar)
            self.assertEqual(positioned.tell(), len(positioned.getvalue()))
            del photo, photos
            contents.clear()
        for source in 3.5, io.StringIO("text"):
            self.assertRaises(TypeError, lxbridge.open, source)

    def test_raises_what_open_would(self):
        cases = [(self.folder / "nowhere.jpg", lxbridge.NotFoundError, FileNotFoundError, errno.ENOENT),
                 ("", lxbridge.NotFoundError, FileNotFoundError, errno.ENOENT),
                 (self.folder, lxbridge.DirectoryError, IsADirectoryError, errno.EISDIR),
                 (self.sample / "below", lxbridge.ReadError, OSError, errno.ENOTDIR),
                 (self.folder / ("n" * 300), lxbridge.ReadError, OSError, errno.ENAMETOOLONG)]
        os.mkfifo(self.folder / "pipe")
        cases.append((self.folder / "pipe", lxbridge.ReadError, OSError, errno.EINVAL))
        denied = self.folder / "denied.jpg"
        denied.write_bytes(b"")
        denied.chmod(0)
        if not os.access(denied, os.R_OK):  # The superuser may read everything.
            cases.append((denied, lxbridge.DeniedError, PermissionError, errno.EACCES))
        for path, kind, standard, number in cases:
            for read in (lxbridge.open, lxbridge.xmp, lxbridge.packet, lxbridge.pool):
                with self.subTest(path=str(path)[-20:], read=read.__name__), self.assertRaises(kind) as caught:
                    read(path)
                self.assertIsInstance(caught.exception, standard)
                self.assertIsInstance(caught.exception, lxbridge.Error)
                self.assertEqual((caught.exception.errno, caught.exception.filename), (number, path))

    def test_threads_work_side_by_side(self):
        expected = [(lxbridge.xmp(file), lxbridge.pool(file), lxbridge.packet(file)) for file in self.files]
        with concurrent.futures.ThreadPoolExecutor(8) as threads:
            for _ in range(5):
                answers = threads.map(lambda file: (lxbridge.xmp(file), lxbridge.pool(file), lxbridge.packet(file)), self.files)
                self.assertEqual(list(answers), expected)
            photo = lxbridge.open(self.sample)
            list(threads.map(photo["dc:subject"].append, map(str, range(500))))
        self.assertEqual(sorted(photo["dc:subject"][1:], key=int), [str(number) for number in range(500)])

    def test_a_long_call_holds_up_no_other_python_thread_and_no_fork(self):
        items = b"<rdf:li>harbour</rdf:li>" * 400_000
        packet = (f'<rdf:RDF xmlns:rdf="{RDF}"><rdf:Description xmlns:dc="http://purl.org/dc/elements/1.1/"><dc:subject><rdf:Bag>'
                  .encode() + items + b"</rdf:Bag></dc:subject></rdf:Description></rdf:RDF>")
        expected = lxbridge.xmp(self.sample)
        with concurrent.futures.ThreadPoolExecutor(2) as threads:
            long = threads.submit(lxbridge.Photo, packet)
            time.sleep(0.02)  # On a busy machine it may not be in the library yet; then nothing is shown, but nothing fails.
            other = threads.submit(lxbridge.xmp, self.sample)
            child = os.fork()
            if child == 0:
                signal.alarm(60)
                os._exit(0 if lxbridge.xmp(self.sample) == expected else 1)
            self.assertEqual(os.waitpid(child, 0)[1], 0)
            self.assertEqual(len(long.result(60)["dc:subject"]), 400_000)
            self.assertEqual(other.result(60), expected)

    def test_processes_work_side_by_side(self):
        expected = [lxbridge.pool(file) for file in self.files]
        for method in ("fork", "spawn"):
            with self.subTest(method), multiprocessing.get_context(method).Pool(2) as processes:
                self.assertEqual(processes.map(lxbridge.pool, self.files), expected)

    def test_the_readme_shows_what_works(self):
        readme = (ROOT / "README.md").read_text(encoding="utf-8")
        (program,) = re.findall(r"^```python\n(.*?)^```", readme, re.MULTILINE | re.DOTALL)
        shutil.copy(self.sample, self.folder / "photo.jpg")
        printed = subprocess.run([sys.executable, "-c", program], cwd=self.folder, check=True, stdout=subprocess.PIPE).stdout
        self.assertTrue(printed.startswith(b"Example Cameras 1/250\nphoto.jpg.xmp\n"), printed)
        self.assertIn(b"tiff Make Example Cameras\n", printed)
        self.assertTrue(printed.endswith(b"\n64\n"), printed[-20:])
        os.unlink(self.folder / "photo.jpg.xmp")

    def test_a_photo_is_changed_in_place_and_saved_beside_the_file(self):
        photo = lxbridge.open(self.sample)
        before = photo.copy()
        self.assertEqual(list(photo), [f"{found['prefix']}:{found['name']}" for found in lxbridge.xmp(self.sample)["properties"]])
        self.assertNotIn("dc:title", photo)
        photo["dc:title"]["de"] = "Der Hafen"
        photo["dc:title"]["en-GB"] = "The quay"
        self.assertEqual(dict(photo["dc:title"]), {"x-default": "Der Hafen", "de": "Der Hafen", "en-GB": "The quay"})
        self.assertEqual([photo.languages("dc:title").best("en-US", "en"), photo["dc:title"]["EN-gb"]], ["The quay"] * 2)
        photo["dc:subject"] += ["quay", "dusk"]
        photo["dc:subject"].remove("harbour")
        photo["dc:subject"].insert(-1, "night")
        photo["dc:subject"][0] = "pier"
        self.assertEqual(photo["dc:subject"], ["pier", "night", "dusk"])
        del photo["dc:subject"][::2]
        self.assertEqual(photo["dc:subject"], ["night"])
        photo["dc:creator"] = "Ada"
        self.assertEqual((photo["dc:creator"], photo["dc:creator"].is_ordered), (["Ada"], True))
        photo.array("dc:creator").qualifiers(0)["xmp:Label"] = "painter"
        self.assertEqual(dict(photo["dc:creator"].qualifiers(0)), {"xmp:Label": "painter"})
        photo["exif:Flash"]["exif:Fired"] = False
        del photo["exif:Flash"]["exif:Mode"]
        self.assertEqual((photo["exif:Flash"]["exif:Fired"], "exif:Mode" in photo["exif:Flash"]), ("False", False))
        for value, text in [(5, "5"), (0.25, "0.25"), (True, "True"), (fractions.Fraction(1, 250), "1/250"),
                            (datetime.datetime(2024, 6, 21, 18, 30, tzinfo=datetime.timezone.utc), "2024-06-21T18:30:00+00:00")]:
            photo["xmp:Label"] = value
            self.assertEqual(photo["xmp:Label"], text)
        self.assertEqual(lxbridge.register_namespace("http://example.com/own/", "own"), "own")
        nested = {"own:Name": "Ada", "own:Tags": ["a", {"own:Deep": ["b"]}]}
        photo["own:People"] = [nested, "plain"]
        self.assertEqual(photo["own:People"], [nested, "plain"])
        self.assertEqual(photo.namespaces["own"], "http://example.com/own/")

        for name, kind in [("tiff:Nothing", KeyError), ("tiff", KeyError), ("nobody:a", KeyError), ("dc:no name", KeyError)]:
            with self.subTest(name), self.assertRaises(kind):
                photo[name]
        for name, value, kind in [("xmp:Rating", None, TypeError), ("xmp:Rating", [b"x"], TypeError), ("xmp:a b", "x", KeyError),
                                  ("xmp:Rating", float("inf"), ValueError), ("xmp:Rating", "a\0b", ValueError)]:
            with self.subTest(name, value=value), self.assertRaises((kind, lxbridge.ToolkitError)):
                photo[name] = value
        self.assertEqual(photo["xmp:Rating"], "4", "what cannot be set leaves what is there")
        self.assertRaises(TypeError, photo.array, "tiff:Make")
        self.assertRaises(IndexError, lambda: photo["dc:subject"][7])

        written = photo.save_sidecar()
        self.assertEqual(written, f"{self.sample}.xmp")
        self.assertEqual(lxbridge.Photo(pathlib.Path(written).read_bytes()), photo)
        self.assertRaises(FileExistsError, photo.save_sidecar)
        del photo["dc:title"]
        photo.save_sidecar(overwrite=True)
        self.assertEqual([file.name for file in self.folder.iterdir() if ".xmp" in file.name], ["sample.jpg.xmp"])
        self.assertTrue(before.merge_sidecar())
        self.assertEqual(before["own:People"], [nested, "plain"])
        self.assertFalse(before.merge_sidecar(self.folder / "none.xmp"))
        before.merge(lxbridge.Photo(), replace=False)
        before.clear()
        self.assertEqual((len(before), before), (0, lxbridge.Photo()))
        self.assertRaises(lxbridge.ToolkitError, lxbridge.Photo, "<broken")
        os.unlink(written)

    def test_types_and_documentation_are_whole(self):
        package = pathlib.Path(lxbridge.__file__).parent
        found = lxbridge.pool(self.sample)
        for kind, answer in [(lxbridge.types.Pool, found), (lxbridge.types.Attributes, found["attributes"]),
                             (lxbridge.types.Xmp, lxbridge.xmp(self.sample)), (lxbridge.types.Item, found["items"][0])]:
            self.assertEqual(list(kind.__annotations__), list(answer), kind.__name__)
        if shutil.which("mypy") is None:
            self.skipTest("no mypy here")
        program = self.folder / "typed.py"
        program.write_text(TYPED)
        allowed = self.folder / "allowed"
        allowed.write_text("lxbridge._lxbridge.Object\n")  # Only that its metaclass is that of pybind11.
        examples = [ROOT / "examples/keep_sidecar.py", ROOT / "examples/thread_folder.py"]
        checks = [["mypy", "--strict", "--scripts-are-modules", package, program, *examples], ["stubtest", "--allowlist", allowed, "lxbridge._lxbridge"]]
        for check in checks:
            done = subprocess.run(check, cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                                  env={**os.environ, "MYPYPATH": str(package.parent)})
            self.assertEqual(done.returncode, 0, done.stdout.decode())


if __name__ == "__main__":
    print(sys.executable, lxbridge.__file__, lxbridge.__version__)
    unittest.main()
