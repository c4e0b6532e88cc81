// Reading and writing of configuration files, measured against the least that either must cost:
// the XML parser alone, and the writing of ready-made bytes.

#include <benchmark/benchmark.h>
#include <expat.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "Building.h"
#include "file/CreateXML.h"
#include "file/Disk.h"
#include "file/ImportXML.h"
#include "model/Document.h"

namespace {

class File {
 public:
    explicit File(int items)
        : path_((std::filesystem::temp_directory_path() / "opcolvan_bench.xml").string()) {
        Document document;
        fillBuilding(document, items);
        CreateXML(path_, document, *disk_, desktop_);
        bytes_ = disk_->read(path_);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    File(File&&) = delete;
    File& operator=(File&&) = delete;
    ~File() { std::filesystem::remove(path_); }

    const std::string& path() const { return path_; }
    const std::string& bytes() const { return bytes_; }
    Disk& disk() { return *disk_; }
    SilentDesktop& desktop() { return desktop_; }

 private:
    std::unique_ptr<Disk> disk_ = systemDisk();
    SilentDesktop desktop_;
    std::string path_;
    std::string bytes_;
};

template <typename Work>
double secondsOf(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void parseOnly(const std::string& bytes) {
    const XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetElementHandler(
        parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
    XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
    if (XML_Parse(parser, bytes.data(), static_cast<int>(bytes.size()), XML_TRUE) !=
        XML_STATUS_OK) {
        std::abort();
    }
    XML_ParserFree(parser);
}

void report(benchmark::State& state, const char* ratio, double own, double least) {
    state.counters["per_item"] = benchmark::Counter(
        static_cast<double>(state.range(0)),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters[ratio] = own / least;
}

void importXml(benchmark::State& state) {
    File file(static_cast<int>(state.range(0)));
    freshHeap();
    double own = 0;
    double parser = 0;
    for (auto _ : state) {
        auto document = std::make_unique<Document>();
        document->startAt(file.path());
        const double seconds = secondsOf([&] {
            if (!ImportXML(file.path(), *document, file.disk(), file.desktop(), [] {})) {
                std::abort();
            }
        });
        if (document->items().count() != static_cast<std::size_t>(state.range(0))) std::abort();
        document.reset();
        freshHeap();
        state.SetIterationTime(seconds);
        own += seconds;
        parser += secondsOf([&] { parseOnly(file.bytes()); });
    }
    report(state, "vs_parser", own, parser);
}

void createXml(benchmark::State& state) {
    File file(static_cast<int>(state.range(0)));
    Document document;
    fillBuilding(document, static_cast<int>(state.range(0)));
    double own = 0;
    double write = 0;
    for (auto _ : state) {
        const double seconds = secondsOf([&] {
            if (!CreateXML(file.path(), document, file.disk(), file.desktop())) std::abort();
        });
        state.SetIterationTime(seconds);
        own += seconds;
        write += secondsOf([&] { file.disk().replace(file.path(), file.bytes()); });
    }
    report(state, "vs_write", own, write);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    for (const int items : {1024, 8192, 65536, 524288})
        benchmark->Arg(items);
    benchmark->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(1.0);
}

// The names end with the number of items: ImportXML/65536.
const auto* const importBenchmark =
    benchmark::RegisterBenchmark("ImportXML", importXml) -> Apply(sizes);
const auto* const createBenchmark =
    benchmark::RegisterBenchmark("CreateXML", createXml) -> Apply(sizes);

}  // namespace

BENCHMARK_MAIN();
