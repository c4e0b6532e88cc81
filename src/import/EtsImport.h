// Imports a configuration from an ETS export.
#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "desktop/Desktop.h"
#include "file/Disk.h"
#include "file/Lifecycle.h"
#include "model/Document.h"

/// Imports an OPC export file (.esf) of the ETS. Every group address becomes an item, every middle
/// group a device with the global settings. There are no branches.
///
/// The file is text in Windows-1252, or in UTF-8 when it begins with a byte order mark. Its lines
/// end with CR LF. A line without a tab is ignored. Every other line is a record of tab-separated
/// fields: the dotted path of the address, its name, its type and size.
class EtsImport {
 public:
    EtsImport(Document& document, Desktop& desktop, Disk& disk, Lifecycle& lifecycle,
              LifecycleWindow& window)
        : document_(document),
          desktop_(desktop),
          disk_(disk),
          lifecycle_(lifecycle),
          window_(window) {}

    /// Replaces the open configuration by the import of the file `given`; when that is empty, the
    /// user chooses a file. When a record cannot be imported, the records before it stay, and
    /// flags, counters and command states stay as they were before the import.
    void mnuImpCfg_Click(const std::string& given = {});

    /// Asks for an export file. Returns false, after a message, when the chooser failed. `path`
    /// stays empty when the user chose no file.
    bool ShowDialImport(std::string& path);

 private:
    void importFile(const std::string& path);

    Document& document_;
    Desktop& desktop_;
    Disk& disk_;
    Lifecycle& lifecycle_;
    LifecycleWindow& window_;
};

/// The message for a file that cannot be imported completely.
inline constexpr const char* notAnExport = "This file is not in ETS2 or ETS3 Esf format.";

/// A record that cannot be added.
struct EtsError : std::exception {
    EtsError(std::size_t inLine, std::string itsReason)
        : line(inLine), reason(std::move(itsReason)) {}
    const char* what() const noexcept override { return reason.c_str(); }

    std::size_t line;  ///< from 1
    std::string reason;
};

/// Adds the records of an export file to the document; `bytes` are the contents of the file. Raises
/// EtsError at the first record that cannot be added; the records before it stay.
void addEtsRecords(Document& document, std::string_view bytes);
