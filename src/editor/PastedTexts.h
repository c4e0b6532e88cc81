// Pastes names and comments for many items from the system clipboard.
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

/// The commands that replace the names or the comments of the selected rows, in the order of the
/// list, with the lines of the system clipboard. The user sees the old and new texts first and
/// accepts or rejects them.
///
///     PastedTexts texts(document, desktop, forms, contents, list);
///     texts.Paste_Name_Click();     // line 1 is the name of the first selected row, and so on
///     texts.Paste_Comment_Click();
class PastedTexts {
 public:
    /// `list` is the list that `contents` fills.
    PastedTexts(Document& document, Desktop& desktop, Forms& forms, ContentsList& contents,
                ListView& list)
        : document_(document), desktop_(desktop), forms_(forms), contents_(contents), list_(list) {}

    void Paste_Name_Click();
    void Paste_Comment_Click();

 private:
    using Lines = std::vector<std::string>;
    using Rows = std::vector<std::size_t>;
    /// Writes the lines into the rows; shows a message for each line that it refuses.
    using Apply = std::function<void(const Rows&, const Lines&, const ShowMessage&)>;

    /// What differs between the two commands.
    struct Kind {
        std::string_view what;  ///< "name" or "comment"
        /// Called for each line; false, after a message, ends the command.
        std::function<bool(std::string_view line)> check;
        /// Returns the present text of a row.
        std::function<const SharedText&(std::size_t row)> present;
        /// Returns for each row why it will be refused; an empty text when it will not.
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
