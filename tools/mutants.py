#!/usr/bin/python3
"""Would the tests notice? Changes single operators in libs/ and counts the changes that a test catches.

All chosen changes are compiled into one build, each behind a switch that the environment variable
KEL_MUTANT turns on, so that trying one costs no compilation. A first run finds out which tests reach
which change; then every change is run against those tests until one of them fails.

Needs python3-clang-14 and a project that builds. Works on a copy in build/mutants.
"""
import argparse
import collections
import concurrent.futures
import json
import os
import pathlib
import random
import re
import resource
import shlex
import shutil
import subprocess
import sys
import time

from clang import cindex
from clang.cindex import CursorKind

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutants"
SOURCE = WORK / "source"
BUILD = SOURCE / "build" / "dev"

SWAPS = {
    "==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "+=": "-=", "-=": "+=",
}
COMPARISONS = {"operator" + sign for sign in ("==", "!=", "<", "<=", ">", ">=")}
# Where an expression has to be known to the compiler, or is no part of what runs.
NO_PLACE = {CursorKind.CASE_STMT, CursorKind.STATIC_ASSERT, CursorKind.ENUM_CONSTANT_DECL, CursorKind.PARM_DECL}
# Not about what the library does; the package is built again by its test.
NOT_RUN = "^(package|hardening)$"

SWITCH = """#include <cstdio>
#include <cstdlib>
namespace {
[[maybe_unused]] bool kelMutant(int number)
{
    static const int active = std::getenv("KEL_MUTANT") ? std::atoi(std::getenv("KEL_MUTANT")) : 0;
    static const char *const log = std::getenv("KEL_MUTANT_LOG");
    if (log != nullptr) {
        static bool seen[100000] = {};
        if (!seen[number]) {
            seen[number] = true;
            if (std::FILE *file = std::fopen(log, "a")) {
                std::fprintf(file, "%d\\n", number);
                std::fclose(file);
            }
        }
    }
    return number == active;
}
}
#line 1
"""

Site = collections.namedtuple("Site", "file line start end left old new right text")


def run(*command, **options):
    return subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)


def copy_project():
    SOURCE.mkdir(parents=True, exist_ok=True)
    names = run("git", "ls-files", cwd=ROOT).stdout.splitlines()
    for name in names:
        target = SOURCE / name
        target.parent.mkdir(parents=True, exist_ok=True)
        if not target.exists() or target.read_bytes() != (ROOT / name).read_bytes():
            shutil.copy2(ROOT / name, target)
    if not (SOURCE / ".git").exists():  # tests that ask for the project's files
        run("git", "init", "-q", cwd=SOURCE)
        run("git", "add", "-A", cwd=SOURCE)


def build(keep_going=False):
    configured = run("cmake", "--preset", "dev", cwd=SOURCE)
    if configured.returncode != 0:
        sys.exit(configured.stdout)
    return run("ninja", "-C", str(BUILD), *(["-k", "0"] if keep_going else []))


# --- finding places -----------------------------------------------------------------------------


def clang_arguments(command):
    kept, words = [], iter(shlex.split(command)[1:])
    for word in words:
        if word in ("-o", "-c", "-MF", "-MT"):
            next(words, None)
        elif word.startswith(("-I", "-D", "-std", "-isystem")):
            kept.append(word)
            if word == "-isystem":
                kept.append(next(words))
    return kept


def span(cursor):
    """Plain numbers: a range of the parser dies with its unit."""
    return cursor.extent.start.offset, cursor.extent.end.offset


def text_of(source, cursor):
    start, end = span(cursor)
    return source[start:end].decode()


def site_of(cursor, path, source):
    children = list(cursor.get_children())
    binary = cursor.kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR)
    if binary and len(children) == 2:
        left, right = children
    elif cursor.kind == CursorKind.CALL_EXPR and cursor.spelling in COMPARISONS and len(children) == 3:
        left, right = children[0], children[2]
    elif cursor.kind == CursorKind.UNARY_OPERATOR and len(children) == 1:
        text = text_of(source, cursor)
        if text.startswith("!") and text[1:].strip() == text_of(source, children[0]):
            return Site(path, cursor.extent.start.line, *span(cursor), None, "!", "", span(children[0]), text)
        return None
    else:
        return None
    between = source[span(left)[1]:span(right)[0]].decode().strip()
    if between not in SWAPS or span(left)[0] != span(cursor)[0]:
        return None
    return Site(path, cursor.extent.start.line, *span(cursor), span(left), between, SWAPS[between], span(right),
                text_of(source, cursor))


def sites_of(path, arguments):
    source = path.read_bytes()
    unit = cindex.Index.create().parse(str(path), args=arguments, options=1)  # 1: keep the macros' places
    macros = [span(c) for c in unit.cursor.get_children()
              if c.kind == CursorKind.MACRO_INSTANTIATION and c.location.file and c.location.file.name == str(path)]
    found = []

    def in_macro(site):
        return any(a <= site.start and site.end <= b for a, b in macros)

    def visit(cursor):
        if cursor.kind in NO_PLACE:
            return
        if cursor.kind == CursorKind.VAR_DECL and "constexpr" in text_of(source, cursor).split("=")[0]:
            return
        site = site_of(cursor, path, source)
        if site and "//" not in site.text and not in_macro(site):
            found.append(site)
        for child in cursor.get_children():
            visit(child)

    for cursor in unit.cursor.get_children():
        if cursor.location.file and cursor.location.file.name == str(path):
            visit(cursor)
    return found


def all_sites(folder):
    commands = json.loads((BUILD / "compile_commands.json").read_text())
    sites = []
    for entry in commands:
        path = pathlib.Path(entry["file"])
        if path.is_relative_to(SOURCE / folder) and path.suffix == ".cpp":
            sites += sites_of(path, clang_arguments(entry["command"]))
    return sites


# --- building them in ---------------------------------------------------------------------------


def rewritten(source, sites, start, end):
    """The text from start to end with the chosen sites inside it behind their switches."""
    result, position = "", start
    inside = [(n, s) for n, s in sites if start <= s.start and s.end <= end]
    inside.sort(key=lambda item: (item[1].start, -item[1].end))
    while inside:
        number, site = inside[0]
        result += source[position:site.start].decode()
        rest = [item for item in inside if item[1].end <= site.end and item[0] != number]
        right = rewritten(source, rest, *site.right)
        left = rewritten(source, rest, *site.left) + " " if site.left else ""
        lines = source[site.start:site.end].count(b"\n")
        switched = f"(kelMutant({number}) ? ({left}{site.new} {right}) : ({left}{site.old} {right}))"
        result += switched.replace("\n", " ") + "\n" * lines
        position = site.end
        inside = [item for item in inside if item[1].start >= site.end]
    return result + source[position:end].decode()


def build_in(chosen):
    by_file = collections.defaultdict(list)
    for number, site in chosen.items():
        by_file[site.file].append((number, site))
    for path, sites in by_file.items():
        source = (ROOT / path.relative_to(SOURCE)).read_bytes()
        path.write_text(SWITCH.replace("#line 1", f'#line 1 "{path}"') + rewritten(source, sites, 0, len(source)))


def compile_all(chosen):
    """Builds; takes out what a compiler does not accept (a difference of pointers has no sum)."""
    for _ in range(8):
        build_in(chosen)
        result = build(keep_going=True)
        if result.returncode == 0:
            return chosen
        bad = set()
        for name, line in re.findall(r"^(/\S+?):(\d+):\d+: error", result.stdout, re.M):
            bad |= {n for n, s in chosen.items()
                    if str(s.file) == name and s.line <= int(line) <= s.line + s.text.count("\n")}
        if not bad:
            sys.exit(result.stdout[-4000:])
        for path in {chosen[n].file for n in bad}:
            shutil.copy2(ROOT / path.relative_to(SOURCE), path)
        chosen = {n: s for n, s in chosen.items() if n not in bad}
    sys.exit("the switches do not compile")


# --- trying them --------------------------------------------------------------------------------


# A changed loop condition may eat all memory there is.
MEMORY_LIMIT = 6 << 30


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))


def ctest(names, timeout, **environment):
    pattern = "^(" + "|".join(map(re.escape, names)) + ")$"
    return run("ctest", "--test-dir", str(BUILD), "-R", pattern, "--timeout", str(timeout), "--stop-on-failure",
               preexec_fn=limit_memory, env={**os.environ, "QT_QPA_PLATFORM": "offscreen", **environment})


def reached_by():
    """Which tests reach which change, quickest test first."""
    listing = json.loads(run("ctest", "--test-dir", str(BUILD), "--show-only=json-v1", "-E", NOT_RUN).stdout)
    names = [test["name"] for test in listing["tests"]]
    reached, seconds = collections.defaultdict(list), {}

    def one(name):
        log = WORK / f"reached-{name}"
        log.unlink(missing_ok=True)
        begin = time.monotonic()
        result = ctest([name], 240, KEL_MUTANT_LOG=str(log))
        if result.returncode != 0:
            sys.exit(f"{name} fails without any change:\n{result.stdout[-3000:]}")
        seconds[name] = time.monotonic() - begin
        return name, {int(n) for n in log.read_text().split()} if log.exists() else set()

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for name, numbers in pool.map(one, names):
            for number in numbers:
                reached[number].append(name)
    for tests in reached.values():
        tests.sort(key=seconds.get)
    return reached, seconds


def try_all(chosen, reached, seconds):
    def one(number):
        for name in reached.get(number, []):
            if ctest([name], int(20 + 4 * seconds[name]), KEL_MUTANT=str(number)).returncode != 0:
                return number, name
        return number, None

    caught = {}
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for done, (number, name) in enumerate(pool.map(one, sorted(chosen)), 1):
            caught[number] = name
            if done % 20 == 0:
                print(f"{done} of {len(chosen)}, {sum(1 for n in caught.values() if n)} caught", flush=True)
    return caught


def report(chosen, caught, reached):
    killed = [n for n in chosen if caught[n]]
    lines = [f"{len(killed)} of {len(chosen)} changes caught ({100 * len(killed) / len(chosen):.1f} percent)", "",
             "| survivor | change | reached by |", "|---|---|---|"]
    for number in sorted(set(chosen) - set(killed)):
        site = chosen[number]
        place = f"{site.file.relative_to(SOURCE)}:{site.line}"
        text = " ".join(site.text.split()).replace("|", "\\|")
        change = f"{site.old} → {site.new or 'nothing'}".replace("|", "\\|")
        lines.append(f"| {place} | `{text[:90]}`: `{change}` | {len(reached.get(number, []))} tests |")
    (WORK / "report.md").write_text("\n".join(lines) + "\n")
    print("\n".join(lines))


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("--count", type=int, default=250, help="how many changes to try (default 250)")
    options.add_argument("--seed", type=int, default=1, help="which ones (default 1)")
    options.add_argument("--folder", default="libs", help="where to change (default libs)")
    options.add_argument("--match", default="", help="only files whose path matches this expression")
    given = options.parse_args()

    cindex.Config.set_library_file("libclang-14.so.1")
    copy_project()
    plain = build()
    if plain.returncode != 0:
        sys.exit(plain.stdout[-4000:])
    sites = [s for s in all_sites(given.folder) if re.search(given.match, str(s.file))]
    picked = random.Random(given.seed).sample(sites, min(given.count, len(sites)))
    print(f"{len(sites)} places, {len(picked)} chosen", flush=True)
    chosen = compile_all(dict(enumerate(picked, 1)))
    reached, seconds = reached_by()
    report(chosen, try_all(chosen, reached, seconds), reached)


if __name__ == "__main__":
    main()
