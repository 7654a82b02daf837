#ifndef ZORVANCOW_CORE_COW_CHECK_H
#define ZORVANCOW_CORE_COW_CHECK_H

// How the library stops on a misuse it can see.
//
// Checked mode (ZORVANCOW_CHECKED non-zero) tests the documented
// preconditions of the operations: index ranges, non-empty lists, keys
// that must be held. A violated one writes one line to standard error,
//
//     <class>::<operation>: <what went wrong> (<the values>)
//
// and calls abort(). When the macro is not defined it follows NDEBUG: on in
// a build without NDEBUG (Debug), off otherwise. Define it to 0 or 1 to
// choose. The checks in inline code follow the setting of the program that
// includes the header; those in the library's compiled code follow the
// library's build. With checked mode off a check costs nothing: its
// condition and values are not even evaluated.
//
// Some arguments are refused in every build, since going on would corrupt
// memory: construction arguments whose shifts or sizes overflow, and
// positions past the largest int. They stop the same way.
//
// An allocation that fails inside the library also ends the program with
// one line and abort(): no operation lets std::bad_alloc out, so no value is
// ever left half-changed. cow_Allocate is the one way the library's
// templates allocate.

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <new>

#ifndef ZORVANCOW_CHECKED
#ifdef NDEBUG
#define ZORVANCOW_CHECKED 0
#else
#define ZORVANCOW_CHECKED 1
#endif
#endif

// Writes "<where>: <what> (<values>)" as one line to standard error and
// aborts. `values` is a printf format for the offending values.
[[noreturn]] __attribute__((format(printf, 3, 4), cold, visibility("hidden"))) inline void
cow_Fail(char const* where, char const* what, char const* values, ...) {
    char text[256];
    std::va_list args;
    va_start(args, values);
    std::vsnprintf(text, sizeof text, values, args);
    va_end(args);
    std::fprintf(stderr, "%s: %s (%s)\n", where, what, text);
    std::fflush(stderr);
    std::abort();
}

// The one line of a failed allocation.
[[noreturn]] __attribute__((cold, visibility("hidden"))) inline void cow_OutOfMemory() {
    std::fputs("zorvancow: out of memory (an allocation failed; the library cannot go on)\n", stderr);
    std::fflush(stderr);
    std::abort();
}

// Runs `make`, an allocation (usually one new-expression), and gives its
// result. A std::bad_alloc from it ends the program at once, before anything
// could unwind through a value that is half-way through a change.
template <class Make>
inline auto cow_Allocate(Make&& make) -> decltype(make()) {
    try {
        return make();
    } catch (std::bad_alloc const&) {
        cow_OutOfMemory();
    }
}

// A refusal in every build: `condition` must hold. An expression, so that
// a constructor can refuse its arguments before its first member is made.
#define ZORVANCOW_REQUIRE(condition, where, what, ...) \
    (__builtin_expect(!!(condition), 1) ? static_cast<void>(0) : cow_Fail(where, what, __VA_ARGS__))

namespace cow_detail {
// "<class>::<operation>", the first part of a message, for checks in code
// shared by several classes.
struct CheckWhere {
    CheckWhere(char const* container, char const* operation) {
        std::snprintf(text, sizeof text, "%s::%s", container, operation);
    }
    char text[64];
};
}  // namespace cow_detail

// A precondition, tested in checked mode only.
#if ZORVANCOW_CHECKED
#define ZORVANCOW_CHECK(condition, where, what, ...) ZORVANCOW_REQUIRE(condition, where, what, __VA_ARGS__)
#else
#define ZORVANCOW_CHECK(condition, where, what, ...) static_cast<void>(0)
#endif

#endif
