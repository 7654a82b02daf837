#ifndef ZORVANCOW_BENCH_BENCHTEXTS_H
#define ZORVANCOW_BENCH_BENCHTEXTS_H

// The string keys that the tree and map programs share: 200,000 random
// texts of 16 lowercase letters, as std::string, as cow_String and (with Qt)
// as QString, and the QMap<QString, int> peer cases run on them. Each program
// registers the peers under its own names, so that a row and its peer run in
// the same program.

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#ifdef ZORVANCOW_BENCH_QT
#include <QMap>
#include <QString>
#endif

#include "zorvancow/core/cow_String.h"

constexpr int kStringKeys = 200000;

inline std::vector<std::string> const& RandomTexts() {
    static std::vector<std::string> const keys = [] {
        std::mt19937 random(43);
        std::vector<std::string> made(kStringKeys);
        for (std::string& key : made) {
            key.resize(16);
            for (char& c : key) c = static_cast<char>('a' + random() % 26);
        }
        return made;
    }();
    return keys;
}

inline std::vector<cow_String> const& RandomCowTexts() {
    static std::vector<cow_String> const keys = [] {
        std::vector<cow_String> made;
        for (std::string const& text : RandomTexts()) made.emplace_back(text.c_str());
        return made;
    }();
    return keys;
}

#ifdef ZORVANCOW_BENCH_QT
inline std::vector<QString> const& RandomQTexts() {
    static std::vector<QString> const keys = [] {
        std::vector<QString> made;
        for (std::string const& text : RandomTexts()) made.push_back(QString::fromLatin1(text.c_str()));
        return made;
    }();
    return keys;
}

// Inserting every text into a new QMap.
inline void QMapStringInsert(benchmark::State& state) {
    auto const& keys = RandomQTexts();
    for (auto _ : state) {
        QMap<QString, int> map;
        for (QString const& key : keys) map.insert(key, 1);
        benchmark::DoNotOptimize(map.size());
    }
}

// Looking every text up in a QMap that holds them all.
inline void QMapStringLookup(benchmark::State& state) {
    auto const& keys = RandomQTexts();
    QMap<QString, int> map;
    for (QString const& key : keys) map.insert(key, 1);
    for (auto _ : state) {
        int found = 0;
        for (QString const& key : keys) found += map.contains(key) ? 1 : 0;
        benchmark::DoNotOptimize(found);
    }
}
#endif

#endif
