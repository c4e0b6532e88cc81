#include "tool/Convert.h"

#include <ostream>

#include "import/EtsImport.h"
#include "tool/Files.h"

int convertExport(const Tool& tool, const ConvertOptions& options) {
    constexpr int failed = exitStatusFor(Severity::error);
    if (!mayWrite(tool, options.file, options.force)) return failed;
    const auto bytes = readFile(tool, options.exportFile);
    if (!bytes) return failed;
    Document& document = tool.documents.emplace_back();
    document.startAt(options.file);
    document.setSettings(options.settings);
    try {
        addEtsRecords(document, *bytes);
    } catch (const EtsError& error) {
        tool.err << Finding{.file = options.exportFile,
                            .line = error.line,
                            .text = std::string(notAnExport) + " (" + error.reason + ")"}
                 << '\n';
        return failed;
    }
    return writeConfiguration(tool, options.file, document) ? 0 : failed;
}
