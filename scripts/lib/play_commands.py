#!/usr/bin/env python3
"""Plays the commands of a Markdown page and compares what they print: play_commands.py PAGE

Every block marked `console` is played, in order, in one shell and the current directory: lines that begin with "$ " are
commands, those below are what they print. There "…" stands for any text, alone on a line for any number of lines; a command
with nothing below it may print what it likes, but must succeed. Exit status 1 and both texts for the first that differs.
"""
import re
import subprocess
import sys


def blocks(text):
    """The lines of each console block, without the indentation of its fence."""
    for match in re.finditer(r"^( *)```console\n(.*?)^ *```$", text, re.MULTILINE | re.DOTALL):
        indent = match.group(1)
        yield [line[len(indent):] if line.startswith(indent) else line for line in match.group(2).splitlines()]


def commands(text):
    """Pairs of a command and the lines that it must print."""
    for lines in blocks(text):
        expected = None
        for line in lines:
            if line.startswith("$ "):
                if expected is not None:
                    yield command, expected
                command, expected = line[2:], []
            else:
                expected.append(line)
        if expected is not None:
            yield command, expected


def pattern(expected):
    parts = []
    for line in expected:
        parts.append(r"(?:.*\n)*" if line == "…" else ".*".join(map(re.escape, line.split("…"))) + r"\n")
    return re.compile("".join(parts))


def main():
    with open(sys.argv[1], encoding="utf-8") as page:
        steps = list(commands(page.read()))
    shell = subprocess.Popen(
        ["sh"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, encoding="utf-8")
    end = "--- end of the command, status "
    for command, expected in steps:
        # Not in a subshell: what one command changes into, the next one is in.
        shell.stdin.write(f"{command}\necho '{end}'$?\n")
        shell.stdin.flush()
        printed = ""
        status = None
        for line in shell.stdout:
            if end in line:
                before, _, status = line.partition(end)
                printed += before
                break
            printed += line
        if printed and not printed.endswith("\n"):
            printed += "\n"
        if status is None or int(status) != 0 or (expected and not pattern(expected).fullmatch(printed)):
            print(f"$ {command}\n{printed}", end="")
            if status is None or int(status) != 0:
                print(f"{sys.argv[1]}: this command fails")
            else:
                print(f"{sys.argv[1]}: it should print\n" + "\n".join(expected))
            shell.kill()
            return 1
    shell.stdin.close()
    shell.wait()
    print(f"{sys.argv[1]}: {len(steps)} commands print what it shows")
    return 0 if steps else 1


if __name__ == "__main__":
    sys.exit(main())
