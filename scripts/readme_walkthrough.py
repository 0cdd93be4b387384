#!/usr/bin/env python3
"""Runs the commands of the README's console blocks and checks their output.

Every fenced block marked `console` holds commands behind "$ " and, below
each, the output the README promises. The commands run one after the other
in WORKDIR with the built trelvane first on the PATH; their standard output
and standard error together must match what the README shows, line for line,
where a line "..." stands for any number of lines. Prints each command with
its real output; exits 1 when any output differs.
"""
import os
import subprocess
import sys


def console_blocks(readme):
    block, inside = [], False
    for line in readme.splitlines():
        if line.startswith("```"):
            if inside:
                yield block
            inside, block = line.strip() == "```console", []
        elif inside:
            block.append(line)


def commands_of(block):
    command = None
    for line in block:
        if line.startswith("$ "):
            if command:
                yield command
            command = (line[2:], [])
        elif command:
            command[1].append(line)
    if command:
        yield command


def matches(expected, actual):
    if not expected:
        return not actual
    if expected[0] == "...":
        return any(matches(expected[1:], actual[skip:]) for skip in range(len(actual) + 1))
    return bool(actual) and expected[0] == actual[0] and matches(expected[1:], actual[1:])


def run(command, workdir, environment):
    result = subprocess.run(["bash", "-c", command], cwd=workdir, env=environment,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return result.stdout.decode("utf-8", "replace").replace("\r", "").splitlines()


def main(readme_path, workdir, bindir):
    environment = dict(os.environ, PATH=os.path.abspath(bindir) + os.pathsep + os.environ["PATH"])
    with open(readme_path, encoding="utf-8") as readme:
        text = readme.read()
    failures = 0
    for block in console_blocks(text):
        for command, expected in commands_of(block):
            actual = run(command, workdir, environment)
            print("$ " + command)
            print("\n".join(actual))
            if not matches(expected, actual):
                failures += 1
                print("!! the README shows instead:\n" + "\n".join(expected))
            print()
    print("README walkthrough: " + ("every output as shown" if not failures else "%d outputs differ" % failures))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4]))
