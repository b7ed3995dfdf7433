"""The commands that the documents and manuals tell, and what runs each, so that none is told that does
not work. A new one is told here too."""
import re
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
DOCUMENTS = sorted([*ROOT.glob("*.md"), *ROOT.glob("Docs/*.md")])
MANUALS = sorted([*ROOT.glob("Packaging/linux/*.1"), *ROOT.glob("Packaging/linux/*.1.in")])

# How a text in code style begins that is a command rather than the name of something.
COMMAND = re.compile(
    r"(scripts/|cmake |cpack|sudo |man |cd |KESTROW_\w+=|build/\S*bin/[\w-]+( |$)|Tests/\S+\.py|"
    r"kestrow-score-service( --|$)|codesign|xcrun|spctl|log show|brew |footprint |sample )")


@dataclass(frozen=True)
class RunBy:
    """A script, test or workflow, and the words in it that run the command."""
    file: str
    words: str


@dataclass(frozen=True)
class Tried:
    """scripts/try-documents runs it: this form, where the command itself would take long."""
    command: str = ""


@dataclass(frozen=True)
class NotRun:
    why: str


_WORKFLOW = ".github/workflows/build.yml"
_INSTALL_TEST = "Tests/Packaging/install_test.py"
_INSTALLED_CHECK = "Tests/Desktop/installed_check.py"
_ON_A_MAC = NotRun("macOS")
_NEEDS_AN_IDENTITY = NotRun("macOS, with a developer's certificate")

COMMANDS = {
    "scripts/setup": RunBy("scripts/test", "scripts/setup"),
    "scripts/setup run": RunBy("scripts/run", "scripts/setup run"),
    "scripts/run": RunBy(_WORKFLOW, "run: scripts/run"),
    "scripts/test": RunBy(_WORKFLOW, "run: scripts/test"),
    "scripts/test -R Poller": Tried(),
    "scripts/check": RunBy(_WORKFLOW, "run: scripts/check"),
    "scripts/check-includes": RunBy("scripts/check", "scripts/check-includes"),
    "scripts/check-portability": RunBy("scripts/check", "scripts/check-portability"),
    "scripts/package": RunBy("scripts/try-package", "scripts/package"),
    "scripts/package -DKESTROW_BASE_URL=https://scores.example": Tried(),
    "scripts/try-package": Tried(),
    "scripts/try-documents": NotRun("it is what runs the others"),
    "scripts/icons": Tried(),
    "scripts/gallery": Tried(),
    "scripts/fuzz": Tried("scripts/fuzz --runs 2000"),
    "scripts/fuzz 600 text": Tried("scripts/fuzz 6 text"),
    "scripts/soak": Tried("scripts/soak --hours 6"),
    "scripts/memcheck": Tried(),
    "scripts/clicks": Tried("scripts/clicks 1"),
    "scripts/mutate": Tried("scripts/mutate --count 4 --below 0 Match.cpp"),
    "scripts/bench": Tried(),
    "cmake --preset debug": RunBy("scripts/test", "cmake --preset debug"),
    "cmake --build --preset debug": RunBy("scripts/test", "cmake --build --preset debug"),
    "cmake --preset package": RunBy("scripts/package", "cmake --fresh --preset package"),
    "cmake --build --preset package": RunBy("scripts/package", "cmake --build --preset package"),
    "sudo cmake --install build/package": RunBy(_INSTALL_TEST, '"cmake", "--install"'),
    "sudo apt install ./build/package/packages/*.deb": RunBy("scripts/try-package", "/tmp/kestrow*.deb"),
    "kestrow-score-service": RunBy(_INSTALLED_CHECK, "start_service("),
    "kestrow-score-service --help": RunBy(_INSTALL_TEST, '"--help"'),
    "kestrow-score-service --speed 60 --start chase": RunBy(_INSTALL_TEST, "examples"),
    "kestrow-score-service --fault status=503@every:3@/api/matches": RunBy(_INSTALL_TEST, "examples"),
    "man kestrow": RunBy("scripts/try-package", "man kestrow "),
    "man kestrow-score-service": RunBy("scripts/try-package", "man kestrow-score-service "),
    "KESTROW_KILLS=10000 build/debug/bin/core-tests --gtest_filter='*AKilledWriter*'":
        Tried("KESTROW_KILLS=20 build/debug/bin/core-tests --gtest_filter='*AKilledWriter*'"),
    "Tests/Desktop/panel_pictures_test.py": RunBy("Tests/Desktop/CMakeLists.txt", "*_test.py"),
    "Tests/Desktop/soak.py": Tried(
        "KESTROW_PROGRAM=build/debug/bin/kestrow KESTROW_SERVICE=build/debug/bin/kestrow-score-service "
        "/usr/bin/python3 -B Tests/Desktop/soak.py 2"),
    # On a Mac
    "cmake --preset release": RunBy(_WORKFLOW, "cmake --preset release"),
    "cmake --build --preset release": RunBy(_WORKFLOW, "cmake --build --preset release"),
    "cd build/release": RunBy(_WORKFLOW, "cd build/release"),
    "cpack": RunBy(_WORKFLOW, "cpack"),
    "codesign --verify --strict": RunBy(_WORKFLOW, "codesign --verify --strict"),
    "codesign --verify": _ON_A_MAC,
    "codesign --verify --strict --verbose=2 Kestrow.app": _ON_A_MAC,
    "brew --prefix icu4c": _ON_A_MAC,
    "footprint Kestrow": _ON_A_MAC,
    "sample Kestrow": _ON_A_MAC,
    "log show --last 1h --predicate 'process == \"Kestrow\"'": _ON_A_MAC,
    'cmake --preset release -DKESTROW_SIGNING_IDENTITY="Developer ID Application: …"': _NEEDS_AN_IDENTITY,
    'codesign --sign "Developer ID Application: …" Kestrow-….dmg': _NEEDS_AN_IDENTITY,
    "xcrun notarytool store-credentials kestrow": _NEEDS_AN_IDENTITY,
    "xcrun notarytool submit Kestrow-….dmg --keychain-profile kestrow --wait": _NEEDS_AN_IDENTITY,
    "xcrun notarytool log <id> --keychain-profile kestrow": _NEEDS_AN_IDENTITY,
    "xcrun stapler staple Kestrow-….dmg": _NEEDS_AN_IDENTITY,
    "spctl --assess --type open --context context:primary-signature -v Kestrow-….dmg": _NEEDS_AN_IDENTITY,
}


def _of_document(text: str) -> set[str]:
    fence = re.compile(r"^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
    indented = re.compile(r"(?<=\n\n)(?: {4}\S.*\n)+")
    blocks = [body for language, body in fence.findall(text) if not language]
    text = fence.sub("", text)
    blocks += indented.findall(text)
    lines = [line.strip() for block in blocks for line in block.splitlines()]
    return set(lines) | {" ".join(code.split()) for code in re.findall(r"`([^`]+)`", indented.sub("", text))}


def examples(manual: str) -> list[str]:
    """The command lines of a manual page's source."""
    blocks = re.findall(r"^\.nf\n(.*?)^\.fi", manual, re.MULTILINE | re.DOTALL)
    return [line.replace("\\-", "-") for block in blocks for line in block.splitlines()]


def told() -> dict[str, set[str]]:
    """Every command that is told, and the names of the documents that tell it."""
    found: dict[str, set[str]] = {}
    texts = [(document, _of_document(document.read_text(encoding="utf-8"))) for document in DOCUMENTS]
    texts += [(manual, set(examples(manual.read_text(encoding="utf-8")))) for manual in MANUALS]
    for file, lines in texts:
        for line in lines:
            without_comment = re.sub(r"\s+#.*", "", line)
            for command in without_comment.split(" && "):
                command = command.strip("()")
                if COMMAND.match(command):
                    found.setdefault(command, set()).add(file.name)
    return found
