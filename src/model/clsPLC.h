// The device record.
#pragma once

#include <cstdint>
#include <string>

#include "model/GlobalSets.h"
#include "model/ListView.h"
#include "model/XmlElement.h"

/// The fields of the device dialog.
struct DeviceFields {
    std::string txtName;
    std::string cmbPort;
    std::string cmbEdiType;
    std::string txtTimeout;
};

/// A device: one connection of the OPC server to the bus through a bus coupler. Its name is the key
/// of its node and of its entry in the registry of devices. No setter checks its value.
///
///     const auto device = std::make_shared<clsPLC>();
///     device->SetByForm(fields);
///     document.add(device);
class clsPLC {
 public:
    void setPort(std::string port);
    const std::string& getPort() const { return port_; }

    /// The key, which always is the name.
    const std::string& sKey() const { return name_; }

    void setEdiType(std::string ediType);
    const std::string& getEdiType() const { return ediType_; }

    /// The receive time-out in milliseconds.
    void setTimeout(std::int32_t timeout) { timeout_ = timeout; }
    std::int32_t getTimeout() const { return timeout_; }

    void setName(std::string name);
    const std::string& getName() const { return name_; }

    /// Sets all fields from the attributes of a DEVICE element. Raises
    /// ErrorNumber::invalidUseOfNull for a missing attribute, and ErrorNumber::overflow for a
    /// time-out that does not fit 32 bits.
    void SetByXml(const XmlElement& element);

    /// Sets the name, and all other fields from the global settings. Used by the import.
    void SetByEts(std::string name, const GlobalSets& settings);

    /// Adds the row of the device to the list: name, port and EDI type.
    void AddToListView(ListView& list) const;

    /// Sets all fields from the device dialog. Raises ErrorNumber::overflow for a time-out that
    /// does not fit 32 bits; then the record is unchanged.
    void SetByForm(const DeviceFields& dialog);

    /// Returns the start tag of the device's XML element, in UTF-8, without line end. Nothing is
    /// escaped.
    std::string GetXmlTag() const;

 private:
    std::string name_;
    std::string port_;
    std::string ediType_;
    std::int32_t timeout_ = 0;
};
