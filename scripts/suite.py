#!/usr/bin/env python3
"""Builds and tests. Called by ./test; every step is counted, and the last line says "N passed, N failed"."""

import argparse
import glob
import os
import re
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as ElementTree

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
CORES = len(os.sched_getaffinity(0))
SLOW = r"(^|/)Slow"
FUZZ_SECONDS = 30
QUIET_LINE = re.compile(r"^\s*(Start\s+\d+:|\d+/\d+ Test\s+#\d+:.*Passed)")


class Failed(Exception):
    """A step that went wrong as a whole; its text says what and where to look."""


def say(text):
    print(text, flush=True)


def run(command, where=ROOT, environment=None, quiet=False, limit=None):
    """Runs a command; raises Failed with the end of its output if it fails."""
    everything = dict(os.environ, **(environment or {}))
    try:
        done = subprocess.run(command, cwd=where, env=everything, stdin=subprocess.DEVNULL, timeout=limit,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")
    except FileNotFoundError:
        raise Failed(f"{command[0]} is not installed (scripts/setup --all installs it)") from None
    except subprocess.TimeoutExpired:
        raise Failed(f"{' '.join(command)}: still running after {limit} s") from None
    if done.returncode != 0:
        tail = "\n".join(done.stdout.splitlines()[-60:])
        raise Failed(f"{' '.join(command)}: exit code {done.returncode}\n{tail}")
    if not quiet and done.stdout:
        say(done.stdout.rstrip())
    return done.stdout


def build(preset, targets=()):
    run(["cmake", "--preset", preset], quiet=True)
    wanted = ["--target", *targets] if targets else []
    run(["cmake", "--build", f"build/{preset}", "--parallel", str(CORES), *wanted], quiet=True)


def read_results(path):
    """(passed, failed) of a results file that CTest wrote. A test that skipped itself counts as neither."""
    passed = failed = 0
    for case in ElementTree.parse(path).getroot().iter("testcase"):
        skipped = case.find("skipped")
        if case.get("status") == "run":
            passed += 1
        elif skipped is not None and "SKIP_" in (skipped.get("message") or ""):
            say(f"skipped: {case.get('name')}")
        elif case.get("status") != "disabled":
            failed += 1
    return passed, failed


def ctest(preset, *selection):
    """Runs the tests of a build and tells what did not pass."""
    with tempfile.TemporaryDirectory() as folder:
        results = os.path.join(folder, "results.xml")
        command = ["ctest", "--preset", preset, "--parallel", str(CORES), "--output-junit", results, *selection]
        with subprocess.Popen(command, cwd=ROOT, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, errors="replace") as child:
            for line in child.stdout:
                if not QUIET_LINE.match(line):
                    print(line, end="", flush=True)
        if not os.path.exists(results):
            raise Failed("ctest left no results")
        passed, failed = read_results(results)
        if passed + failed == 0:
            raise Failed("ctest found no tests")
        return passed, failed


def step_release(everything):
    build("release")
    return ctest("release", *(() if everything else ("--exclude-regex", SLOW)))


def step_asan():
    build("asan", ["tests/all"])
    return ctest("asan", "--exclude-regex", SLOW)


def step_fuzz():
    """Each target runs a short while over its seeds; what it finds stays under build/fuzz/found."""
    build("fuzz")
    passed = failed = 0
    for program in sorted(glob.glob(os.path.join(ROOT, "build/fuzz/bin/*Fuzz"))):
        name = os.path.basename(program)
        found = os.path.join(ROOT, "build/fuzz/found", name)
        corpus = os.path.join(ROOT, "build/fuzz/corpus", name)
        os.makedirs(found, exist_ok=True)
        os.makedirs(corpus, exist_ok=True)
        command = [program, f"-max_total_time={FUZZ_SECONDS}", "-timeout=10", "-rss_limit_mb=2048",
                   "-verbosity=0", f"-artifact_prefix={found}/", corpus]
        command += [path for path in [os.path.join(ROOT, "fuzz/seeds", name)] if os.path.isdir(path)]
        command += [f"-dict={path}" for path in glob.glob(os.path.join(ROOT, "fuzz/dictionaries", name + ".dict"))]
        try:
            with tempfile.TemporaryDirectory() as scratch:
                run(command, where=scratch, quiet=True, limit=FUZZ_SECONDS * 10)
            passed += 1
        except Failed as problem:
            say(f"{name}: {problem}")
            failed += 1
    if passed + failed == 0:
        raise Failed("there is no fuzz target under build/fuzz/bin")
    return passed, failed


def step_package():
    """The installed package and the source tree, each used by a project outside; every public header by itself."""
    passed = 0
    build("release")
    with tempfile.TemporaryDirectory() as folder:
        prefix = os.path.join(folder, "prefix")
        run(["cmake", "--install", "build/release", "--prefix", prefix], quiet=True)
        passed += check_launcher(prefix)
        consumer = os.path.join(ROOT, "tests/consumer")
        uses = {"installed": [f"-DCMAKE_PREFIX_PATH={prefix}", "-DVOZ_CHECK_HEADERS=ON"],
                # The flags of our own presets, so that the compiler cache has its objects already.
                "subdirectory": [f"-DVOZDRAVO_SOURCE={ROOT}", "-DVOZ_WARNINGS_AS_ERRORS=ON"]}
        for name, settings in uses.items():
            where = os.path.join(folder, name)
            run(["cmake", "-G", "Ninja", "-S", consumer, "-B", where, "-DCMAKE_BUILD_TYPE=Release", *settings], quiet=True)
            run(["cmake", "--build", where, "--parallel", str(CORES), "--target", "consumer"], quiet=True)
            run([os.path.join(where, "bin/consumer")], quiet=True)
            passed += 1
        run(["cmake", "--build", os.path.join(folder, "installed"), "--parallel", str(CORES)], quiet=True)
        passed += 1
        passed += check_pkg_config(prefix, consumer, folder)
    return passed, 0


def check_launcher(prefix):
    """The launcher lies beside the library, which looks for it there, and starts where it was installed."""
    libraries = glob.glob(os.path.join(prefix, "lib*/**/libVOZDravo.so"), recursive=True)
    launcher = os.path.join(os.path.dirname(libraries[0]), "VOZLaunchDyna") if libraries else "VOZLaunchDyna"
    if not os.path.exists(launcher):
        raise Failed("the package has no VOZLaunchDyna beside its library")
    run([launcher, "--help"], quiet=True)
    return 1


def check_pkg_config(prefix, consumer, folder):
    found = glob.glob(os.path.join(prefix, "lib*/**/pkgconfig/vozdravo.pc"), recursive=True)
    if not found:
        raise Failed("the package has no vozdravo.pc")
    paths = {"PKG_CONFIG_PATH": os.path.dirname(found[0])}
    flags = run(["pkg-config", "--cflags", "--libs", "vozdravo"], environment=paths, quiet=True).split()
    library = run(["pkg-config", "--variable=libdir", "vozdravo"], environment=paths, quiet=True).strip()
    program = os.path.join(folder, "by-pkg-config")
    run(["g++", "-std=c++17", os.path.join(consumer, "main.cpp"), "-o", program, *flags, f"-Wl,-rpath,{library}"],
        quiet=True)
    run([program], quiet=True)
    return 1


def step_symbols():
    build("release", ["VOZPlatform", "VOZAPINew", "VOZDravo"])
    run(["scripts/symbols"])
    return 1, 0


def step_check():
    run(["scripts/check", "--no-tidy"])
    return 1, 0


def step_browser():
    """The report of an example, opened by a browser that has no network."""
    build("release")
    run(["scripts/check-report"], limit=600)
    return 1, 0


def step_windows():
    run(["scripts/windows-libraries"], quiet=True)
    build("windows", ["VOZDravo", "OneStepSolver", "VOZLaunchDyna", "EchoArguments", "test_platform", "test_library"])
    # One prefix for the whole build, made once: Wine's first start takes the longest.
    prefix = os.path.join(ROOT, "build/windows/wine")
    os.environ.update(WINEPREFIX=prefix, WINEDEBUG="-all")
    run(["wine", "wineboot", "--init"], quiet=True, limit=300)
    # The kernel's numbers are the release suite's matter; here they would take longer than all the rest. Wine's own
    # loader dies now and then when a program starts or ends, with its tests passed: such a one is run once more.
    return ctest("windows", "--label-regex", "platform|library", "--repeat", "until-pass:2")


ALL_STEPS = {
    "release": lambda: step_release(True),
    "check": step_check,
    "symbols": step_symbols,
    "package": step_package,
    "browser": step_browser,
    "windows": step_windows,
    "asan": step_asan,
}
ALONE = {"fuzz": step_fuzz}  # minutes that are better given to one reader at a time: --only fuzz


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--all", action="store_true", help="every step, not the release suite alone")
    parser.add_argument("--only", metavar="NAME", choices=sorted(ALL_STEPS | ALONE), help="one step alone")
    arguments = parser.parse_args()
    steps = {"release": lambda: step_release(False)}
    if arguments.only:
        steps = {arguments.only: (ALL_STEPS | ALONE)[arguments.only]}
    elif arguments.all:
        steps = ALL_STEPS

    total_passed = total_failed = 0
    lines = []
    for name, step in steps.items():
        say(f"== {name}")
        begin = time.monotonic()
        try:
            passed, failed = step()
        except Failed as problem:
            say(f"{name}: {problem}")
            passed, failed = 0, 1
        lines.append(f"{name:12} {passed:6} passed {failed:4} failed {time.monotonic() - begin:7.0f} s")
        say(lines[-1])
        total_passed += passed
        total_failed += failed
    if len(lines) > 1:
        say("\n" + "\n".join(lines))
    say(f"{total_passed} passed, {total_failed} failed")
    return 0 if total_failed == 0 else 1


if __name__ == "__main__":
    sys.exit(main())
