#ifndef ZORVAN_TESTS_OPS_REPLAY_H
#define ZORVAN_TESTS_OPS_REPLAY_H

// Runs a family's operation interpreter the way its fuzz target does: every
// checked-in input of fuzz/corpus/<target>/ and fuzz/regressions/<target>/,
// then `randomStreams` seeded random streams of up to `length` bytes, which
// must give back every allocation they make. A mismatch fails the test with
// the stream's name and the step, and the next stream runs.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "ops/Support.h"
#include "support/NoLeaks.h"

namespace testing_support {

inline void ReplayStreams(std::string const& target, void (*run)(std::uint8_t const*, std::size_t), int randomStreams,
                          std::size_t length) {
    fuzz::OnFailure() = [](std::string const& line) { throw std::runtime_error(line); };
    auto runOne = [&](std::string const& name, std::vector<std::uint8_t> const& bytes) {
        try {
            run(bytes.data(), bytes.size());
        } catch (std::runtime_error const& mismatch) {
            ADD_FAILURE() << name << ": " << mismatch.what();
        }
    };
    std::vector<std::filesystem::path> files;
    for (char const* folder : {"/corpus/", "/regressions/"}) {
        std::filesystem::path const dir = ZORVANCOW_FUZZ_DIR + (folder + target);
        if (std::filesystem::is_directory(dir))
            for (auto const& entry : std::filesystem::directory_iterator(dir)) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    EXPECT_FALSE(files.empty()) << "no corpus for " << target;
    for (auto const& file : files) {
        std::ifstream stream(file, std::ios::binary);
        runOne(file.string(), {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()});
    }
    // The first absent-key reads of a thread allocate once for each value
    // type; the checked-in inputs have made them by now.
    NoLeaks const noLeaks;
    std::mt19937 random(20261123);
    for (int seed = 0; seed < randomStreams; ++seed) {
        std::vector<std::uint8_t> bytes(random() % length);
        for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
        runOne("random stream " + std::to_string(seed), bytes);
    }
    fuzz::OnFailure() = nullptr;
}

}  // namespace testing_support

#endif
