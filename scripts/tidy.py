"""Runs clang-tidy over the tree, on every core. scripts/tidy prepares its input: build/tidy/native/compile_commands.json and, if
the cross compiler is installed, build/tidy/win32/compile_commands.json.

Most of the time goes into reading the same headers. So the tests of a program, which have the largest headers, are included
in one generated file (a unit) and checked together; tests that have helpers of the same name are checked separately. The
analyzer skips included files: everything but the tests, for which it is meant, is checked file by file.
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

TIDY = "clang-tidy-14"
ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/tidy"
UNITS = BUILD / "units"
CLEAN = BUILD / "clean.json"
CROSS = "i686-w64-mingw32"
# The analyzer's limit of steps per function, 225000 by default. A quarter of the time finds nearly everything.
ANALYZER_STEPS = 50000
NOT_CLANGS = {"-fno-keep-inline-dllexport"}  # Options that only GCC has.
# Thousands of constants and no code.
TABLES = re.compile(r"kit/model/tables/.*|.*_table\.cpp")


class Job:
    """One run of clang-tidy: over a file, or over a unit that includes several."""

    def __init__(self, path, command, members=()):
        self.path, self.command, self.members = path, command, members

    @property
    def name(self):
        return str(self.path.relative_to(ROOT))

    def write(self):
        self.path.write_text("".join(f'#include "{member}"\n' for member in self.members))


def compile_commands(database):
    """How each file is compiled; one way, though several targets may compile it, and without the file and its object."""
    found = {}
    for entry in json.loads(database.read_text()) if database.exists() else []:
        found.setdefault(pathlib.Path(entry["file"]), shlex.split(entry["command"])[: -len("-o OBJECT -c FILE".split())])
    return found


def cross_compile_commands():
    """The same for the other system: its compiler is told to clang by its headers."""
    found = compile_commands(BUILD / "win32/compile_commands.json")
    if found:
        headers = subprocess.run([f"{CROSS}-g++-posix", "-print-file-name=include/c++"], capture_output=True, text=True, check=True)
        cxx = pathlib.Path(headers.stdout.strip())
        for file, command in found.items():
            command[0] = "clang" if file.suffix == ".c" else "clang++"
            command[:] = [word for word in command if word not in NOT_CLANGS]
            command.append(f"--target={CROSS}")
            if file.suffix != ".c":
                command += ["-isystem", str(cxx), "-isystem", str(cxx / CROSS)]
    return found


def make_jobs(files):
    native, cross = compile_commands(BUILD / "native/compile_commands.json"), cross_compile_commands()
    jobs, together, left_out = [], {}, []
    for file in files:
        command = native.get(file) or cross.get(file)
        if not command:
            left_out.append(file)
        elif file in native and file.is_relative_to(ROOT / "tests") and file.suffix == ".cpp":
            together.setdefault((file.parent, tuple(command)), []).append(file)
        else:
            jobs.append(Job(file, command))
    UNITS.mkdir(parents=True, exist_ok=True)
    # A unit's checks are those of the tests; clang-tidy looks for them next to the unit, and for the tree's in the
    # folders above.
    (UNITS / ".clang-tidy").write_text((ROOT / "tests/.clang-tidy").read_text())
    for (folder, command), members in together.items():
        if len(members) == 1:
            jobs.append(Job(members[0], list(command)))
            continue
        stem = "_".join(folder.relative_to(ROOT).parts)
        number = sum(job.path.name.startswith(stem + "-") for job in jobs)
        jobs.append(Job(UNITS / f"{stem}-{number}.cpp", list(command), members))
        jobs[-1].write()
    return jobs, left_out


class Hashes:
    """The inputs of a job's findings: the files of the tree that it reads, its command and the checks."""

    INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*["<]([^">]+)[">]', re.MULTILINE)

    def __init__(self, options):
        version = subprocess.run([TIDY, "--version"], capture_output=True, text=True, check=True).stdout
        configuration = [path.read_text() for path in sorted([*ROOT.glob(".clang-tidy"), *ROOT.glob("*/.clang-tidy")])]
        self.common = json.dumps([version, configuration, options])
        self.texts = {}

    def read(self, path):
        if path not in self.texts:
            text = path.read_text(errors="replace") if path.is_file() else None
            self.texts[path] = (text, self.INCLUDE.findall(text) if text else [])
        return self.texts[path]

    def of(self, job):
        folders = [pathlib.Path(word[2:]) for word in job.command if word.startswith("-I") and len(word) > 2]
        digest = hashlib.sha256(json.dumps([self.common, job.command]).encode())
        pending, seen = [job.path], {job.path}
        while pending:
            path = pending.pop()
            text, includes = self.read(path)
            digest.update(f"{path}\0{text}\0".encode())
            for include in includes:
                for folder in [path.parent, *folders]:
                    candidate = pathlib.Path(os.path.normpath(folder / include))
                    if self.read(candidate)[0] is not None:
                        if candidate not in seen:
                            seen.add(candidate)
                            pending.append(candidate)
                        break
        return digest.hexdigest()


def run(job, options):
    extra = ["--checks=-bugprone-suspicious-include"] if job.members else []  # The members are not headers.
    done = subprocess.run([TIDY, "--quiet", "-p", str(UNITS), *options, *extra, str(job.path)], capture_output=True, text=True)
    return done.returncode == 0, done.stdout or done.stderr


def tidy(job, options):
    """Whether a job is clean, and what was found. The members that keep a unit from being compiled are looked at one by one."""
    clean, findings = run(job, options)
    alone = []
    while not clean and job.members and "[clang-diagnostic-error]" in findings:
        wrong = set(re.findall(r"^(\S+?):\d+:\d+: error: .*\[clang-diagnostic-error\]$", findings, re.MULTILINE))
        apart = [member for member in job.members if str(member) in wrong] or job.members
        alone += apart
        job = Job(job.path, job.command, [member for member in job.members if member not in apart])
        job.write()
        clean, findings = run(job, options)
    results = [(clean, findings), *(run(Job(member, job.command), options) for member in alone)]
    return all(clean for clean, _ in results), "".join(findings for clean, findings in results if not clean)


def sources():
    """The sources of the tree that clang-tidy looks at."""
    listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.c", "*.cpp"], cwd=ROOT,
                            capture_output=True, text=True, check=True).stdout.split("\n")
    return [ROOT / name for name in listed if name and not TABLES.fullmatch(name) and (ROOT / name).exists()]


def changed():
    """Those that differ from the main branch, or whose headers do."""
    def git(*words):
        done = subprocess.run(["git", *words], cwd=ROOT, capture_output=True, text=True)
        return done.stdout.split() if done.returncode == 0 else []
    base = git("merge-base", "HEAD", os.environ.get("LX_TIDY_SINCE", "origin/main")) or ["HEAD"]
    names = git("diff", "--name-only", *base) + git("ls-files", "--others", "--exclude-standard")
    stems = {(ROOT / name).with_suffix("") for name in names}
    return [file for file in sources() if file.with_suffix("") in stems]


def main(arguments):
    options = []
    if "--deep" in arguments:
        arguments.remove("--deep")
    else:
        for word in ("-Xclang", "-analyzer-config", "-Xclang", f"max-nodes={ANALYZER_STEPS}"):
            options.append(f"--extra-arg={word}")
    if "--changed" in arguments:
        files = changed()
    elif arguments:
        files = [pathlib.Path(os.path.normpath(ROOT / argument)) for argument in arguments]
    else:
        files = sources()
    jobs, left_out = make_jobs(files)
    if left_out:
        print("tidy: left out, nothing here compiles them:", *[file.relative_to(ROOT) for file in left_out], file=sys.stderr)
    database = []
    for job in jobs:
        for file in [job.path, *job.members]:
            database.append({"directory": str(UNITS), "file": str(file), "arguments": [*job.command, "-c", str(file)]})
    (UNITS / "compile_commands.json").write_text(json.dumps(database))

    hashes = Hashes(options)
    known = json.loads(CLEAN.read_text()) if CLEAN.exists() else {}
    digests = {job.name: hashes.of(job) for job in jobs}
    pending = [job for job in jobs if known.get(job.name) != digests[job.name]]
    # Longest first, so that no core has a long one left at the end.
    pending.sort(key=lambda job: (len(job.members), job.path.stat().st_size), reverse=True)
    clean_all = True
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as executor:
        futures = {executor.submit(tidy, job, options): job for job in pending}
        for future in concurrent.futures.as_completed(futures):
            job = futures[future]
            clean, findings = future.result()
            if clean:
                known[job.name] = digests[job.name]
            else:
                known.pop(job.name, None)
                clean_all = False
                print(findings, end="", flush=True)
    CLEAN.write_text(json.dumps(known, indent=0))
    print(f"tidy: {len(files) - len(left_out)} files, {len(jobs) - len(pending)} of {len(jobs)} runs known to be clean", file=sys.stderr)
    return 0 if clean_all else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
