#include "tool/Report.h"

#include <algorithm>
#include <ostream>

#include "base/Text.h"

std::string_view nameOf(Severity severity) {
    switch (severity) {
        case Severity::note: return "note";
        case Severity::warning: return "warning";
        case Severity::error: return "error";
    }
    return {};
}

std::ostream& operator<<(std::ostream& out, const Finding& finding) {
    out << finding.file;
    if (finding.line > 0) out << ':' << finding.line;
    out << ": " << nameOf(finding.severity) << ": ";
    if (!finding.place.empty()) out << finding.place << ": ";
    std::string text = finding.text;
    std::ranges::replace_if(
        text, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return out << trimBlanks(text);
}
