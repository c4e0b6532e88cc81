// The import of ETS exports.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "Building.h"
#include "import/EtsImport.h"
#include "model/Document.h"

namespace {

/// An export of so many group addresses, 256 in a middle group.
std::string exportOf(int addresses) {
    std::string text = "Building\r\n";
    for (int i = 0; i < addresses; ++i) {
        const std::string middle = std::to_string(i / 256);
        text += "Central.Lights " + middle + "." + middle + "/0/" + std::to_string(i % 256) +
                "\tCeiling light room " + std::to_string(i) +
                "\tEIS 1 'Switching' (1 Bit)\tLow\t\r\n";
    }
    return text;
}

void importEsf(benchmark::State& state) {
    const std::string text = exportOf(static_cast<int>(state.range(0)));
    freshHeap();
    for (auto _ : state) {
        auto document = std::make_unique<Document>();
        document->startAt("/bench.xml");
        addEtsRecords(*document, text);
        benchmark::DoNotOptimize(document->items().count());
        state.PauseTiming();
        document.reset();
        freshHeap();
        state.ResumeTiming();
    }
    state.counters["per_item"] = benchmark::Counter(
        static_cast<double>(state.range(0)),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(importEsf)
    ->Name("ImportEsf")
    ->Arg(8192)
    ->Arg(65536)
    ->Arg(524288)
    ->Unit(benchmark::kMillisecond);

}  // namespace
