// The device record.
#pragma once

#include <cstdint>
#include <string>

#include "model/GlobalSets.h"
#include "model/ListView.h"
#include "model/XmlElement.h"

/// The fields of the device dialog, as the user left them.
struct DeviceFields {
    std::string txtName;
    std::string cmbPort;
    std::string cmbEdiType;
    std::string txtTimeout;
};

/// A device: one connection of the OPC server to the bus through a bus coupler. Its name is its
/// node key and its key in the devices registry. No setter checks its value.
class clsPLC {
 public:
    void setPort(std::string port);
    const std::string& getPort() const { return port_; }

    /// Always equal to the name.
    const std::string& sKey() const { return name_; }

    void setEdiType(std::string ediType);
    const std::string& getEdiType() const { return ediType_; }

    /// The receive time-out in milliseconds.
    void setTimeout(std::int32_t timeout) { timeout_ = timeout; }
    std::int32_t getTimeout() const { return timeout_; }

    void setName(std::string name);
    const std::string& getName() const { return name_; }

    /// From the attributes of a DEVICE element. Raises ErrorNumber::invalidUseOfNull for a
    /// missing one and ErrorNumber::overflow for a time-out that does not fit 32 bits.
    void SetByXml(const XmlElement& element);

    /// From an import: the given name, the rest from the global settings.
    void SetByEts(std::string name, const GlobalSets& settings);

    /// Adds the device's row: its name, port and EDI type.
    void AddToListView(ListView& list) const;

    /// From the device dialog. Raises ErrorNumber::overflow for a time-out that does not fit 32
    /// bits; the record is unchanged then.
    void SetByForm(const DeviceFields& dialog);

    /// The opening line of the device's element, in UTF-8, without line end. Nothing is escaped.
    std::string GetXmlTag() const;

 private:
    std::string name_;
    std::string port_;
    std::string ediType_;
    std::int32_t timeout_ = 0;
};
