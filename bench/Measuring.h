// How the measurements are taken.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

template <typename Work>
double secondsOf(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Times of the same work, or other figures of it. Their median is what counts: a machine has
/// always something else to do now and then.
class Figures {
 public:
    void add(double figure) { figures_.push_back(figure); }

    double median() const {
        std::vector<double> sorted = figures_;
        const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
        std::ranges::nth_element(sorted, middle);
        return *middle;
    }

 private:
    std::vector<double> figures_;
};

/// Gives the system back what earlier rounds freed: a file is opened once in a program's life,
/// not in the scattered remains of an equal one.
void freshHeap();

/// The bytes of the heap that are in use, what the allocator adds included; 0 where the system
/// does not tell.
double heapInUse();

/// Numbers of items, up to eight times those that the editor is made for; nine rounds each.
void sizes(benchmark::internal::Benchmark* benchmark);

/// Counts the median time of an item.
void reportPerItem(benchmark::State& state, const Figures& seconds);
