#!/usr/bin/env python3
"""Writes every C++ block of README.md but the first program into one file
to compile, each block the body of a function, after the names they take as given."""
import re
import sys

readme, output = sys.argv[1], sys.argv[2]
text = open(readme, encoding="utf-8").read()
blocks = re.findall(r"^```cpp\n(.*?)^```", text, flags=re.S | re.M)
snippets = [block for block in blocks if "int main(" not in block]
if not snippets:
    sys.exit("README.md has no C++ block besides the first program")
with open(output, "w", encoding="utf-8") as out:
    out.write("""// Written from README.md by tests/readme_snippets.py: do not edit.
#include <algorithm>
#include <thread>
#include <vector>

#include "zorvancow/zorvancow.h"

// What the blocks take as given.
cow_List<int> before, after;
cow_Btree<int, int> oldTree, newTree;
std::vector<cow_List<int>> versions;
cow_Map<int, cow_String> orders;
void process(cow_Map<int, cow_String>) {}

""")
    for n, block in enumerate(snippets):
        out.write("void Block%d() {\n%s}\n\n" % (n, block))
    out.write("int main() { return 0; }\n")
