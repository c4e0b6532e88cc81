// Measures the import of ETS exports.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "Measuring.h"
#include "import/EtsImport.h"
#include "model/Document.h"

namespace {

/// An export with this number of group addresses, 256 in each middle group.
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
    Figures own;
    for (auto _ : state) {
        const double seconds = inOwnProcess([&] {
            Document document;
            document.startAt("/bench.xml");
            const double spent = secondsOf([&] { addEtsRecords(document, text); });
            if (document.items().count() != static_cast<std::size_t>(state.range(0))) std::abort();
            return spent;
        });
        state.SetIterationTime(seconds);
        own.add(seconds);
    }
    reportPerItem(state, own);
}

BENCHMARK(importEsf)->Name("ImportEsf")->Apply(sizes);

}  // namespace
