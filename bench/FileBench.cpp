// Measures reading and writing of configuration files, relative to the minimum: the XML parser
// alone, and writing the finished bytes. Reading is also compared with other ways to read the file.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "Building.h"
#include "Measuring.h"
#include "OtherReaders.h"
#include "file/CreateXML.h"
#include "file/Disk.h"
#include "file/FileRules.h"
#include "file/ImportXML.h"
#include "model/Document.h"

namespace {

class File {
 public:
    explicit File(int items)
        : path_((std::filesystem::temp_directory_path() / "opcolvan_bench.xml").string()) {
        inOwnProcess([&] {
            Document document;
            fillBuilding(document, items);
            return CreateXML(path_, document, *disk_, desktop_);
        });
        bytes_ = disk_->read(path_);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
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

struct Opened {
    double seconds = 0;
    double heap = 0;  ///< bytes of the document
};

Opened openFile(File& file, std::size_t items) {
    const double heapBefore = heapInUse();
    Document document;
    document.startAt(file.path());
    const double seconds = secondsOf([&] {
        if (!ImportXML(file.path(), document, file.disk(), file.desktop(), [] {})) std::abort();
    });
    if (document.items().count() != items) std::abort();
    return {seconds, heapInUse() - heapBefore};
}

void importXml(benchmark::State& state) {
    const auto items = static_cast<std::size_t>(state.range(0));
    File file(static_cast<int>(items));
    const auto secondsToRead = [&](Reading (*read)(const std::string&, std::size_t)) {
        return inOwnProcess([&] {
            Reading reading;
            return secondsOf([&] { reading = read(file.path(), items); });
        });
    };
    Figures own;
    Figures heap;
    Figures parser;
    Figures pugixml;
    Figures qXmlStream;
    for (auto _ : state) {
        const Opened opened = inOwnProcess([&] { return openFile(file, items); });
        state.SetIterationTime(opened.seconds);
        own.add(opened.seconds);
        heap.add(opened.heap);
        parser.add(inOwnProcess([&] { return secondsOf([&] { parseOnly(file.bytes()); }); }));
        pugixml.add(secondsToRead(readIntoMaps));
        qXmlStream.add(secondsToRead(readIntoQtModel));
    }
    reportPerItem(state, own);
    state.counters["heap_per_item"] = heap.median() / static_cast<double>(items);
    state.counters["vs_parser"] = own.median() / parser.median();
    state.counters["vs_pugixml"] = own.median() / pugixml.median();
    state.counters["vs_qxmlstream"] = own.median() / qXmlStream.median();
}

void createXml(benchmark::State& state) {
    File file(static_cast<int>(state.range(0)));
    Document document;
    document.startAt(file.path());
    if (!ImportXML(file.path(), document, file.disk(), file.desktop(), [] {})) std::abort();
    const FileRules rules(document);
    if (rules.refusal())
        std::abort();  // in the editor, the window has already called it for the signs
    Figures own;
    Figures write;
    for (auto _ : state) {
        const double seconds = secondsOf([&] {
            if (rules.refusal() || rules.unreadable().count > 0) std::abort();
            if (!CreateXML(file.path(), document, file.disk(), file.desktop())) std::abort();
        });
        state.SetIterationTime(seconds);
        own.add(seconds);
        write.add(secondsOf([&] { file.disk().replace(file.path(), file.bytes()); }));
    }
    reportPerItem(state, own);
    state.counters["vs_write"] = own.median() / write.median();
}

// The number of items is appended to the names: ImportXML/65536.
const auto* const importBenchmark =
    benchmark::RegisterBenchmark("ImportXML", importXml) -> Apply(sizes);
const auto* const createBenchmark =
    benchmark::RegisterBenchmark("CreateXML", createXml) -> Apply(sizes);

}  // namespace

BENCHMARK_MAIN();
