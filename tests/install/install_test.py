#!/usr/bin/env python3
"""The installed tree and the packages, as somebody has them who never saw the build.

tree         installs, moves the tree, and looks for traces of the old place; runs the command
program      the programs and commands of docs/install.md, as they stand there, against a moved tree
subproject   its last program, configured with LxBridge as a part (and built, with LX_FULL set)
packages     the Debian packages (with LX_FULL set): their fields and files, and the command unpacked
completions  of the shells, against --help; that of bash is also asked
"""
import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

parser = argparse.ArgumentParser()
parser.add_argument("what")
for option in ("source", "built", "cmake", "libdir", "sample"):
    parser.add_argument("--" + option, required=True)
args = parser.parse_args()
SOURCE, BUILT = pathlib.Path(args.source), pathlib.Path(args.built)
EXPORTS = {"LxBridge": "api/lxbridge.map", "LxHost": "host/lxhost.map", "TAL": "outside/broker/tal.map",
           "VeltoXMP": "outside/xmp/velto_xmp.map"}
faults = []


def check(holds, what):
    if not holds:
        faults.append(what)


def need(*programs):
    for program in programs:
        if shutil.which(program) is None:
            print(f"skipped: there is no {program}")
            sys.exit(77)


def run(*command, **options):
    environment = {name: value for name, value in os.environ.items() if name != "LD_LIBRARY_PATH"}
    environment.update(options.pop("env", {}))
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, env=environment, **options)
    if done.returncode != 0:
        sys.exit(f"{command}: status {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def dynamic(file, tag):
    return re.findall(rf"\({tag}\).*\[(.*)\]", run("readelf", "-dW", file))


def install(scratch):
    """The prefix: installed in one place, and moved."""
    old = scratch / "first" / "prefix"
    run(args.cmake, "--install", BUILT, "--prefix", old)
    prefix = scratch / "second" / "moved prefix"
    prefix.parent.mkdir()
    old.rename(prefix)
    return old, prefix


def sample(folder):
    file = folder / "photo.jpg"
    run(args.sample, file)
    return file


def check_command(command, photo):
    check(run(command, photo) == run(BUILT / "bin/lxbridge", photo), f"{command} prints something else than the build's")


def check_tree(scratch):
    old, prefix = install(scratch)
    for file in sorted(path for path in prefix.rglob("*") if path.is_file()):
        content = file.read_bytes()
        for place in (old, SOURCE, BUILT):
            check(str(place).encode() not in content, f"{file} names {place}")
        if content.startswith(b"\x7fELF"):
            check(not dynamic(file, "RPATH"), f"{file} has an RPATH")
            for entry in [entry for path in dynamic(file, "RUNPATH") for entry in path.split(":")]:
                check(entry.startswith("$ORIGIN"), f"{file} looks in '{entry}'")  # '' is the current folder.
    for library, script in EXPORTS.items():
        file = prefix / args.libdir / f"lib{library}.so"
        check(dynamic(file, "SONAME") == [f"lib{library}.so.1"], f"{file} is called {dynamic(file, 'SONAME')}")
        listed = [f"{name}@@{node}" if node else name
                  for node, names in re.findall(r"^(\S*) ?\{(.*?)^\}", (SOURCE / script).read_text(), re.MULTILINE | re.DOTALL)
                  for name in re.findall(r"^\s+(\w+);$", names, re.MULTILINE)]
        exported = re.findall(r"^(\S+) [^A]", run("nm", "-DP", "--defined-only", file), re.MULTILINE)  # A: a node.
        check(exported == listed != [], f"{file} exports {exported}")
    for file in ("share/man/man1/lxbridge.1*", "share/bash-completion/completions/lxbridge", "include/lxbridge/lxbridge.h"):
        check(list(prefix.glob(file)), f"there is no {file}")
    check_command(prefix / "bin/lxbridge", sample(scratch))


def document(scratch):
    """Writes the programs of the page into the folder. The commands, by name."""
    commands = {}
    for language, name, text in re.findall(r"^```(\w+) (\S+)\n(.*?)^```$", (SOURCE / "docs/install.md").read_text(),
                                           re.MULTILINE | re.DOTALL):
        if language == "sh":
            commands[name] = text
        else:
            (scratch / name).parent.mkdir(exist_ok=True)
            (scratch / name).write_text(text)
    return commands


def check_program(scratch):
    _, prefix = install(scratch)
    sample(scratch)
    commands = document(scratch)
    check(set(commands) == {"cmake", "pkg-config"}, f"the page has {set(commands)}")
    if not shutil.which("pkg-config"):
        print("without pkg-config, which is not there")
        del commands["pkg-config"]
    # The prefix's blank is too much for the page's short lines of a shell; a link has none.
    link = scratch / "prefix"
    link.symlink_to(prefix)
    for name, text in commands.items():
        text = text.replace("/lib/", f"/{args.libdir}/")
        printed = run("sh", "-euc", text, cwd=scratch, env={"PREFIX": str(prefix if name == "cmake" else link)})
        check(printed.endswith("Example Cameras\n" * 2), f"{name}: {printed}")


def check_subproject(scratch):
    document(scratch)
    build = scratch / "build"
    run(args.cmake, "-G", "Ninja", "-S", scratch / "whole", "-B", build, f"-DFETCHCONTENT_SOURCE_DIR_LXBRIDGE={SOURCE}")
    steps = run(args.cmake, "--build", build, "--target", "all", "--", "-n", "-v")
    made = set(re.findall(r"-o (?:_deps/lxbridge-build/)?(lib/\S+|bin/\S+|show)(?= )", steps))
    libraries = {f"lib/lib{library}.so.1.0.0" for library in EXPORTS}
    check(made == libraries | {"show"}, f"as a part it makes {made}")
    if os.environ.get("LX_FULL"):
        run(args.cmake, "--build", build)
        check(run(build / "show", sample(scratch)) == "Example Cameras\n", "the program of the whole tree prints something else")


def check_packages(scratch):
    if not os.environ.get("LX_FULL"):
        print("skipped: packages are built with LX_FULL set")
        sys.exit(77)
    need("dpkg-deb", "dpkg-shlibdeps", "file")
    run(args.cmake, "--workflow", "--preset", "package", cwd=SOURCE)
    packages = sorted((SOURCE / "build/package/packages").glob("*.deb"))
    root = scratch / "root"
    found = {}
    for package in packages:
        fields = dict(re.findall(r"^(\S+): (.*)$", run("dpkg-deb", "-f", package), re.MULTILINE))
        name = fields["Package"]
        found[name] = fields["Depends"]
        run("dpkg-deb", "-x", package, root)
        for mode, owner, path in re.findall(r"^(\S+) (\S+) .{28,38}? (\./\S*)", run("dpkg-deb", "-c", package), re.MULTILINE):
            wanted = "l" if mode[0] == "l" else "d" if mode[0] == "d" else "x" if "/bin/" in path else "-"
            check(owner == "root/root" and mode == {"l": "lrwxrwxrwx", "d": "drwxr-xr-x", "x": "-rwxr-xr-x",
                                                    "-": "-rw-r--r--"}[wanted], f"{name}: {mode} {owner} {path}")
        check("Expat" in (root / f"usr/share/doc/{name}/copyright").read_text(), f"{name} has no licence")
    modules = list(root.rglob("lxbridge/__init__.py"))
    check(set(found) == {"liblxbridge1", "liblxbridge-dev", "lxbridge"} | ({"python3-lxbridge"} if modules else set()),
          f"there are {set(found)}")
    version = fields["Version"]
    for name, depends in found.items():
        wanted = r"libc6 .*libexpat1 .*libstdc\+\+6 " if name == "liblxbridge1" else re.escape(f"liblxbridge1 (= {version})")
        check(re.search(wanted, depends), f"{name} {version} depends on {depends}")
    for file in [path for path in root.rglob("*") if path.is_file() and not path.is_symlink()]:
        if file.read_bytes()[:4] == b"\x7fELF":
            headers, entries = run("readelf", "-lW", file), run("readelf", "-dW", file)
            check("GNU_RELRO" in headers and "NOW" in entries and "PATH" not in entries and
                  (" PIE" in entries) == ("/bin/" in str(file)), f"{file}: {entries}")
            check("__stack_chk_fail" in run("readelf", "--dyn-syms", "-W", file), f"{file} has no stack protector")
    dangling = [path for path in root.rglob("*") if path.is_symlink() and not path.exists()]
    check(not dangling, f"links to nothing: {dangling}")
    if shutil.which("lintian"):
        run("lintian", "--allow-root", "--fail-on", "error", *packages)
    libraries = {"LD_LIBRARY_PATH": str(next(root.rglob("libLxBridge.so.1")).parent)}
    photo = sample(scratch)
    check(run(root / "usr/bin/lxbridge", photo, env=libraries) == run(BUILT / "bin/lxbridge", photo), "the command prints else")
    for module in modules:
        run("/usr/bin/python3", "-c", "import lxbridge", env={"PYTHONPATH": str(module.parent.parent), **libraries})


def check_completions(scratch):
    folder = SOURCE / "tools/completions"
    texts = {name: run(BUILT / "bin/lxbridge", "help", *name.split()) for name in ("", "xmp", "pool", "fields")}
    of_command = {name: set(re.findall(r"(?<![\w-])(--?[a-zA-Z0-9][a-z-]*)(?!\w)", text[text.index("\n\n"):])) for name, text in texts.items()}
    named = set().union(*of_command.values())
    fish = (folder / "lxbridge.fish").read_text()
    given = {
        "fish": {"--" + word for word in re.findall(r"^complete .* -l ([\w-]+)", fish, re.M)}
                | {"-" + word for word in re.findall(r"^complete .* -s (\w) ", fish, re.M)},
        "zsh": set(re.findall(r"(?<![\w-])--?\w[\w-]*(?=[\[=+,}])", (folder / "_lxbridge").read_text()))}
    for shell, options in given.items():
        check(options == named, f"{shell} and the help differ in {options ^ named}")
    need("bash")
    words = {line: set(text.split()) for line, text in {
        "lxbridge po": "pool", "lxbridge --format =": "rdf json flat csv tsv", "lxbridge xmp --format c": "csv",
        "lxbridge pool --format ": "text json html", "lxbridge pool --format = t": "text", "lxbridge -- --f": "", "lxbridge --fields = tiff : Mak": "Make",
        "lxbridge xmp x --su": "--summary", "lxbridge --files-from --": ""}.items()}
    for name in ("xmp", "pool", "fields"):
        words[f"lxbridge {name} -"] = of_command[name] | {"--", "-h", "--help", "-V", "--version"}
    script = ('source "$1"; compopt() { :; }; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMPREPLY=(); _lxbridge; '
              'printf "%s\\n" "${COMPREPLY[@]}"')
    for line, wanted in words.items():
        given = run("bash", "-uc", script, "-", folder / "lxbridge.bash", str(BUILT / "bin/lxbridge"), *line.split(" ")[1:], cwd=scratch).split()
        check(set(given) == wanted, f"bash, {line}: {given}")


with tempfile.TemporaryDirectory() as folder:
    globals()["check_" + args.what](pathlib.Path(folder))
print("\n".join(faults))
sys.exit(bool(faults))
