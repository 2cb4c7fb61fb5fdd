"""Has CMake build the extension and the libraries that it needs, and puts them into the package. Everything else that a wheel
needs is in pyproject.toml."""
import os
import pathlib
import re
import shutil
import sys
import tempfile

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = pathlib.Path(__file__).resolve().parent
LIBRARIES = ["LxBridge", "TAL", "VeltoXMP"]  # What the extension loads; they find each other in one folder.


class CMakeBuild(build_ext):
    """Installs the extension and its libraries into the package folder."""

    def build_extension(self, ext):
        tree = pathlib.Path(self.build_temp).resolve() / "cmake"
        package = pathlib.Path(self.get_ext_fullpath(ext.name)).resolve().parent
        generator = ["-G", "Ninja"] if shutil.which("ninja") else []
        with tempfile.TemporaryDirectory() as staged:
            self.spawn(["cmake", "-S", str(ROOT), "-B", str(tree), *generator, "-DCMAKE_BUILD_TYPE=Release",
                        f"-DCMAKE_INSTALL_PREFIX={staged}", "-DCMAKE_INSTALL_LIBDIR=lxbridge", "-DLXBRIDGE_PYTHON_DIR=.",
                        f"-DLXBRIDGE_PYTHON={sys.executable}", "-DLXBRIDGE_BUILD_TESTS=OFF", "-DLXBRIDGE_BUILD_BENCH=OFF"])
            jobs = str(self.parallel or os.cpu_count() or 1)
            self.spawn(["cmake", "--build", str(tree), "--parallel", jobs, "--target", "lxbridge_python", "LxHost", *LIBRARIES])
            for component in "python", "library":
                self.spawn(["cmake", "--install", str(tree), "--strip", "--component", component, "--prefix", staged])
            package.mkdir(parents=True, exist_ok=True)
            for file in (pathlib.Path(staged) / "lxbridge").iterdir():
                name, ending, version = file.name.partition(".so")
                # Of a library only the name that it is loaded by: a wheel has no links.
                if file.suffix == ".so" or (ending and name[3:] in LIBRARIES and re.fullmatch(r"\.\d+", version)):
                    shutil.copy2(file, package / file.name)

    def get_outputs(self):
        return [str(file) for file in pathlib.Path(self.build_lib, "lxbridge").glob("*.so*")]


version = re.search(r"project\(LxBridge VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text(encoding="utf-8"))[1]
(ROOT / "build").mkdir(exist_ok=True)
setup(version=version, ext_modules=[Extension("lxbridge._lxbridge", [])], cmdclass={"build_ext": CMakeBuild},
      options={"egg_info": {"egg_base": "build"}})
