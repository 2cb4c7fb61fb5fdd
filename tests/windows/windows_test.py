#!/usr/bin/env python3
"""Checks the files of the Windows build, and compares its output with that of this machine's own build.

windows_test.py --built FOLDER --native FOLDER --wine PROGRAM --corpus FOLDER layout|hosts|example|command|same_output|many|ends
Status 77: what the test needs is not there.
"""
import argparse
import fcntl
import os
import pathlib
import re
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time
import zlib

SKIPPED = 77
EXPORTS = ["LxInterchangeDelete", "LxInterchangeGetXMP", "LxInterchangeInit", "LxInterchangeNew", "LxInterchangeTerm"]
SYSTEM = {"kernel32.dll", "msvcrt.dll", "shell32.dll"}
RUNTIME = {"libgcc_s_dw2-1.dll", "libstdc++-6.dll", "libwinpthread-1.dll"}

faults = []


def expect(holds, what):
    if not holds:
        faults.append(what)


def run(command, zone="Asia/Kolkata", **options):
    return subprocess.run(command, capture_output=True, env=dict(os.environ, TZ=zone), timeout=100, check=False, **options)


def lines(data):
    return data.replace(b"\r\n", b"\n")


def headers(objdump, file):
    """The exports by ordinal (name or None) and the imported ordinals or names by DLL."""
    text = run([objdump, "-p", str(file)]).stdout.decode()
    expect("file format pei-i386" in text, f"{file.name}: is a PE32 file for i386")
    base = re.search(r"Ordinal Base\s+(\d+)", text)
    addresses = re.findall(r"^\t\[ *\d+\] \+base\[ *(\d+)\] [0-9a-f]+ Export RVA", text, re.MULTILINE)
    exports = {int(ordinal): None for ordinal in addresses}
    names = text.rpartition("[Ordinal/Name Pointer] Table")[2]
    for index, name in re.findall(r"^\t\[ *(\d+)\] (\w+)$", names, re.MULTILINE):
        exports[int(base[1]) + int(index)] = name
    imports = {}
    for block in text.split("DLL Name: ")[1:]:
        dll, _, table = block.partition("\n")
        entries = []
        for line in table.splitlines()[1:]:
            entry = re.match(r"^\t([0-9a-f]+)\s+(\d+)\s+(\S+)", line)
            if not entry:
                break
            entries.append(int(entry[2]) if entry[3] == "<none>" else entry[3])
        imports[dll.strip()] = sorted(entries, key=str)
    return exports, imports


def layout(options):
    files = {name: headers(options.objdump, options.built / name)
             for name in ["LxBridge.dll", "LxHost.dll", "TAL.dll", "VeltoXMP.dll", "lxbridge.exe", "print_xmp.exe",
                          "edit_property.exe"]}
    expect(files["LxBridge.dll"][0] == dict(enumerate(EXPORTS, 1)), "LxBridge.dll exports its five functions, undecorated")
    listed = (pathlib.Path(__file__).resolve().parents[2] / "host" / "lxhost.def").read_text(encoding="utf-8")
    listed = {int(ordinal): name for name, ordinal in re.findall(r"^\s+(\w+)\s+@(\d+)$", listed, re.MULTILINE)}
    expect(files["LxHost.dll"][0] == listed, "LxHost.dll exports what its list says, undecorated")
    expect(files["TAL.dll"][0] == {5: None}, "TAL.dll exports its entry point by ordinal only")
    expect(files["VeltoXMP.dll"][0] == {1: None, 2: None}, "VeltoXMP.dll exports its entry points by ordinal only")
    own = {"LxBridge.dll": {"TAL.dll": [5], "VeltoXMP.dll": [1, 2]},
           "LxHost.dll": {"TAL.dll": [5], "VeltoXMP.dll": [1, 2]},
           "lxbridge.exe": {"TAL.dll": [5], "VeltoXMP.dll": [1, 2], "LxBridge.dll": EXPORTS}}
    example = files["edit_property.exe"][1]
    expect("LxBridge.dll" in example and "LxHost.dll" in example, "edit_property.exe has the libraries linked")
    del files["edit_property.exe"]
    for name, (_, imports) in files.items():
        others = {dll: entries for dll, entries in imports.items() if dll.lower() not in SYSTEM | RUNTIME}
        expect(others == own.get(name, {}), f"{name}: imports {others} besides the system's own")
        text = run([options.objdump, "-p", str(options.built / name)]).stdout.decode()
        oldest = re.findall(r"^Major(?:OSystem|Subsystem)Version\s+(\d+)\nMinor\w+\s+(\d+)", text, re.MULTILINE)
        expect(oldest == [("6", "1")] * 2, f"{name} says that it needs {oldest}, not Windows 7")
    for name in ["LxBridge.dll", "LxHost.dll", "VeltoXMP.dll", "lxbridge.exe"]:
        expect({"libgcc_s_dw2-1.dll", "libstdc++-6.dll"} <= set(files[name][1]), f"{name} has the shared C++ runtime")
    expect(all((options.built / name).is_file() for name in RUNTIME), "the C++ runtime lies beside")
    for name in ["LxBridge.dll", "LxHost.dll", "VeltoXMP.dll", "TAL.dll", "lxbridge.exe"]:
        resource = (options.built / name).read_bytes()
        named = [re.escape(text.encode("utf-16-le")) for text in ("OriginalFilename", name)]
        expect(re.search(rb"(?:\0)+".join(named), resource), f"{name} has a version resource")
    expect(b">true</longPathAware>" in resource and b">UTF-8</activeCodePage>" in resource, "lxbridge.exe has its manifest")
    imports = files["LxBridge.dll"][1]
    expect("DisableThreadLibraryCalls" in imports.get("KERNEL32.dll", []), "LxBridge.dll is not told of threads")
    expect({"_wfopen", "_setmode", "_isatty"} <= set(imports.get("msvcrt.dll", [])), "files are opened by wide paths")


def pictures(options, folder):
    """Copies of the pictures to compare over: built ones and, where they are there, real ones. By name, in order."""
    for program, argument in [("lx_make_sample", folder / "sample.jpg"), ("lx_fuzz_seeds", folder / "seeds")]:
        if (options.native / program).is_file():
            expect(run([options.native / program, argument]).returncode == 0, f"{program} runs")
    for file in sorted((folder / "seeds" / "file_to_xmp").glob("*")):
        shutil.move(file, folder / f"built-{file.name}")
    shutil.rmtree(folder / "seeds", ignore_errors=True)
    if options.corpus.is_dir():
        for file in options.corpus.iterdir():
            if file.is_file():
                shutil.copy(file, folder)
    # A name beyond every code page of one byte.
    shutil.copy(folder / "sample.jpg", folder / "Hafen \u65e5\u672c \U0001f4f7.jpg")
    return sorted(file.name for file in folder.iterdir())


def same(options, folder, arguments, what, **settings):
    ours = run([options.native / "lxbridge", *arguments], cwd=folder, **settings)
    if settings.get("stdin"):
        settings["stdin"].seek(0)
    theirs = run([options.wine, options.built / "lxbridge.exe", *arguments], cwd=folder, **settings)
    expect(theirs.stdout == ours.stdout, f"{what}: writes the same ({len(ours.stdout)} bytes, not {len(theirs.stdout)})")
    expect(lines(theirs.stderr) == ours.stderr, f"{what}: says {ours.stderr!r}, not {theirs.stderr!r}")
    expect(theirs.returncode == ours.returncode, f"{what}: ends with {ours.returncode}, not {theirs.returncode}")
    return ours


def hosts(options, folder):
    threads = "20000" if os.environ.get("LX_FULL") else "4000"
    for program, *photos in [["lx_load_test", "sample.jpg"], ["lx_windows_host_test", "sample.jpg", "damaged.jpg", threads]]:
        result = run([options.wine, options.built / f"{program}.exe", *photos], cwd=folder)
        expect(result.returncode == 0, f"{program}: {result.returncode} {(result.stdout + result.stderr).decode(errors='replace')}")


def example(options, folder):
    for name in ["sample.jpg", "damaged.jpg", "Hafen \u65e5\u672c \U0001f4f7.jpg"]:
        ours = run([options.native / "lxbridge", name], cwd=folder)
        theirs = run([options.wine, options.built / "print_xmp.exe", name], cwd=folder)
        expect(lines(theirs.stdout) == ours.stdout and theirs.returncode == 0, f"print_xmp prints the packet of {name}")


def command(options, folder):
    with open(folder / "sample.jpg", "rb") as photo:
        same(options, folder, ["-"], "standard input", stdin=photo)
    with open(folder / "sample.jpg", "rb") as photo:
        same(options, folder, ["pool", "--format", "json", "-"], "the pool of standard input", stdin=photo)
    same(options, folder, ["-"], "a pipe as standard input", input=(folder / "sample.jpg").read_bytes())
    same(options, folder, ["sample.jpg", "not there \u65e5.jpg", ".", "sample.jpg"], "files that cannot be opened")
    same(options, folder, ["--fromat", "sample.jpg"], "an unknown option")
    same(options, folder, ["--help"], "--help")
    # Whoever reads may go before the end.
    with subprocess.Popen([options.wine, options.built / "lxbridge.exe", "pool", "--format", "json"] + 400 * ["sample.jpg"],
                          cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
        process.stdout.read(10)
        process.stdout.close()
        expect(process.stderr.read() == b"", "a closed pipe ends it quietly")
    # No shell expands wildcards there.
    expect(run([options.wine, options.built / "lxbridge.exe", "samp*.jpg"], cwd=folder).stdout ==
           run([options.native / "lxbridge", "sample.jpg"], cwd=folder).stdout, "a wildcard is expanded")
    # Positions of more than 31 bits: a photograph whose file is longer than 2 GiB is read as here.
    shutil.copy(folder / "sample.jpg", folder / "long.jpg")
    os.truncate(folder / "long.jpg", 3 << 30)
    same(options, folder, ["long.jpg"], "a file of 3 GiB")


def same_output(options, folder):
    names = pictures(options, folder)
    expect(len(names) > 5, "there are pictures to compare")
    if b"no Brotli" in run([options.wine, options.built / "lxbridge.exe", "--version"]).stdout:
        names = [name for name in names if b"brob" not in (folder / name).read_bytes()[:4096]]
    # Dates take the machine's zone: one without and one with daylight saving time.
    for zone in ["Asia/Kolkata", "America/New_York"]:
        for form in [["xmp"], ["xmp", "--format", "json"], ["pool", "--format", "json"], ["pool", "--all"]]:
            if form[0] == "xmp" or zone == "Asia/Kolkata":
                same(options, folder, form + names, " ".join(form + [zone]), zone=zone)
    print(f"{len(names)} pictures")


def start(options, folder, arguments, **pipes):
    return subprocess.Popen([options.wine, options.built / "lxbridge.exe", *arguments], cwd=folder,
                            env=dict(os.environ, TZ="Asia/Kolkata"), **pipes)


def eventually(holds):
    until = time.monotonic() + 20
    while not holds():
        if time.monotonic() > until:
            return False
        time.sleep(0.02)
    return True


def many(options, folder):
    """Worker processes give the results of one process in its order, however the names come."""
    for i in range(100):
        if i % 7 != 3:
            shutil.copy(folder / "sample.jpg", folder / f"p{i}.jpg")
    names = [f"p{i}.jpg\n".encode() for i in range(100)]
    (folder / "list").write_bytes(b"".join(names))
    (folder / "long").write_bytes(b"".join(names * 170))
    table = ["--format", "csv", "--header", "--separator", "*\"? ", "--fields", "tiff:Make,exif:Flash/exif:Fired,dc:subject"]
    same(options, folder, table + ["-j2", "--summary", "--files-from", "list"], "a table by two workers")
    same(options, folder, ["pool", "--all", "-j3", "--summary", "--files-from", "list"], "pools by three workers")
    same(options, folder, ["pool", "--format", "json", "-j70", "--files-from", "list"],
         "more workers than a wait takes handles")
    # Lists as that system's editors write them, and folders below which paths are longer than 260 characters.
    (folder / "edited").write_bytes(b"\xef\xbb\xbf" + b"".join(names).replace(b"\n", b"\r\n"))
    ours = run([options.native / "lxbridge", "--format", "json", "--files-from", "list"], cwd=folder)
    theirs = run([options.wine, options.built / "lxbridge.exe", "--format", "json", "--files-from", "edited"], cwd=folder)
    expect(theirs.stdout == ours.stdout and lines(theirs.stderr) == ours.stderr, "a list with CR LF and a byte-order mark")
    deep = pathlib.Path("deep", *(4 * ["d" * 90]))
    (folder / deep).mkdir(parents=True)
    shutil.copy(folder / "sample.jpg", folder / deep)
    ours = run([options.native / "lxbridge", "--format", "json", "-r", "deep"], cwd=folder)
    theirs = run([options.wine, options.built / "lxbridge.exe", "--format", "json", "-r", "deep"], cwd=folder)
    expect(theirs.stdout.replace(b"\\\\", b"/") == ours.stdout != b"", f"a path of 370 characters: {theirs.stderr!r}")
    with open(folder / "sample.jpg", "rb") as photo:
        same(options, folder, ["--format", "json", "-j3"] + 20 * ["-"], "standard input by three workers", stdin=photo)
    arguments = ["--format", "json", "--files-from", "list"]
    ordered = run([options.native / "lxbridge", *arguments], cwd=folder)
    loose = run([options.wine, options.built / "lxbridge.exe", "--unordered", "-j3", *arguments], cwd=folder)
    expect(sorted(loose.stdout.splitlines()) == sorted(ordered.stdout.splitlines()), "the same lines in any order")
    expect(sorted(loose.stderr.splitlines()) == sorted(ordered.stderr.splitlines()), "the same messages in any order")
    # Names are worked on as they come.
    with open(folder / "out", "wb") as out, start(options, folder, ["--format", "json", "-j2", "--files-from", "-"],
                                                  stdin=subprocess.PIPE, stdout=out, stderr=subprocess.DEVNULL) as process:
        for i in range(0, 100, 35):
            process.stdin.write(b"".join(names[i:i + 35]))
            process.stdin.flush()
            there = sum(j % 7 != 3 for j in range(min(i + 35, 100)))
            expect(eventually(lambda: (folder / "out").read_bytes().count(b"\n") == there), f"{there} results of a slow list")
        process.stdin.close()
    expect((folder / "out").read_bytes() == ordered.stdout and process.returncode == 1, "a slow list is read to its end")


def write_slow_picture(path):
    """A PNG file whose texts inflate to eight gigabytes, which its own size of nearly two (most of it a hole) allows."""
    def chunk(name, data):
        return struct.pack(">I", len(data)) + name + data + bytes(4)

    text = chunk(b"zTXt", b"Raw profile type exif\0\0" + zlib.compress(bytes(60 << 20), 9))
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", 1, 1, 8, 0, 0, 0, 0)) + 130 * text)
        file.truncate(1_900_000_000)


def ends(options, folder):
    """Workers that hang, die or are interrupted while they read a file that takes very long."""
    (folder / "walked").mkdir()
    for i in range(40):
        shutil.copy(folder / "sample.jpg", folder / "walked" / f"p{i}.jpg")
    arguments = ["pool", "--format", "json", "-j2", "-r", "walked"]
    photos = run([options.native / "lxbridge", *arguments], cwd=folder).stdout
    slow = folder / "walked" / "hangs"
    write_slow_picture(slow)

    def readers():
        found = []
        for process in pathlib.Path("/proc").iterdir():
            try:
                if (process / "comm").read_text() == "lxbridge.exe\n":
                    found += [int(process.name) for file in (process / "fd").iterdir() if os.readlink(file) == str(slow)]
            except OSError:
                pass  # No process, or not any more.
        return found

    def waiting(output):
        return struct.unpack("i", fcntl.ioctl(output, termios.FIONREAD, bytes(4)))[0]

    def command_of(process):
        return int(pathlib.Path(f"/proc/{process.pid}/task/{process.pid}/children").read_text().split()[0])

    def expect_others(process, out, err, why):
        said = sorted(out.replace(b"\\\\", b"/").splitlines())
        expect(said == sorted(photos.splitlines()), f"the others are done where one file {why}")
        expect(lines(err) == b"lxbridge: walked\\\\hangs: %s\n" % why.encode(), f"a file is reported that {why}, not {err!r}")
        expect(process.returncode == 1, f"a file that {why} is a failed one")

    pipes = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE}
    process = run([options.wine, options.built / "lxbridge.exe", *arguments, "--timeout", "1.5"], cwd=folder)
    expect_others(process, process.stdout, process.stderr, "timed out")
    with start(options, folder, arguments, **pipes) as process:
        expect(eventually(readers), "a worker hangs and will crash")
        for reader in readers():
            os.kill(reader, signal.SIGFPE)  # Becomes an exception there.
        expect_others(process, *process.communicate(), "crashed (exception 0xC0000094)")
    with start(options, folder, arguments, **pipes) as process:
        expect(eventually(readers), "a worker hangs and its command is killed")
        os.kill(command_of(process), signal.SIGKILL)
        expect(eventually(lambda: not readers()), "no worker is left")
    with start(options, folder, [*arguments, "--unordered"], **pipes) as process:
        expect(eventually(lambda: readers() and waiting(process.stdout) > 32 * 1024), "a worker hangs, and the output is full")
        time.sleep(0.2)
        os.kill(command_of(process), signal.SIGINT)  # Becomes Control-C there.
        out, err = process.communicate()
        expect(out.endswith(b"\n") and err == b"", "an interruption leaves whole lines")
        expect(process.returncode == 0x3A, f"an interruption ends it as one, not with {process.returncode}")
        expect(eventually(lambda: not readers()), "no worker is left after an interruption")


def main():
    tests = {"hosts": hosts, "example": example, "command": command, "same_output": same_output, "many": many, "ends": ends}
    parser = argparse.ArgumentParser()
    for option in ["--built", "--native", "--wine", "--corpus"]:
        parser.add_argument(option, type=lambda path: pathlib.Path(path).resolve(), required=True)
    parser.add_argument("--objdump")
    parser.add_argument("test", choices=["layout", *tests])
    options = parser.parse_args()
    if options.test == "layout":
        layout(options)
    else:
        if run([options.wine, "--works"]).returncode != 0:
            print("no Wine here that runs 32-bit programs")
            return SKIPPED
        if not (options.native / "lxbridge").is_file() or not (options.native / "lx_make_sample").is_file():
            print("this machine's own build, to compare with, is not there")
            return SKIPPED
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            run([options.native / "lx_make_sample", folder / "sample.jpg"])
            shutil.copy(folder / "sample.jpg", folder / "Hafen \u65e5\u672c \U0001f4f7.jpg")
            sample = (folder / "sample.jpg").read_bytes()
            (folder / "damaged.jpg").write_bytes(sample.replace(b"</rdf:RDF>", b"</rdf:RDX>"))
            tests[options.test](options, folder)
    for fault in faults:
        print("not so:", fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
