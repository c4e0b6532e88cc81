#include "file/CreateXML.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "model/Generale.h"
#include "model/Reporting.h"
#include "model/RunTimeError.h"
#include "model/Text.h"

namespace {

/// The text of a file, line by line, in the file's own encoding. Lines end with CR LF.
class Lines {
 public:
    /// Most files of so many items need no more; memory that is not written to costs nothing.
    explicit Lines(std::size_t items) { bytes_.reserve(1024 + items * 512); }

    void add(std::size_t level, std::initializer_list<std::string_view> pieces) {
        bytes_.append(Indent(level));
        for (const auto piece : pieces)
            appendLatin1(bytes_, piece);
        bytes_.append("\r\n");
    }

    const std::string& bytes() const { return bytes_; }

 private:
    std::string bytes_;
};

constexpr std::int16_t deviceContentsLevel = 4;

/// The contents of one device, first child to last. No recursion: a branch may lie as deep as
/// the file that it was read from made it. False after telling the user.
bool PrintBranch(Lines& lines, const Document& document, const Node& device, const Tell& tell) {
    return reportErrors(tell, "PrintBranch", [&] {
        const Node* open = &device;  // the node whose contents are being written
        std::size_t level = deviceContentsLevel;
        const auto closeUpTo = [&](const Node* node) {
            for (; open != node; open = open->parent())
                lines.add(--level, {"</", open->text(), ">"});
        };
        for (TreeWalk walk(device); const Node* node = walk.next();) {
            closeUpTo(node->parent());
            if (node->kind() == NodeKind::item) {
                if (level > std::numeric_limits<std::int16_t>::max()) {
                    throw RunTimeError(ErrorNumber::overflow);
                }
                const auto& item = document.items().at(node->key());
                lines.add(0, {item->GetXmlTag(static_cast<std::int16_t>(level))});
            } else {
                lines.add(level++, {"<", node->text(), ">"});
                open = node;
            }
        }
        closeUpTo(&device);
    });
}

/// The whole file; nothing when a part of it could not be written.
std::optional<Lines> configurationText(const Document& document, const Tell& tell) {
    Lines lines(document.items().count());
    lines.add(0, {R"(<?xml version="1.0" encoding="ISO-8859-1"?>)"});
    lines.add(0, {"<QUONEibCfg>"});
    const GlobalSets& settings = document.settings();
    lines.add(1, {"<SETTINGS port=\"", settings.port, "\" editype=\"", settings.ediType,
                  "\" timeout=\"", std::to_string(settings.timeout), "\"/>"});
    lines.add(1, {"<OPC_DA>"});
    for (const auto& [key, device] : document.devices()) {
        lines.add(0, {device->GetXmlTag()});
        lines.add(3, {"<tags>"});
        const Node& node = document.tree().nodeAt(device->getName());
        if (!PrintBranch(lines, document, node, tell)) return std::nullopt;
        lines.add(3, {"</tags>"});
        lines.add(2, {"</DEVICE>"});
    }
    lines.add(1, {"</OPC_DA>"});
    lines.add(0, {"</QUONEibCfg>"});
    return lines;
}

}  // namespace

bool CreateXML(const std::string& path, const Document& document, Disk& disk, Desktop& desktop) {
    const BusyPointer busy(desktop);
    bool written = false;
    reportErrors(desktop, "CreateXML", [&] {
        const auto lines = configurationText(document, desktop);
        if (!lines) return;
        disk.replace(path, lines->bytes());
        written = true;
    });
    return written;
}
