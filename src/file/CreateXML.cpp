#include "file/CreateXML.h"

#include <cstdint>
#include <string>
#include <string_view>

#include "base/Reporting.h"
#include "base/Text.h"
#include "file/FileSurvey.h"

namespace {

/// Lines of a configuration file that are not written yet. They end with CR LF.
class Lines {
 public:
    void add(std::size_t level, std::initializer_list<std::string_view> pieces) {
        text_.append(Indent(level));
        for (const auto piece : pieces)
            text_.append(piece);
        text_.append("\r\n");
    }

    void add(std::int16_t level, const clsItem& item) {
        item.GetXmlTag(level, text_);
        text_.append("\r\n");
    }

    /// True when the lines should be written before more are added, so that their memory is used
    /// again.
    bool isFull() const { return text_.size() > std::size_t{256} * 1024; }

    /// Writes the lines in the encoding of the file, and forgets them.
    void writeTo(const Write& write) {
        bytes_.clear();
        appendLatin1(bytes_, text_);
        text_.clear();
        write(bytes_);
    }

 private:
    std::string text_;   // UTF-8
    std::string bytes_;  // a member to keep its memory
};

/// Writes the contents of one device, in the order of the tree. It does not recurse, so that deep
/// branches cannot overflow the stack.
class Contents {
 public:
    Contents(Lines& lines, const Document& document, const Node& device)
        : lines_(lines), document_(document), device_(device), open_(&device), walk_(device) {}

    /// Adds lines until the buffer is full. Returns false after the last line.
    bool PrintBranch() {
        while (!lines_.isFull()) {
            const Node* node = walk_.next();
            if (node == nullptr) {
                closeUpTo(device_);
                return false;
            }
            isSaved(*node) ? print(*node) : walk_.skipChildren();
        }
        return true;
    }

 private:
    void print(const Node& node) {
        closeUpTo(*node.parent());
        if (node.kind() == NodeKind::item) {
            lines_.add(level_, *document_.itemAt(node));
        } else {
            lines_.add(static_cast<std::size_t>(level_++), {"<", node.text(), ">"});
            open_ = &node;
        }
    }

    void closeUpTo(const Node& node) {
        for (; open_ != &node; open_ = open_->parent())
            lines_.add(static_cast<std::size_t>(--level_), {"</", open_->text(), ">"});
    }

    Lines& lines_;
    const Document& document_;
    const Node& device_;
    const Node* open_;  // the node that contains the current line
    std::int16_t level_ = 4;
    TreeWalk walk_;
};

void writeConfiguration(const Document& document, const Write& write) {
    Lines lines;
    lines.add(0, {R"(<?xml version="1.0" encoding="ISO-8859-1"?>)"});
    lines.add(0, {"<QUONEibCfg>"});
    const GlobalSets& settings = document.settings();
    lines.add(1, {"<SETTINGS port=\"", settings.port, "\" editype=\"", settings.ediType,
                  "\" timeout=\"", std::to_string(settings.timeout), "\"/>"});
    lines.add(1, {"<OPC_DA>"});
    for (const auto& [key, device] : document.devices()) {
        lines.add(0, {device->GetXmlTag()});
        lines.add(3, {"<tags>"});
        Contents contents(lines, document, *document.deviceNode(key));
        for (bool more = true; more;) {
            runRoutine("PrintBranch", [&] { more = contents.PrintBranch(); });
            if (more) lines.writeTo(write);
        }
        lines.add(3, {"</tags>"});
        lines.add(2, {"</DEVICE>"});
    }
    lines.add(1, {"</OPC_DA>"});
    lines.add(0, {"</QUONEibCfg>"});
    lines.writeTo(write);
}

}  // namespace

bool CreateXML(const std::string& path, const Document& document, Disk& disk, Desktop& desktop) {
    const BusyPointer busy(desktop);
    return reportErrors(desktop, "CreateXML", [&] {
        disk.replace(path, [&](const Write& write) { writeConfiguration(document, write); });
    });
}
