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
#include "editor/ContentsList.h"
#include "model/Document.h"
#include "model/ListView.h"

/// The commands that give the selected rows of the list, in its order, the lines of the system
/// clipboard as names or as comments, once the user has seen and accepted the pairs.
class PastedTexts {
 public:
    /// Both show in the list, which is that of the contents.
    PastedTexts(Document& document, Desktop& desktop, Forms& forms, ContentsList& contents,
                ListView& list)
        : document_(document), desktop_(desktop), forms_(forms), contents_(contents), list_(list) {}

    void Paste_Name_Click();
    void Paste_Comment_Click();

 private:
    using Lines = std::vector<std::string>;
    using Rows = std::vector<std::size_t>;
    /// Gives the rows the lines, and tells what it cannot do.
    using Apply = std::function<void(const Rows&, const Lines&, const ShowMessage&)>;

    /// What the two commands do not have in common.
    struct Kind {
        std::string_view what;
        std::function<bool(std::string_view line)> check;
        /// What a row has now.
        std::function<const SharedText&(std::size_t row)> present;
        /// Why each row will be refused; empty for those that will not.
        std::function<Lines(const Rows&, const Lines&)> refusals;
        Apply apply;
    };

    void paste(const Kind& kind);
    bool isNameFree(std::string_view name);
    Lines refusedNames(const Rows& rows, const Lines& names) const;
    bool isAccepted(const Rows& rows, const Lines& lines, const Kind& kind);
    void rename(std::size_t row, const std::string& name);

    Document& document_;
    Desktop& desktop_;
    Forms& forms_;
    ContentsList& contents_;
    ListView& list_;
};
