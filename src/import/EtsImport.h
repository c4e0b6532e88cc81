// Builds a configuration from an ETS export.
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

/// The import of an OPC export file (.esf) of the ETS: every group address becomes an item, every
/// middle group a device that carries the global settings; there are no branches.
///
/// The file is text in Windows-1252, or in UTF-8 when it begins with that encoding's mark. Its
/// lines end with CR LF; one without a tab is passed over. Each other line is a record of
/// tab-separated fields: the dotted path of the address, its name, its type and size.
class EtsImport {
 public:
    EtsImport(Document& document, Desktop& desktop, Disk& disk, Lifecycle& lifecycle,
              LifecycleWindow& window)
        : document_(document),
          desktop_(desktop),
          disk_(disk),
          lifecycle_(lifecycle),
          window_(window) {}

    /// Replaces the open configuration with one made from a file that the user chooses. A file
    /// that cannot be imported whole leaves what was read before its fault, with flags, counters
    /// and command state as they had been. Asks for the file, unless it is given.
    void mnuImpCfg_Click(const std::string& given = {});

    /// Asks for an export file. False, after telling the user, when the chooser failed; `path`
    /// stays empty when the user chose none.
    bool ShowDialImport(std::string& path);

 private:
    void importFile(const std::string& path);

    Document& document_;
    Desktop& desktop_;
    Disk& disk_;
    Lifecycle& lifecycle_;
    LifecycleWindow& window_;
};

/// What is told of a file that cannot be imported whole.
inline constexpr const char* notAnExport = "This file is not in ETS2 or ETS3 Esf format.";

/// A record that cannot be added.
struct EtsError : std::exception {
    EtsError(std::size_t inLine, std::string itsReason)
        : line(inLine), reason(std::move(itsReason)) {}
    const char* what() const noexcept override { return reason.c_str(); }

    std::size_t line;  ///< from 1
    std::string reason;
};

/// Adds the records of an export's text to the document. Raises EtsError for the first that cannot
/// be added; those before it stay.
void addEtsRecords(Document& document, std::string_view bytes);
