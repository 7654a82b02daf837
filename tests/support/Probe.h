#ifndef ZORVAN_TESTS_PROBE_H
#define ZORVAN_TESTS_PROBE_H

namespace testing_support {

// An element or pointee the library does not know. It counts its live
// objects, copies and moves, and it points into itself, so that a byte copy would leave `self` on the
// source.
struct Probe {
    static inline long live = 0, copies = 0, moves = 0;

    int value = 0;
    int const* self = &value;
    Probe() { ++live; }
    explicit Probe(int v) : value(v) { ++live; }
    Probe(Probe const& other) : value(other.value) { ++live, ++copies; }
    Probe(Probe&& other) noexcept : value(other.value) { ++live, ++moves; }
    Probe& operator=(Probe const& other) {
        value = other.value;
        ++copies;
        return *this;
    }
    Probe& operator=(Probe&& other) noexcept { value = other.value; ++moves; return *this; }
    ~Probe() { --live; }
    bool Intact() const { return self == &value; }
    friend bool operator==(Probe const& a, Probe const& b) { return a.value == b.value; }
    friend bool operator<(Probe const& a, Probe const& b) { return a.value < b.value; }
};

}  // namespace testing_support

#endif
