#include "tool/Import.h"

#include <algorithm>
#include <ostream>

#include "tool/Assembly.h"
#include "tool/Files.h"

namespace {

/// Prints the findings by line. Returns the highest severity; note if there are none.
Severity print(const Tool& tool, const std::string& file, std::vector<Finding>& findings) {
    std::ranges::stable_sort(findings, {}, &Finding::line);
    auto worst = Severity::note;
    for (Finding& finding : findings) {
        finding.file = file;
        tool.err << finding << '\n';
        worst = std::max(worst, finding.severity);
    }
    return worst;
}

}  // namespace

int importTable(const Tool& tool, const ImportOptions& options) {
    constexpr int failed = exitStatusFor(Severity::error);
    if (!mayWrite(tool, options.file, options.force)) return failed;
    Document& base = tool.documents.emplace_back();
    base.startAt(options.base);
    if (!options.base.empty() && !readConfiguration(tool, options.base, base)) return failed;
    auto text = readFile(tool, options.table);
    if (!text) return failed;
    std::vector<Finding> findings;
    const Table table(*text, findings);
    text.reset();  // frees the memory: the table has copies of the fields
    Document& result = tool.documents.emplace_back();
    result.startAt(options.file);
    assemble(base, table, result, findings);
    const Severity worst = print(tool, options.table, findings);
    if (worst == Severity::error) return failed;
    return writeConfiguration(tool, options.file, result) ? exitStatusFor(worst) : failed;
}
