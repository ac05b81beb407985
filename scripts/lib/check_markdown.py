#!/usr/bin/env python3
"""Checks that the tree's Markdown files name only what exists.

- Every relative link leads to a file of the tree, and its anchor to a heading there.
- Every script, file and folder of the tree that is named as code exists; patterns (`fuzz_*`) match something.
- Every script can be run, and is named in CONTRIBUTING.md.
- Every CMake preset that is named as code exists, and every test (`Suite.Name`, `Suite.*`).

Exit status 1 and a line FILE:LINE for each fault. Reads what git knows of, and new files that it does not ignore.
"""
import fnmatch
import json
import os
import re
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#{1,6} +(.*?) *#*$")
CODE = re.compile(r"`([^`]+)`")
TEST_NAME = re.compile(r"\b([A-Z]\w*[a-z]\w*\.(?:[A-Z]\w*[a-z]\w*|\*))")
TEST = re.compile(r"^(?:TEST|TEST_F|TEST_P|TYPED_TEST)\(\s*(\w+),\s*(\w+)", re.MULTILINE)
PRESET = re.compile(r"(cmake --build|cmake|ctest) --preset[ =]([\w-]+)")
PRESET_KIND = {"cmake --build": "buildPresets", "cmake": "configurePresets", "ctest": "testPresets"}
PLACEHOLDER = re.compile(r"@[A-Z_]{3,}@")


def tree():
    listed = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True, capture_output=True
    ).stdout.decode()
    files = {name for name in listed.split("\0") if name and os.path.exists(os.path.join(ROOT, name))}
    folders = set()
    for name in files:
        while "/" in name:
            name = name.rpartition("/")[0]
            folders.add(name)
    return files, folders


def slug(heading):
    """The anchor that a heading gets where repositories are shown."""
    text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading).replace("`", "").strip().lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


def read(name):
    with open(os.path.join(ROOT, name), encoding="utf-8") as file:
        return file.read()


def anchors(text):
    seen = {}
    found = set()
    fenced = False
    for line in text.splitlines():
        if line.lstrip().startswith("```"):
            fenced = not fenced
        heading = None if fenced else HEADING.match(line)
        if heading:
            name = slug(heading.group(1))
            count = seen.get(name, 0)
            seen[name] = count + 1
            found.add(name if count == 0 else f"{name}-{count}")
    return found


def main():
    files, folders = tree()
    tops = {name.partition("/")[0] for name in folders}
    tests = set()
    for name in files:
        if name.startswith("tests/") and name.endswith(".cpp"):
            tests.update(TEST.findall(read(name)))
    suites = {suite for suite, _ in tests}
    known_presets = json.loads(read("CMakePresets.json"))
    presets = {
        command: {p["name"] for p in known_presets[kind] if not p.get("hidden")} for command, kind in PRESET_KIND.items()
    }
    texts = {name: read(name) for name in sorted(files) if name.endswith(".md")}
    faults = []
    looked_at = 0

    def fault(name, number, what):
        faults.append(f"{name}:{number}: {what}")

    def check_link(name, number, target):
        if re.match(r"[a-z]+:", target):
            return
        path, _, anchor = target.partition("#")
        there = os.path.normpath(os.path.join(os.path.dirname(name), path)) if path else name
        if there not in files and there not in folders:
            fault(name, number, f"the link {target} leads nowhere")
        elif anchor and there in texts and anchor not in anchors(texts[there]):
            fault(name, number, f"no heading of {there} has the anchor #{anchor}")

    def check_path(name, number, word):
        # A file named from the top, or from the folder that the page is in.
        path = word.rstrip("/.,:;")
        path = re.sub(r":\d+$", "", path)
        beside = os.path.normpath(os.path.join(os.path.dirname(name), path))
        known = files | folders
        if path in known or beside in known or fnmatch.filter(known, path) or fnmatch.filter(known, beside):
            return True
        fault(name, number, f"{word} is not in the tree")
        return False

    for name, text in texts.items():
        fenced = False
        for number, line in enumerate(text.splitlines(), 1):
            if line.lstrip().startswith("```"):
                fenced = not fenced
                continue
            if PLACEHOLDER.search(line):
                fault(name, number, f"{PLACEHOLDER.search(line).group()} was never filled in")
            code = [line] if fenced or line.startswith("    ") else CODE.findall(line)
            if not fenced:
                for target in LINK.findall(line):
                    looked_at += 1
                    check_link(name, number, target)
            for piece in code:
                for word in re.findall(r"[\w.*?/-]+", piece):
                    top = word.partition("/")[0]
                    if "/" in word and (top in tops or top == ".ci") and "..." not in word:
                        looked_at += 1
                        check_path(name, number, word)
                for command, preset in PRESET.findall(piece):
                    looked_at += 1
                    if preset not in presets[command]:
                        fault(name, number, f"{command} has no preset {preset}")
                if fenced:
                    continue
                for test in TEST_NAME.findall(piece):
                    suite, _, case = test.partition(".")
                    looked_at += 1
                    if (suite, case) not in tests and not (case == "*" and suite in suites):
                        fault(name, number, f"there is no test {test}")

    for script in sorted(files):
        if os.path.dirname(script) == "scripts":
            if not os.access(os.path.join(ROOT, script), os.X_OK):
                fault(script, 1, "this script cannot be run")
            if f"`{script}" not in texts["CONTRIBUTING.md"]:
                fault("CONTRIBUTING.md", 1, f"{script} is not named")

    for line in faults:
        print(line)
    print(f"{len(texts)} Markdown files, {looked_at} links and names, {len(faults)} faults")
    return 1 if faults or not looked_at else 0


if __name__ == "__main__":
    sys.exit(main())
