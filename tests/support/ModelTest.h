#ifndef ZORVAN_TESTS_MODEL_TEST_H
#define ZORVAN_TESTS_MODEL_TEST_H

// The skeleton of every family's randomized model test: a few values that
// share storage through copies, each beside a standard-library model of what
// it should hold. Every step picks a value and a weighted operation, runs it
// on both, then checks every value against its model, so a write that shows
// through another copy fails at the step that made it. Nothing the run made
// may be left alive once it is gone.

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <random>
#include <vector>

#include "support/NoLeaks.h"

namespace testing_support {

template <class Value, class Model>
class ModelTest {
public:
    struct Slot {
        Value value;
        Model model;
    };
    struct Operation {
        int weight;
        std::function<void(Slot&)> run;
    };

    // `count` values, value i made by `make(i)`, or default ones; they are
    // made here so that the leak check sees them come and go.
    template <class Make>
    ModelTest(unsigned int seed, int count, Make make) : random(seed) {
        for (int i = 0; i < count; ++i) slots.push_back(make(i));
    }
    ModelTest(unsigned int seed, int count) : ModelTest(seed, count, [](int) { return Slot{}; }) {}

    std::size_t Below(std::size_t n) { return n == 0 ? 0 : static_cast<std::size_t>(random() % n); }
    int Below(int n) { return static_cast<int>(Below(static_cast<std::size_t>(n))); }
    Slot& Any() { return slots[Below(slots.size())]; }

    // The operation every value type has: become a copy of another value.
    Operation CopyFromAny(int weight) {
        return {weight, [this](Slot& slot) { slot = Any(); }};
    }

    // `check(slot)` after every step for each value; `checkAll()`, when
    // given, once per step for what only the values together can tell.
    void Run(int steps, std::vector<Operation> const& operations, std::function<void(Slot const&)> const& check,
             std::function<void()> const& checkAll = {}) {
        int total = 0;
        for (Operation const& operation : operations) total += operation.weight;
        for (step = 0; step < steps; ++step) {
            int pick = Below(total);
            std::size_t chosen = 0;
            while (pick >= operations[chosen].weight) pick -= operations[chosen++].weight;
            operations[chosen].run(Any());
            for (Slot const& slot : slots) check(slot);
            if (checkAll) checkAll();
            if (::testing::Test::HasFailure()) {
                ADD_FAILURE() << "first failure at step " << step;
                return;
            }
        }
    }

    int Step() const { return step; }

private:
    NoLeaks noLeaks;  // first in, last out: checks after every value is gone
    std::mt19937 random;
    int step = 0;

public:
    std::vector<Slot> slots;
};

}  // namespace testing_support

#endif
