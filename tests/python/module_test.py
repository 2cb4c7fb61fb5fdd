"""The module lxbridge: the same as the command says, errors, threads, processes."""
import ast
import concurrent.futures
import errno
import inspect
import json
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
                           ("H\u00e4fen \u65e5\u672c.jpg", whole)]:
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
        deep = lxbridge.xmp(self.folder / "deep.jpg")["properties"][0]["value"]
        for _ in range(25):
            self.assertEqual(deep["qualifiers"], {"v:Q": "q"})
            deep = deep["value"]["struct"]["v:A"]
        self.assertEqual(deep, "deep")
        self.assertLess(lxbridge.pool(self.folder / "half.jpg")["status"], 0)

    def test_takes_paths_as_open_does(self):
        expected = lxbridge.xmp(self.sample)
        self.assertEqual(expected["file"], str(self.sample))
        self.assertEqual(lxbridge.xmp(str(self.sample)), expected)
        self.assertEqual(lxbridge.xmp(os.fsencode(self.sample)), expected)
        strange = os.fsencode(self.folder) + b"/b\xe4d.jpg"  # No UTF-8.
        os.link(self.sample, strange)
        answer = lxbridge.xmp(strange)
        self.assertEqual(answer["properties"], expected["properties"])
        self.assertEqual(lxbridge.pool(answer["file"])["file"], os.fsdecode(strange))
        os.unlink(strange)
        for path, kind in [(3, TypeError), (None, TypeError), ("a\0b", ValueError)]:
            with self.assertRaises(kind):
                lxbridge.pool(path)

    def test_raises_what_open_would(self):
        cases = [(self.folder / "nowhere.jpg", lxbridge.NotFoundError, FileNotFoundError, errno.ENOENT),
                 ("", lxbridge.NotFoundError, FileNotFoundError, errno.ENOENT),
                 (self.folder, lxbridge.DirectoryError, IsADirectoryError, errno.EISDIR),
                 (self.sample / "below", lxbridge.ReadError, OSError, errno.ENOTDIR),
                 (self.folder / ("n" * 300), lxbridge.ReadError, OSError, errno.ENAMETOOLONG)]
        denied = self.folder / "denied.jpg"
        denied.write_bytes(b"")
        denied.chmod(0)
        if not os.access(denied, os.R_OK):  # The superuser may read everything.
            cases.append((denied, lxbridge.DeniedError, PermissionError, errno.EACCES))
        for path, kind, standard, number in cases:
            for read in (lxbridge.xmp, lxbridge.packet, lxbridge.pool):
                with self.subTest(path=str(path)[-20:], read=read.__name__), self.assertRaises(kind) as caught:
                    read(path)
                self.assertIsInstance(caught.exception, standard)
                self.assertIsInstance(caught.exception, lxbridge.Error)
                self.assertEqual((caught.exception.errno, caught.exception.filename), (number, path))
                self.assertTrue(caught.exception.strerror)
        self.assertTrue(issubclass(lxbridge.ToolkitError, (lxbridge.Error, RuntimeError)))

    def test_threads_take_turns(self):
        expected = [(lxbridge.xmp(file), lxbridge.pool(file), lxbridge.packet(file)) for file in self.files]
        with concurrent.futures.ThreadPoolExecutor(8) as threads:
            for _ in range(5):
                answers = threads.map(lambda file: (lxbridge.xmp(file), lxbridge.pool(file), lxbridge.packet(file)), self.files)
                self.assertEqual(list(answers), expected)

    def test_a_call_that_waits_holds_up_no_other_python_thread_and_no_fork(self):
        # Reading a named pipe waits for somebody to write.
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        expected = lxbridge.xmp(self.sample)
        with concurrent.futures.ThreadPoolExecutor(3) as threads:
            waits = threads.submit(lxbridge.xmp, pipe)
            time.sleep(0.2)  # On a busy machine it may not be in the library yet; then nothing is shown, but nothing fails.
            threads.submit(lambda: (time.sleep(0.2), pipe.write_bytes(b"")))
            behind = threads.submit(lxbridge.xmp, self.sample)
            child = os.fork()
            if child == 0:
                signal.alarm(20)
                os._exit(0 if lxbridge.xmp(self.sample) == expected else 1)
            self.assertEqual(os.waitpid(child, 0)[1], 0)
            self.assertEqual(waits.result(20)["properties"], [])
            self.assertEqual(behind.result(20), expected)

    def test_processes_work_side_by_side(self):
        expected = [lxbridge.pool(file) for file in self.files]
        for method in ("fork", "spawn"):
            with self.subTest(method), multiprocessing.get_context(method).Pool(2) as processes:
                self.assertEqual(processes.map(lxbridge.pool, self.files), expected)

    def test_the_readme_shows_what_works(self):
        readme = (pathlib.Path(__file__).resolve().parents[2] / "README.md").read_text(encoding="utf-8")
        (program,) = re.findall(r"^```python\n(.*?)^```", readme, re.MULTILINE | re.DOTALL)
        shutil.copy(self.sample, self.folder / "photo.jpg")
        printed = subprocess.run([sys.executable, "-c", program], cwd=self.folder, check=True, stdout=subprocess.PIPE).stdout
        self.assertIn(b"tiff Make Example Cameras\n", printed)
        self.assertTrue(printed.endswith(b"?>\n64\n"), printed[-20:])

    def test_the_stubs_tell_the_module(self):
        stub = ast.parse(pathlib.Path(lxbridge.__file__).with_name("__init__.pyi").read_text(encoding="utf-8"))
        told = {node.name: node for node in stub.body if isinstance(node, (ast.ClassDef, ast.FunctionDef))}
        self.assertEqual({name for name in told if not name.startswith("_")}, set(lxbridge.__all__))
        self.assertTrue(pathlib.Path(lxbridge.__file__).with_name("py.typed").exists())
        for name in lxbridge.__all__:
            thing = getattr(lxbridge, name)
            self.assertTrue(thing.__doc__, name)
            if isinstance(thing, type):
                self.assertEqual([base.id for base in told[name].bases], [base.__name__ for base in thing.__bases__], name)
            else:
                self.assertEqual([argument.arg for argument in told[name].args.args], list(inspect.signature(thing).parameters))
        pool = lxbridge.pool(self.sample)
        keys = {name: [field.target.id for field in told[name].body] for name in told if name.startswith("_")}
        self.assertEqual(keys["_Pool"], list(pool))
        self.assertEqual(keys["_Attributes"], list(pool["attributes"]))
        self.assertEqual(keys["_ItemWithoutChildren"] + keys["_Item"], list(pool["items"][0]))
        self.assertEqual(keys["_Xmp"], list(lxbridge.xmp(self.sample)))


if __name__ == "__main__":
    print(sys.executable, lxbridge.__file__, lxbridge.__version__)
    unittest.main()
