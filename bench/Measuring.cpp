#include "Measuring.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

double heapInUse() {
#ifdef __GLIBC__
    const auto heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
#else
    return 0;
#endif
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    for (const int items : {8192, 65536, 524288})
        benchmark->Arg(items);
    benchmark->Iterations(9)->UseManualTime()->Unit(benchmark::kMillisecond);
}

void reportPerItem(benchmark::State& state, const Figures& seconds) {
    state.counters["per_item"] = seconds.median() / static_cast<double>(state.range(0));
}
