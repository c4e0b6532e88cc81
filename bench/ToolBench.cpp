// Measures the commands of the command line program as a user runs them, relative to opening one
// file of the same size in the editor.

#include <sys/resource.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Building.h"
#include "Measuring.h"
#include "file/CreateXML.h"
#include "file/ImportXML.h"

namespace {

constexpr int items = 65536;

const std::filesystem::path& folder() {
    static const std::filesystem::path path =
        std::filesystem::temp_directory_path() / "opcolvan_tool_bench";
    return path;
}

std::string fileNamed(const char* name) { return (folder() / name).string(); }

struct Run {
    double seconds = 0;
    double bytes = 0;  ///< the most memory in use at one time
};

/// Runs the program with these arguments. Another exit status ends the benchmark.
Run runTool(std::vector<std::string> arguments, int expectedStatus) {
    arguments.insert(arguments.begin(), TOOL);
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    Run run;
    run.seconds = secondsOf([&] {
        const pid_t process = fork();
        if (process == 0) {
            if (std::freopen("/dev/null", "w", stdout) == nullptr) _exit(127);
            execv(TOOL, pointers.data());
            _exit(127);
        }
        int status = 0;
        rusage usage{};
        if (process < 0 || wait4(process, &status, 0, &usage) != process || !WIFEXITED(status) ||
            WEXITSTATUS(status) != expectedStatus) {
            std::abort();
        }
        run.bytes = static_cast<double>(usage.ru_maxrss) * 1024;
    });
    return run;
}

/// Opens a file as the editor does. Returns the time, and the heap memory of the configuration.
Run openFile(const std::string& path) {
    return inOwnProcess([&] {
        const auto disk = systemDisk();
        SilentDesktop desktop;
        const double heapBefore = heapInUse();
        Document document;
        document.startAt(path);
        Run run;
        run.seconds = secondsOf([&] {
            if (!ImportXML(path, document, *disk, desktop, [] {})) std::abort();
        });
        run.bytes = heapInUse() - heapBefore;
        return run;
    });
}

/// Writes a configuration, the same with one more device, and the first one as a table.
void makeFiles() {
    std::filesystem::create_directories(folder());
    for (const char* name : {"old.xml", "new.xml"}) {
        inOwnProcess([&] {
            const auto disk = systemDisk();
            SilentDesktop desktop;
            Document document;
            fillBuilding(document, items);
            if (name == std::string("new.xml")) addBranchOf(document, "More", 32);
            return CreateXML(fileNamed(name), document, *disk, desktop);
        });
    }
    runTool({"export", fileNamed("old.xml"), "--force", "-o", fileNamed("old.csv")}, 0);
}

/// Measures a command that reads this number of files. Reports its time divided by the time of
/// opening one file, and its memory for each file divided by the memory of an open configuration.
/// The memory of the program without a file is subtracted first.
void measure(benchmark::State& state, const std::vector<std::string>& arguments, int files,
             int expectedStatus) {
    makeFiles();
    const double program = runTool({"--version"}, 0).bytes;
    Figures time;
    Figures memory;
    for (auto _ : state) {
        const Run opened = openFile(fileNamed("old.xml"));
        const Run run = runTool(arguments, expectedStatus);
        state.SetIterationTime(run.seconds);
        time.add(run.seconds / opened.seconds);
        memory.add((run.bytes - program) / (opened.bytes * files));
    }
    state.counters["vs_opening"] = time.median();
    state.counters["memory"] = memory.median();
    std::filesystem::remove_all(folder());
}

void add(const char* name, const std::vector<std::string>& arguments, int files,
         int expectedStatus) {
    benchmark::RegisterBenchmark(
        name, [=](benchmark::State& state) { measure(state, arguments, files, expectedStatus); })
        ->Iterations(9)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int count, char** arguments) {
    const std::string old = fileNamed("old.xml");
    const std::string written = fileNamed("written");
    // Status 2: the address of the first item is 0/0/0, which is not a valid group address.
    add("check", {"check", "--quiet", old}, 1, 2);
    add("export", {"export", old, "--force", "-o", written}, 1, 0);
    add("import", {"import", fileNamed("old.csv"), "--force", "-o", written}, 1, 0);
    add("import --into", {"import", fileNamed("old.csv"), "--into", old, "--force", "-o", written},
        2, 0);
    add("diff", {"diff", old, fileNamed("new.xml")}, 2, 1);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
