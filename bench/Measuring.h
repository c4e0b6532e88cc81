// How the measurements are taken.
#pragma once

#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdlib>
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

/// What the work gives, done in a process of its own, which ends with it: a file is opened once in
/// a program's life, not in the scattered remains of others.
template <typename Work>
auto inOwnProcess(const Work& work) {
    std::array<int, 2> ends{};
    auto result = decltype(work())();
    const auto size = static_cast<ssize_t>(sizeof result);
    if (pipe(ends.data()) != 0) std::abort();
    const pid_t process = fork();
    if (process == 0) {
        result = work();
        _exit(write(ends[1], &result, sizeof result) == size ? 0 : 1);
    }
    close(ends[1]);
    if (process < 0 || read(ends[0], &result, sizeof result) != size) std::abort();
    close(ends[0]);
    waitpid(process, nullptr, 0);
    return result;
}

/// The bytes of the heap that are in use, what the allocator adds included; 0 where the system
/// does not tell.
double heapInUse();

/// Numbers of items, up to eight times those that the editor is made for; nine rounds each.
void sizes(benchmark::internal::Benchmark* benchmark);

/// Counts the median time of an item.
void reportPerItem(benchmark::State& state, const Figures& seconds);
