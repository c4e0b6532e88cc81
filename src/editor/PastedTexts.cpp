#include "editor/PastedTexts.h"

#include <algorithm>
#include <unordered_set>

#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "base/Text.h"
#include "dialogs/frmReplace.h"
#include "file/FileRules.h"
#include "model/Checks.h"
#include "model/Keys.h"

namespace {

/// Calls `take` with each line of a text from the clipboard, without leading and trailing blanks,
/// until it returns false. Returns whether it always returned true. Lines end with CR LF. If the
/// text contains none, lines end with LF, as some desktops convert CR LF to LF. Text after the last
/// line end is ignored. A text without a line end is one line, and its blanks are kept.
bool forEachPastedLine(std::string_view text,
                       const std::function<bool(std::string_view line)>& take) {
    const std::string_view lineEnd = text.find("\r\n") == std::string_view::npos ? "\n" : "\r\n";
    auto end = text.find(lineEnd);
    // Deliberate: a last line without a line end is used only when it is the only line.
    if (end == std::string_view::npos) return take(text);
    for (; end != std::string_view::npos; end = text.find(lineEnd)) {
        if (!take(withoutBlanks(text.substr(0, end)))) return false;
        text.remove_prefix(end + lineEnd.size());
    }
    return true;
}

/// Predicts which names will be refused when many items are renamed one after another.
class RenamingAhead {
 public:
    RenamingAhead(const Document& document, const ListView& list)
        : document_(document), list_(list) {}

    /// Notes that the item of a row gets a key. False when the key will be in use at that moment.
    bool rename(std::size_t row, const Node& item, const SharedText& key) {
        const bool isOwn = equalIgnoringCase(key, item.key());
        if (key != item.key() && isInUse(key, isOwn)) return false;
        // A row that is out of date may have the key.
        const auto holder = list_.findRow(key);
        if (holder && *holder != row && !freed_.contains(key)) return false;
        freed_.insert(item.key());
        taken_.insert(key);
        return true;
    }

 private:
    bool isInUse(const SharedText& key, bool isOwn) const {
        const auto isOther = [](const Node* node) {
            return node != nullptr && node->kind() != NodeKind::item;
        };
        if (isOther(document_.tree().FindNode(key)) || document_.detached().FindNode(key)) {
            return true;
        }
        if (isOwn) return false;
        const bool isItems = document_.items().find(key) != nullptr;
        return taken_.contains(key) || (isItems && !freed_.contains(key));
    }

    const Document& document_;
    const ListView& list_;
    struct IsEqual {
        bool operator()(std::string_view a, std::string_view b) const {
            return equalIgnoringCase(a, b);
        }
    };
    using Keys = std::unordered_set<SharedText, std::hash<SharedText>, IsEqual>;
    // Keys of items: those that become free, and those that are used from then on.
    Keys freed_, taken_;
};

}  // namespace

void PastedTexts::Paste_Name_Click() {
    reportErrors(desktop_, "Paste_Name_Click", [&] {
        paste({.what = "name",
               .check = [&](std::string_view line) { return isNameFree(line); },
               .present = [&](std::size_t row) -> const SharedText& {
                   return list_.rows()[row].text();
               },
               .refusals = [&](const Rows& rows,
                               const Lines& lines) { return refusedNames(rows, lines); },
               .apply =
                   [&](const Rows& rows, const Lines& lines, const ShowMessage& showMessage) {
                       const ConfigTree::BulkChange bulk(document_.tree());
                       for (std::size_t i = 0; i < rows.size(); ++i)
                           if (CheckChars(lines[i], showMessage)) rename(rows[i], lines[i]);
                   }});
    });
}

void PastedTexts::Paste_Comment_Click() {
    reportErrors(desktop_, "Paste_Comment_Click", [&] {
        const auto nodeOf = [&](std::size_t row) -> Node& {
            return document_.itemNodeAt(list_.rows()[row].key);
        };
        paste({.what = "comment",
               .check = [](std::string_view /*line*/) { return true; },
               .present = [&](std::size_t row) -> const SharedText& {
                   return document_.items().at(nodeOf(row).key()).sComment;
               },
               .refusals = [](const Rows& rows,
                              const Lines& /*lines*/) { return Lines(rows.size()); },
               .apply =
                   [&](const Rows& rows, const Lines& lines, const ShowMessage& /*showMessage*/) {
                       for (std::size_t i = 0; i < rows.size(); ++i) {
                           Node& item = nodeOf(rows[i]);
                           document_.setComment(item, lines[i]);
                           contents_.refreshRow(rows[i], item);
                       }
                   }});
    });
}

/// The steps that are the same for both commands.
void PastedTexts::paste(const Kind& kind) {
    const std::string text = desktop_.clipboardText();
    if (text.empty()) return desktop_.showMessage("Empty clipboard !");
    // Counted before they are stored: a clipboard may contain millions of lines.
    std::size_t count = 0;
    const bool passed = forEachPastedLine(text, [&](std::string_view line) {
        ++count;
        return kind.check(line);
    });
    if (!passed) return;
    Rows rows;
    for (std::size_t row = 0; row < list_.rows().size(); ++row)
        if (list_.rows()[row].selected) rows.push_back(row);
    if (rows.size() != count) return desktop_.showMessage("Invalid selection");
    Lines lines;
    forEachPastedLine(text, [&](std::string_view line) {
        lines.emplace_back(line);
        return true;
    });
    if (!isAccepted(rows, lines, kind)) return;

    const Document::Step step(document_, "Paste", kind.what);
    document_.saved = false;  // now: changes before an error are kept
    const BusyPointer busy(desktop_);
    withFirstMessages(desktop_, [&](FirstMessages& messages) {
        const ListView::Update update(list_);
        kind.apply(rows, lines, messages);
        desktop_.clearClipboard();
    });
}

/// Returns whether the name is free below the selected node, or belongs to an item there that gets
/// a new name. If not, shows a message and empties the clipboard.
bool PastedTexts::isNameFree(std::string_view name) {
    const Node& parent = document_.selectedNode();
    const Node* holder = document_.tree().FindNode(joinKey(parent.key(), name));
    // A line with a "." may be the key of a node further below, which does not count.
    if (holder == nullptr || holder->parent() != &parent) return true;
    if (holder->kind() != NodeKind::item) return true;
    const auto row = list_.findRow(holder->key());
    if (row && list_.rows()[*row].selected) return true;
    desktop_.showMessage("Name already existing");
    desktop_.clearClipboard();
    return false;
}

/// A key in use ends the renaming: all rows from there on are refused.
PastedTexts::Lines PastedTexts::refusedNames(const Rows& rows, const Lines& names) const {
    struct {
        void showMessage(const std::string& text) { last = text; }
        std::string last;
    } messages;
    Lines refusals(rows.size());
    RenamingAhead ahead(document_, list_);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!CheckChars(names[i], messages)) {
            refusals[i] = messages.last;
            continue;
        }
        const Node* node = document_.tree().FindNode(list_.rows()[rows[i]].key);
        if (node != nullptr && node->kind() == NodeKind::item &&
            ahead.rename(rows[i], *node, BuildNodeKey(names[i], node, true))) {
            continue;
        }
        refusals[i] = "The name is in use. Nothing from this row on will be replaced.";
        std::fill(refusals.begin() + static_cast<std::ptrdiff_t>(i) + 1, refusals.end(),
                  "Will not be replaced: a name above is in use.");
        break;
    }
    return refusals;
}

bool PastedTexts::isAccepted(const Rows& rows, const Lines& lines, const Kind& kind) {
    frmReplace form;
    auto& grid = form.Grid1.rows;
    grid.reserve(rows.size() + 1);
    grid.push_back({"Item " + std::string(kind.what), "", "New Item " + std::string(kind.what)});
    form.faults = kind.refusals(rows, lines);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        grid.push_back({kind.present(rows[i]).string(), "<---", lines[i]});
        if (form.faults[i].empty()) form.faults[i] = faultOf(lines[i], FilePlace::content).text;
    }
    form.faults.emplace(form.faults.begin());  // the row of the headings has none
    forms_.showModal(form);
    return form.accepted();
}

/// Raises ErrorNumber::keyTaken or ErrorNumber::keyNotUnique when the new key is in use, and
/// ErrorNumber::invalidCall when the row shows no item. Then the item is unchanged.
void PastedTexts::rename(std::size_t row, const std::string& name) {
    Node& node = document_.tree().nodeAt(list_.rows()[row].key);
    // The row of a device, or a row that is out of date: another node has the key now.
    if (node.kind() != NodeKind::item) throw RunTimeError(ErrorNumber::invalidCall);
    const SharedText newKey = BuildNodeKey(name, &node, true);
    // A row that is out of date may have the key.
    const auto holder = list_.findRow(newKey);
    if (holder && *holder != row) {
        document_.requireFreeKeys(node, newKey);
        throw RunTimeError(ErrorNumber::keyNotUnique);
    }
    document_.renameItem(node, name);
    contents_.refreshRow(row, node);
}
