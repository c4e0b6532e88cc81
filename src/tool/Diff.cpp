#include "tool/Diff.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "tool/Compare.h"
#include "tool/Files.h"

namespace {

using Json = nlohmann::ordered_json;

const char* nameOf(Difference::Kind kind) {
    switch (kind) {
        case Difference::Kind::added: return "added";
        case Difference::Kind::removed: return "removed";
        case Difference::Kind::moved: return "moved";
        case Difference::Kind::renamed: return "renamed";
        case Difference::Kind::changed: return "changed";
    }
    return "";
}

/// A text in quotation marks, with control characters escaped as in JSON.
std::string quoted(const std::string& text) { return Json(text).dump(); }

/// Prints a line such as: changed item Plant.Light1: comment "Hall" -> "Corridor", address "1/2/3"
/// -> "1/2/4"
void printLine(std::ostream& out, const Difference& change) {
    out << nameOf(change.kind) << ' ' << kindName(change.what);
    if (!change.path.empty()) out << ' ' << change.path;
    if (!change.to.empty()) out << " -> " << change.to;
    const char* separator = ": ";
    for (const auto& [column, from, to] : change.fields) {
        out << std::exchange(separator, ", ") << nameOf(column) << ' ';
        if (change.kind == Difference::Kind::changed) out << quoted(from) << " -> ";
        out << quoted(to);
    }
    out << '\n';
}

Json toJson(const Difference& change) {
    Json json{
        {"change", nameOf(change.kind)}, {"kind", kindName(change.what)}, {"path", change.path}};
    if (!change.to.empty()) json["to"] = change.to;
    for (const auto& [column, from, to] : change.fields) {
        Json& field = json["fields"][std::string(nameOf(column))];
        if (change.kind == Difference::Kind::changed) {
            field = {{"from", from}, {"to", to}};
        } else {
            field = to;
        }
    }
    return json;
}

}  // namespace

int diff(const Tool& tool, const DiffOptions& options) {
    Document& from = tool.documents.emplace_back();
    Document& to = tool.documents.emplace_back();
    const bool isReadable = readConfiguration(tool, options.from, from);
    if (!readConfiguration(tool, options.to, to) || !isReadable) {
        return exitStatusFor(Severity::error);
    }
    const std::vector<Difference> changes = compare(from, to);
    if (options.json) {
        Json json = Json::array();
        for (const Difference& change : changes)
            json.push_back(toJson(change));
        tool.out << json.dump(2) << '\n';
    } else {
        for (const Difference& change : changes)
            printLine(tool.out, change);
    }
    return exitStatusFor(changes.empty() ? Severity::note : Severity::warning);
}
