#!/usr/bin/env python3
"""Writes a client that refers to every member libzorvancow.exports lists:
a member function by its address, picked by the line's return and parameter
types and constness, inside an explicit instantiation (which skips access
checks); a constructor by placement new and a destructor by an explicit call,
in a branch that never runs; a free function by its address as the line
types it. Built at -O0 and -O2 with --no-undefined, the client links only if
the library exports every listed member the headers leave to it.
"""

import argparse
import os
import re
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "cmake"))
from zorvancow_exports import read_manifest  # noqa: E402


def base_name(scope):
    return re.sub(r"<.*", "", scope.split("::")[-1])


PROLOGUE = """// Written by tests/exports/make_consumer.py from libzorvancow.exports. Do not edit.

#include <new>
#include <type_traits>

#include "zorvancow/zorvancow.h"

namespace {

bool Never() { static bool volatile never = false; return never; }

// A value of type T for a call that never runs.
template <class T>
T&& Fake() {
    static std::remove_reference_t<T>* volatile nowhere = nullptr;
    return static_cast<T&&>(*nowhere);
}

template <class P>
void Keep(P p) { asm volatile("" : : "r"(&p) : "memory"); }

// The member of C returning R and taking A..., static or not.
template <class C, class... A>
struct Member {
    template <class R> static constexpr auto Of(R (C::*p)(A...)) { return p; }
    template <class R> static constexpr auto Of(R (*p)(A...)) { return p; }
    template <class R> static constexpr auto OfConst(R (C::*p)(A...) const) { return p; }
};

// Keeps the member P at start-up, whatever its access.
template <auto P>
struct Reach { static bool const kept; };
template <auto P>
bool const Reach<P>::kept = (Keep(P), true);

// Constructors and destructors, never run, both as a whole object's and as
// a base's (a derived class may call a protected one): both are exported.
template <class C>
struct Storage {
    alignas(C) unsigned char bytes[sizeof(C)];
    C* get() { return reinterpret_cast<C*>(bytes); }
};
template <class C>
struct Derived : C {
    template <class... A>
    explicit Derived(A&&... a) : C(static_cast<A&&>(a)...) {}
};
template <class C, class = void, class... A>
struct Public : std::false_type {};
template <class C, class... A>
struct Public<C, decltype(void(::new (std::declval<void*>()) C(std::declval<A>()...))), A...> : std::true_type {};

template <class C, class... A>
void Construct(A&&... a) {
    if constexpr (Public<C, void, A&&...>::value) ::new (static_cast<void*>(Storage<C>().get())) C(static_cast<A&&>(a)...);
    ::new (static_cast<void*>(Storage<Derived<C>>().get())) Derived<C>(static_cast<A&&>(a)...);
}
template <class C>
void Destroy() {
    Storage<C>().get()->C::~C();
    Storage<Derived<C>>().get()->Derived<C>::~Derived();
}

"""


def main():
    options = argparse.ArgumentParser()
    options.add_argument("--manifest", required=True)
    options.add_argument("--output", required=True)
    args = options.parse_args()

    reach, calls = [], []
    members, problems = read_manifest(args.manifest)
    if problems:
        raise SystemExit("\n".join(problems))
    for member in members:
        scope, name, params = member.scope, member.name, member.params
        if scope and name == base_name(scope):
            arguments = ", ".join(f"Fake<{p}>()" for p in params)
            calls.append(f"        Construct<{scope}>({arguments});")
        elif scope and name == "~" + base_name(scope):
            calls.append(f"        Destroy<{scope}>();")
        elif scope:
            pick = "OfConst" if member.const else "Of"
            types = ", ".join([scope] + params)
            reach.append(f"template struct Reach<Member<{types}>::{pick}<{member.ret}>(&{scope}::{name})>;")
        else:
            calls.append(f"        Keep(static_cast<{member.ret} (*)({', '.join(params)})>(&{name}));")

    with open(args.output, "w", encoding="utf-8") as out:
        out.write(PROLOGUE)
        out.write("\n".join(reach) + "\n\n}  // namespace\n\n")
        out.write("int main() {\n    if (Never()) {\n")
        out.write("\n".join(calls) + "\n")
        out.write("    }\n    return 0;\n}\n")


if __name__ == "__main__":
    main()
