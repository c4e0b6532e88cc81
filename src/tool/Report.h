// Messages and exit status of the commands.
#pragma once

#include <cstddef>
#include <deque>
#include <iosfwd>
#include <string>
#include <string_view>

#include "file/Disk.h"
#include "model/Document.h"

/// The surroundings of a command.
struct Tool {
    Disk& disk;
    std::ostream& out;  ///< results
    std::ostream& err;  ///< errors that prevent a result
    /// The documents that the commands read and make. They are never freed: that would take a tenth
    /// of the program's time.
    std::deque<Document>& documents;
};

/// How serious a finding is. The most serious one decides the exit status.
enum class Severity { note, warning, error };

/// The exit status: 0 for notes or nothing, 1 for warnings or differences, 2 for errors.
constexpr int exitStatusFor(Severity worst) { return static_cast<int>(worst); }

std::string_view nameOf(Severity severity);

/// One fault or remark, and its place.
struct Finding {
    std::string file = {};
    std::size_t line = 0;  ///< from 1; 0 if not known
    Severity severity = Severity::error;
    std::string place = {};  ///< a path in the configuration, or a table's column; may be empty
    std::string text = {};
};

/// Prints one line in the format of compilers, which editors understand: "house.xml:12: error:
/// Plant.Light1: Overflow". Adds no line end. Line ends in the text become blanks.
std::ostream& operator<<(std::ostream& out, const Finding& finding);
