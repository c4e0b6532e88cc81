// The command line program.

#include <cstdlib>
#include <iostream>

#include "tool/CommandLine.h"
#include "tool/Terminal.h"

int main(int count, char** arguments) {
    showUtf8();
    std::ios::sync_with_stdio(false);
    const auto disk = systemDisk();
    std::deque<Document> documents;
    int status =
        runTool({.disk = *disk, .out = std::cout, .err = std::cerr, .documents = documents},
                utf8Arguments(count, arguments));
    std::cout.flush();
    if (!std::cout) {
        std::cerr << "opcolvan-cli: error: the standard output cannot be written to\n";
        status = 2;
    }
    std::cerr.flush();
    std::_Exit(status);  // skips freeing the documents, which takes long
}
