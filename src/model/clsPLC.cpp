#include "model/clsPLC.h"

#include <utility>

#include "base/Numbers.h"
#include "base/Text.h"

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
    list.addRow({.key = name_,
                 .text = name_,
                 .subItems = {trimBlanks(port_), trimBlanks(ediType_)},
                 .icon = "plc",
                 .smallIcon = "plc"});
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
