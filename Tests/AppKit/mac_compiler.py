"""Checks Objective-C++ for macOS on a system without Apple's headers: clang knows the target, libc++ is
the standard library that Macs have, and Declarations/ declares what we use of Apple's frameworks.

What this proves is agreement with our own declarations. A declaration that is wrong passes here and
fails on a Mac."""
import concurrent.futures
import functools
import os
import pathlib
import re
import subprocess
import tempfile

import clang.cindex as libclang

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
COMPILER = os.environ.get("KESTROW_CLANG", "clang++-19")
LLVM = pathlib.Path("/usr/lib/llvm-19")
MINIMUM_SYSTEM = "13.4"
TARGETS = [f"{processor}-apple-macos{MINIMUM_SYSTEM}" for processor in ("arm64", "x86_64")]


def _warnings() -> list[str]:
    """The same as the build uses on a Mac."""
    text = (ROOT / "cmake" / "Warnings.cmake").read_text(encoding="utf-8")
    lists = [re.search(rf"set\({name}\s([^)]*)\)", text)[1].split()
             for name in ("KESTROW_WARNINGS", "KESTROW_OBJC_WARNINGS")]
    return [flag for flags_of_list in lists for flag in flags_of_list]


WARNINGS = _warnings()


def sources() -> list[pathlib.Path]:
    return sorted((ROOT / "Kestrow").rglob("*.mm"))


def tests() -> list[pathlib.Path]:
    """What runs on a Mac only, and is compiled here."""
    return sorted(HERE.glob("*.mm"))


def classes() -> list[pathlib.Path]:
    """The files that define an Objective-C class."""
    return [file for file in sources() if "@implementation" in file.read_text(encoding="utf-8")]


@functools.cache
def _output(*command: str) -> str:
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip()


def flags(target: str) -> list[str]:
    headers = pathlib.Path("/usr/include")
    systems = [LLVM / "include/c++/v1", HERE / "Shim", HERE / "Declarations",
               headers / _output("gcc", "-print-multiarch"), headers]
    return [
        "-resource-dir", _output(COMPILER, "-print-resource-dir"),
        "-x", "objective-c++", "-std=c++23", "-target", target, "-fobjc-arc",
        # Only the folders named here: the compiler would look for Apple's own.
        "-nostdlibinc", *(argument for folder in systems for argument in ("-isystem", str(folder))),
        # The GNU C library has a macro of this name, and libc++ wants all that it has to offer but
        # its own table of characters.
        "-U__nonnull", "-D_GNU_SOURCE", "-D__NO_CTYPE",
        "-I", str(ROOT), *WARNINGS]


@functools.cache
def _common_headers() -> tempfile.TemporaryDirectory:
    return tempfile.TemporaryDirectory()


@functools.cache
def _prepared(target: str) -> list[str]:
    """The flags with the headers that all files share compiled once. A file that forgets to include one
    of them passes with these."""
    header = HERE / "CommonHeaders.hpp"
    made = pathlib.Path(_common_headers().name) / f"{target}.pch"
    _output(COMPILER, *flags(target), "-x", "objective-c++-header", str(header), "-o", str(made))
    return [*flags(target), "-include-pch", str(made)]


def _run(arguments: list[str]) -> str:
    result = subprocess.run([COMPILER, *arguments], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            text=True, check=False)
    return result.stdout if result.returncode or result.stdout else ""


def syntax(file: pathlib.Path, target: str, *more_flags: str) -> str:
    """What the compiler says against the file; nothing when it is right."""
    return _run([*_prepared(target), *more_flags, "-fsyntax-only", str(file)])


def portability(file: pathlib.Path) -> str:
    """What the compiler says against a file, C++ or Objective-C++, that must include all it uses."""
    return _run([*flags(TARGETS[0]), "-DKESTROW_BASE_URL=\"\"", "-DKESTROW_VERSION=\"\"",
                 "-fsyntax-only", str(file)])


def analysis(file: pathlib.Path) -> str:
    """What the static analyser says against the file."""
    return _run([*_prepared(TARGETS[0]), "--analyze", "--analyzer-output", "text",
                 "-Xclang", "-analyzer-werror", "-o", os.devnull, str(file)])


def _implementations(node):
    for child in node.get_children():
        if child.kind in (libclang.CursorKind.OBJC_IMPLEMENTATION_DECL,
                          libclang.CursorKind.OBJC_CATEGORY_IMPL_DECL):
            yield child
        elif child.kind in (libclang.CursorKind.NAMESPACE, libclang.CursorKind.LINKAGE_SPEC,
                            libclang.CursorKind.UNEXPOSED_DECL):
            yield from _implementations(child)


def _overridden(method) -> int:
    """How many methods of superclasses and protocols the method stands for."""
    found = libclang.POINTER(libclang.Cursor)()
    count = libclang.c_uint()
    libclang.conf.lib.clang_getOverriddenCursors(
        method, libclang.byref(found), libclang.byref(count))
    if found:
        libclang.conf.lib.clang_disposeOverriddenCursors(found)
    return count.value


def undeclared_methods(file: pathlib.Path) -> str:
    """The methods that a class of ours defines and that no interface, protocol or superclass declares,
    one a line: nobody calls such a method, so it is a misspelt one."""
    unit = libclang.Index.create().parse(str(file), args=_prepared(TARGETS[0]))
    errors = [str(problem) for problem in unit.diagnostics if problem.severity >= 3]
    if errors:
        return "\n".join(errors)
    kinds = (libclang.CursorKind.OBJC_INSTANCE_METHOD_DECL, libclang.CursorKind.OBJC_CLASS_METHOD_DECL)
    lines = []
    for implementation in _implementations(unit.cursor):
        for method in implementation.get_children():
            if method.kind in kinds and method.canonical == method and not _overridden(method):
                lines.append(f"{file}:{method.location.line}: nothing declares "
                             f"[{implementation.spelling} {method.spelling}]")
    return "\n".join(lines)


def findings(check, files: list[pathlib.Path], *arguments) -> str:
    """The check's findings for the files, on every core."""
    for target in TARGETS:
        _prepared(target)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        found = pool.map(lambda file: check(file, *arguments), files)
        return "\n".join(text for text in found if text)
