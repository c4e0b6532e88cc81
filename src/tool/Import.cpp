#include "tool/Import.h"

#include <algorithm>
#include <ostream>

#include "tool/Assembly.h"
#include "tool/Files.h"

namespace {

/// Gives the gravest; none are notes.
Severity tell(const Tool& tool, const std::string& file, std::vector<Finding>& findings) {
    std::ranges::stable_sort(findings, {}, &Finding::line);
    auto gravest = Severity::note;
    for (Finding& finding : findings) {
        finding.file = file;
        tool.err << finding << '\n';
        gravest = std::max(gravest, finding.severity);
    }
    return gravest;
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
    text.reset();  // the fields are in the table
    Document& result = tool.documents.emplace_back();
    result.startAt(options.file);
    assemble(base, table, result, findings);
    const Severity gravest = tell(tool, options.table, findings);
    if (gravest == Severity::error) return failed;
    return writeConfiguration(tool, options.file, result) ? exitStatusFor(gravest) : failed;
}
