// Measures times and memory.
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

/// The time that `work` takes, in seconds.
template <typename Work>
double secondsOf(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Repeated measurements of the same work. The median is used, because other work of the machine
/// disturbs some of them.
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

/// Runs `work` in a process of its own and returns its result. Thus each run has a fresh heap, like
/// a program that opens its first file.
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

/// The bytes of the heap that are in use, including the overhead of the allocator. 0 if the system
/// does not report them.
double heapInUse();

/// Sets the numbers of items, up to eight times the editor's intended maximum, and nine rounds.
void sizes(benchmark::internal::Benchmark* benchmark);

/// Reports the median time for each item.
void reportPerItem(benchmark::State& state, const Figures& seconds);
