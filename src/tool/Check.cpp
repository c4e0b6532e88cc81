#include "tool/Check.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>

#include "file/ImportXML.h"
#include "file/TextRules.h"
#include "model/Addresses.h"
#include "model/DataTypes.h"
#include "model/ProposedNames.h"
#include "tool/Columns.h"
#include "tool/Files.h"

namespace {

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

/// Checks one file.
class Checker : public ReadingListener {
 public:
    Checker(std::string path, Document& document) : path_(std::move(path)), document_(document) {}

    std::vector<Finding> findings(Disk& disk) {
        NoDesktop desktop([&](const std::string& text) { add(Severity::error, text); });
        document_.startAt(path_);
        if (ImportXML(
                path_, document_, disk, desktop, [] {}, [] { return true; }, this))
            checkAll();
        std::ranges::stable_sort(findings_, {}, &Finding::line);
        return std::move(findings_);
    }

    void read(const Node& /*node*/, std::size_t line) override { lines_.push_back(line); }

    void fault(const std::string& message, const Node* parent, std::size_t line) override {
        node_ = parent;
        line_ = line;
        add(Severity::error, message);
    }

 private:
    void add(Severity severity, std::string text) {
        findings_.push_back({.file = path_,
                             .line = line_,
                             .severity = severity,
                             .place = node_ == nullptr ? std::string() : pathOf(*node_),
                             .text = std::move(text)});
    }

    void checkAll() {
        auto line = lines_.begin();
        for (const auto& node : document_.tree().nodes()) {
            node_ = node.get();
            line_ = node_ == document_.tree().root() ? 0 : *line++;  // the same order as in read()
            checkNode();
        }
    }

    void checkNode() {
        if (isProposedName(node_->kind(), node_->text())) {
            add(Severity::note, "the name was proposed, and never changed");
        }
        switch (node_->kind()) {
            case NodeKind::config: {
                const GlobalSets& settings = document_.settings();
                return checkConnection(settings.port, settings.ediType);
            }
            case NodeKind::plc: return checkDevice(document_.deviceAt(*node_));
            case NodeKind::branch:
                return checkText(Column::name, node_->text(), FilePlace::elementName);
            case NodeKind::item: return checkItem(document_.items().at(node_->key()));
        }
    }

    /// Checks a text only. Two nodes with the same key cannot occur: the reader skips the second
    /// one.
    void checkText(Column column, std::string_view text, FilePlace place) {
        const Fault fault = faultOf(text, place);
        if (fault.kind == FaultKind::none) return;
        add(fault.kind == FaultKind::changed ? Severity::warning : Severity::error,
            std::string(nameOf(column)) + ": " + fault.text);
    }

    void checkConnection(std::string_view port, std::string_view ediType) {
        checkText(Column::port, port, FilePlace::attribute);
        checkText(Column::ediType, ediType, FilePlace::attribute);
    }

    void checkDevice(const clsPLC& device) {
        checkText(Column::name, device.getName(), FilePlace::attribute);
        checkConnection(device.getPort(), device.getEdiType());
        if (node_->GetChildren().empty()) add(Severity::note, "the device holds nothing");
    }

    void checkItem(const clsItem& item) {
        checkText(Column::name, item.sName, FilePlace::content);
        checkText(Column::comment, item.sComment, FilePlace::content);
        checkText(Column::address, item.sAddress, FilePlace::content);
        checkAddress(item.sAddress);
        checkType(item);
        if (std::ranges::find(accessRightNames(), item.sAccessRight) == accessRightNames().end()) {
            checkText(Column::accessRight, item.sAccessRight, FilePlace::content);
            add(Severity::warning, "unknown access right " + quoted(item.sAccessRight));
        }
    }

    void checkAddress(std::string_view address) {
        const auto number = busAddress(address);
        if (number.value_or(0) == 0) {  // 0/0/0 is the broadcast address
            add(Severity::error, "address " + quoted(address) + " is none of 0/0/1 to 31/7/255");
            return;
        }
        const Node*& first = firstWith_[*number];
        if (first != nullptr) {
            add(Severity::warning,
                "address " + std::string(address) + " is also that of " + pathOf(*first));
        } else {
            first = node_;
        }
    }

    void checkType(const clsItem& item) {
        if (findDataType(item.sDataType) == nullptr) {
            checkText(Column::dataType, item.sDataType, FilePlace::content);
            add(Severity::warning, "unknown data type " + quoted(item.sDataType));
        }
        const bool hasElements = clsItem::hasElements(item.sDataType);
        if (hasElements && item.nElements <= 0) {
            add(Severity::warning, "no number of elements, which " + item.sDataType + " needs");
        } else if (!hasElements && item.nElements != 0) {
            add(Severity::note, "a number of elements, which has no meaning for " + item.sDataType);
        }
    }

    const std::string path_;
    Document& document_;
    std::vector<std::size_t> lines_;
    /// The first item with each address, by the number of the address.
    std::vector<const Node*> firstWith_ = std::vector<const Node*>(std::size_t{1} << 16U);
    std::vector<Finding> findings_;
    // The current node and its line.
    const Node* node_ = nullptr;
    std::size_t line_ = 0;
};

void printJson(std::ostream& out, const std::vector<Finding>& findings) {
    nlohmann::ordered_json json = nlohmann::ordered_json::array();
    for (const Finding& finding : findings) {
        json.push_back({{"file", finding.file},
                        {"line", finding.line},
                        {"severity", nameOf(finding.severity)},
                        {"path", finding.place},
                        {"text", finding.text}});
        if (finding.line == 0) json.back().erase("line");
    }
    using Handler = nlohmann::ordered_json::error_handler_t;
    out << json.dump(2, ' ', false, Handler::replace) << '\n';  // a file name may not be UTF-8
}

}  // namespace

int check(const Tool& tool, const CheckOptions& options) {
    std::vector<Finding> findings;
    for (const std::string& file : options.files)
        std::ranges::move(Checker(file, tool.documents.emplace_back()).findings(tool.disk),
                          std::back_inserter(findings));
    if (!options.quiet && options.json) {
        printJson(tool.out, findings);
    } else if (!options.quiet) {
        for (const Finding& finding : findings)
            tool.out << finding << '\n';
    }
    auto worst = Severity::note;
    for (const Finding& finding : findings)
        worst = std::max(worst, finding.severity);
    return exitStatusFor(worst);
}
