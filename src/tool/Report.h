// How the commands tell what they found, and with which status they end.
#pragma once

#include <cstddef>
#include <deque>
#include <iosfwd>
#include <string>
#include <string_view>

#include "file/Disk.h"
#include "model/Document.h"

/// What all commands work with.
struct Tool {
    Disk& disk;
    std::ostream& out;  ///< results
    std::ostream& err;  ///< what keeps a command from its result
    /// Those that the commands read and make. They are kept until the program ends: to take them
    /// apart would take a tenth of its time.
    std::deque<Document>& documents;
};

/// What the program ends with, for scripts to ask: the gravest thing that was found.
enum class Severity { note, warning, error };

/// 0 where nothing above a note was found, 1 for warnings (or differences), 2 for errors.
constexpr int exitStatusFor(Severity gravest) { return static_cast<int>(gravest); }

std::string_view nameOf(Severity severity);

/// One thing that is to be seen to, and where.
struct Finding {
    std::string file = {};
    std::size_t line = 0;  ///< from 1; 0 where none is known
    Severity severity = Severity::error;
    std::string place = {};  ///< a path in the configuration, or a table's column; may be empty
    std::string text = {};
};

/// One line, as compilers write them and editors understand: "house.xml:12: error: Plant.Light1:
/// Overflow". Without line end; line ends within become blanks.
std::ostream& operator<<(std::ostream& out, const Finding& finding);
