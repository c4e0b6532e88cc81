#include "tool/Export.h"

#include <ostream>
#include <vector>

#include "base/RunTimeError.h"
#include "model/Addresses.h"
#include "tool/Columns.h"
#include "tool/Csv.h"
#include "tool/Files.h"

namespace {

/// The index of an address. Empty if the address is too large.
std::string indexOf(std::string_view address) {
    try {
        return AddressToHex(address, 4);
    } catch (const RunTimeError&) {
        return {};
    }
}

void addRow(CsvWriter& table, const Document& document, const Node& node, std::string_view path) {
    const Values values(document, node);
    const bool isItem = node.kind() == NodeKind::item;
    for (const Column column : allColumns) {
        if (column == Column::path) {
            table.add(path);
        } else if (column == Column::index && isItem) {
            table.add(indexOf(values[Column::address]));
        } else {
            table.add(values[column]);
        }
    }
    table.endRow();
}

void writeTable(const Document& document, char separator, const Write& write) {
    CsvWriter table(separator, write);
    for (const std::string_view name : columnNames)
        table.add(name);
    table.endRow();
    const Node& root = *document.tree().root();
    addRow(table, document, root, {});
    std::string path;
    std::vector<std::size_t> lengths{0};  // of the paths of all nodes above the current one
    for (TreeWalk walk(root); const Node* node = walk.next();) {
        lengths.resize(walk.depth());
        path.resize(lengths.back());
        appendToPath(path, node->text());
        lengths.push_back(path.size());
        addRow(table, document, *node, path);
    }
    table.finish();
}

}  // namespace

int exportTable(const Tool& tool, const ExportOptions& options) {
    const char separator = options.separator == "tab" ? '\t' : options.separator.front();
    Document& document = tool.documents.emplace_back();
    if (!options.table.empty() && !mayWrite(tool, options.table, options.force)) return 2;
    if (!readConfiguration(tool, options.file, document)) return 2;
    if (options.table.empty()) {
        writeTable(document, separator, [&](std::string_view bytes) { tool.out << bytes; });
        return 0;
    }
    try {
        tool.disk.replace(options.table,
                          [&](const Write& write) { writeTable(document, separator, write); });
        return 0;
    } catch (const RunTimeError& error) {
        tool.err << Finding{.file = options.table, .text = error.description()} << '\n';
        return 2;
    }
}
