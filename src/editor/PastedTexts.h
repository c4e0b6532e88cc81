// Names and comments for many items at once, from the system clipboard.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Reporting.h"
#include "desktop/Desktop.h"
#include "desktop/FirstMessages.h"
#include "dialogs/Forms.h"
#include "model/Document.h"
#include "model/ListView.h"

/// The commands that give the selected rows of the list, in its order, the lines of the system
/// clipboard as names or as comments, once the user has seen and accepted the pairs.
class PastedTexts {
 public:
    PastedTexts(Document& document, Desktop& desktop, Forms& forms, ListView& list)
        : document_(document), desktop_(desktop), forms_(forms), list_(list) {}

    void Paste_Name_Click();
    void Paste_Comment_Click();

 private:
    using Lines = std::vector<std::string>;
    using Rows = std::vector<std::size_t>;
    /// Gives the rows the lines, and tells what it cannot do.
    using Apply = std::function<void(const Rows&, const Lines&, const Tell&)>;

    void paste(const std::function<bool(std::string_view line)>& check, std::string_view what,
               const std::function<const SharedText&(std::size_t row)>& present,
               const Apply& apply);
    bool isNameFree(std::string_view name);
    bool isAccepted(const Rows& rows, const Lines& lines, std::string_view what,
                    const std::function<const SharedText&(std::size_t row)>& present);
    void rename(std::size_t row, const std::string& name);

    Document& document_;
    Desktop& desktop_;
    Forms& forms_;
    ListView& list_;
};
