#include "tool/Files.h"

#include <ostream>

#include "base/RunTimeError.h"
#include "file/CreateXML.h"
#include "file/ImportXML.h"

bool readConfiguration(const Tool& tool, const std::string& path, Document& document) {
    bool isWhole = true;
    NoDesktop desktop([&](const std::string& text) {
        isWhole = false;
        tool.err << Finding{.file = path, .text = text} << '\n';
    });
    document.startAt(path);
    return ImportXML(path, document, tool.disk, desktop, [] {}) && isWhole;
}

std::optional<std::string> readFile(const Tool& tool, const std::string& path) {
    try {
        return tool.disk.read(path);
    } catch (const RunTimeError& error) {
        tool.err << Finding{.file = path, .text = error.description()} << '\n';
        return std::nullopt;
    }
}

bool mayWrite(const Tool& tool, const std::string& path, bool force) {
    if (force || !tool.disk.exists(path)) return true;
    tool.err << Finding{.file = path, .text = "is there already; --force replaces it"} << '\n';
    return false;
}

bool writeConfiguration(const Tool& tool, const std::string& path, const Document& document) {
    NoDesktop desktop(
        [&](const std::string& text) { tool.err << Finding{.file = path, .text = text} << '\n'; });
    return CreateXML(path, document, tool.disk, desktop);
}
