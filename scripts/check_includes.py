#!/usr/bin/env python3
"""Checks the include graph of src: layers only look down, and no module
(a .h with its .cpp) reaches itself through its includes.

Layers, lowest first: core, text, table, script, gfx, patches, asm, then the
two front ends app and verbs, which stand side by side. A file may include
files of its own layer or of a lower one. Usage: check_includes.py [SRC]."""
import os
import re
import sys

LAYERS = [["core"], ["text"], ["table"], ["script"], ["gfx"], ["patches"], ["asm"], ["app", "verbs"]]
RANK = {folder: rank for rank, folders in enumerate(LAYERS) for folder in folders}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)

# Module pairs that may still reach each other, each with the reason. Keep
# this empty: an entry is a cycle to remove, not a rule.
KNOWN_CYCLES = set()


def read_includes(src):
    """{"folder/file.ext": [included "folder/file.ext", ...]} for every file under src."""
    includes = {}
    for folder, _, names in os.walk(src):
        for name in names:
            if not name.endswith((".h", ".cpp")):
                continue
            path = os.path.join(folder, name)
            key = os.path.relpath(path, src).replace(os.sep, "/")
            with open(path, encoding="utf-8") as text:
                found = INCLUDE.findall(text.read())
            includes[key] = [name for name in found if os.path.exists(os.path.join(src, name))]
    return includes


def layer_faults(includes):
    faults = []
    for source, targets in sorted(includes.items()):
        source_layer = source.split("/")[0]
        for target in targets:
            target_layer = target.split("/")[0]
            unknown = [layer for layer in (source_layer, target_layer) if layer not in RANK]
            if unknown:
                faults.append(f"{source} includes {target}: {unknown[0]} is not a known layer")
            elif RANK[target_layer] > RANK[source_layer]:
                faults.append(f"{source} looks up at {target} ({source_layer} is below {target_layer})")
    return faults


def module_of(path):
    return os.path.splitext(path)[0]


def module_graph(includes):
    graph = {}
    for source, targets in includes.items():
        edges = graph.setdefault(module_of(source), set())
        edges.update(module_of(target) for target in targets if module_of(target) != module_of(source))
    return graph


def find_cycle(graph):
    """One cycle as a list of modules (first == last), or None."""
    state, stack = {}, []

    def visit(module):
        state[module] = "open"
        stack.append(module)
        for target in sorted(graph.get(module, ())):
            if frozenset((module, target)) in KNOWN_CYCLES:
                continue
            if state.get(target) == "open":
                return stack[stack.index(target):] + [target]
            if target not in state:
                cycle = visit(target)
                if cycle:
                    return cycle
        stack.pop()
        state[module] = "done"
        return None

    for module in sorted(graph):
        if module not in state:
            cycle = visit(module)
            if cycle:
                return cycle
    return None


def main():
    src = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..", "src")
    includes = read_includes(src)
    faults = layer_faults(includes)
    cycle = find_cycle(module_graph(includes))
    if cycle:
        faults.append("include cycle: " + " -> ".join(cycle))
    for fault in faults:
        print(fault)
    print(f"{len(includes)} files checked, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
