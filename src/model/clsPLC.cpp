#include "model/clsPLC.h"

#include <utility>

#include "base/Numbers.h"
#include "model/ListColumns.h"

void clsPLC::setPort(std::string port) { port_ = std::move(port); }

void clsPLC::setEdiType(std::string ediType) { ediType_ = std::move(ediType); }

void clsPLC::setName(std::string name) { name_ = std::move(name); }

void clsPLC::SetByXml(const XmlElement& element) {
    setName(element.attribute("name"));
    setPort(element.attribute("port"));
    setEdiType(element.attribute("editype"));
    setTimeout(readInt32(element.attribute("timeout")));
}

void clsPLC::SetByEts(std::string name, const GlobalSets& settings) {
    setName(std::move(name));
    setPort(settings.port);
    setEdiType(settings.ediType);
    setTimeout(settings.timeout);
}

void clsPLC::AddToListView(ListView& list) const {
    ListView::Row row{
        .key = name_, .kind = NodeKind::plc, .cells = {}, .icon = tagOf(NodeKind::plc)};
    fillCells(row, *this, deviceColumns());
    list.addRow(std::move(row));
}

void clsPLC::SetByForm(const DeviceFields& dialog) {
    const std::int32_t timeout = readInt32(dialog.txtTimeout);
    setName(dialog.txtName);
    setPort(dialog.cmbPort);
    setEdiType(dialog.cmbEdiType);
    setTimeout(timeout);
}

std::string clsPLC::GetXmlTag() const {
    return "\t\t<DEVICE name=\"" + name_ + "\" port=\"" + port_ + "\" editype=\"" + ediType_ +
           "\" timeout=\"" + std::to_string(timeout_) + "\">";
}
