#include "import/EtsImport.h"

#include <memory>
#include <vector>

#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "base/Text.h"

namespace {

const FileFilter exportFiles{"ESF files ", "*.esf"};

/// Returns the text before the first separator, and removes it and the separator from `rest`.
std::string_view takeUntil(std::string_view& rest, std::string_view separator) {
    const auto end = rest.find(separator);
    const std::string_view piece = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + separator.size());
    return piece;
}

/// The first three fields of a line. The others are not used, and there may be millions.
std::vector<std::string> fieldsOf(std::string_view line) {
    std::vector<std::string> fields;
    for (bool more = true; more && fields.size() < 3;) {
        more = line.find('\t') != std::string_view::npos;
        fields.emplace_back(takeUntil(line, "\t"));
    }
    return fields;
}

/// Adds a device with that name, unless the document has one.
void addDevice(Document& document, const SharedText& name) {
    if (document.devices().find(name) != nullptr) return;
    const auto device = std::make_shared<clsPLC>();
    device->SetByEts(name.string(), document.settings());
    document.add(device);
}

void addRecord(Document& document, std::string_view line) {
    const auto item = std::make_shared<clsItem>();
    addDevice(document, item->SetByEts(fieldsOf(line)));
    Node& node = document.add(item, document.tree().nodeAt(item->getParentKey()));
    document.tree().ensureVisible(node);
}

/// Replaces the last four characters of the path, its extension, by ".xml".
std::string configurationPathFor(std::string path) {
    constexpr int extensionLength = 4;
    const auto isContinuation = [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    };
    for (int i = 0; i < extensionLength && !path.empty(); ++i) {
        while (path.size() > 1 && isContinuation(path.back()))
            path.pop_back();
        path.pop_back();
    }
    return path + ".xml";
}

}  // namespace

void addEtsRecords(Document& document, std::string_view bytes) {
    constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
    const bool isUtf8 = bytes.starts_with(utf8Mark);
    if (isUtf8) bytes.remove_prefix(utf8Mark.size());
    for (std::size_t number = 1; !bytes.empty(); ++number) {
        const std::string_view line = takeUntil(bytes, "\r\n");
        if (line.find('\t') == std::string_view::npos) continue;
        try {
            addRecord(document, isUtf8 ? std::string(line) : fromWindows1252(line));
        } catch (const RunTimeError& error) {
            throw EtsError(number, error.description());
        }
    }
}

bool EtsImport::ShowDialImport(std::string& path) {
    return reportChooserErrors(desktop_, "ShowDialImport", [&] {
        try {
            path = desktop_.chooseFileToOpen("Select an ETS OPC Export file", exportFiles);
        } catch (const RunTimeError& error) {
            if (error.number() != ErrorNumber::cancelled) throw;
        }
    });
}

void EtsImport::mnuImpCfg_Click(const std::string& given) {
    reportErrors(desktop_, "mnuImpCfg_Click", [&] {
        if (!lifecycle_.saveFirst()) return;
        std::string path = given;
        if (path.empty() && (!ShowDialImport(path) || path.empty())) return;

        const BusyPointer busy(desktop_);
        window_.clearList();
        document_.startAt(configurationPathFor(path));
        try {
            importFile(path);
        } catch (const std::exception&) {
            desktop_.showMessage(notAnExport);
        }
    });
}

void EtsImport::importFile(const std::string& path) {
    {
        const ConfigTree::BulkChange bulk(document_.tree());
        addEtsRecords(document_, disk_.read(path));
    }
    document_.setCountersFromRecords();
    // Deliberate: the document counts as saved although no file has been written.
    document_.open = true;
    document_.saved = true;
    window_.listDevices();
    window_.configurationOpened();
}
