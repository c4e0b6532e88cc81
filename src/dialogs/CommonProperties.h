// The dialog of what several items have in common.
#pragma once

#include <string>
#include <vector>

#include "desktop/Desktop.h"
#include "dialogs/Controls.h"
#include "dialogs/frmItems.h"
#include "model/Document.h"

/// Data type, access right, flag and number of elements of several items. A field in which they
/// differ is empty, and one that is left as it was changes none of them.
class CommonProperties {
 public:
    /// There is at least one item. Nothing else changes the configuration while the dialog is open.
    CommonProperties(Document& document, Desktop& desktop, const std::vector<Node*>& items)
        : fields(document, desktop, *items.front(), true),
          document_(document),
          desktop_(desktop),
          items_(items) {}

    static constexpr const char* caption = "Properties of Several Items";
    Label lblCount;
    /// The item dialog of the first. Shown are `cmbDataType`, `cmbAccessRight` and `txtElements`
    /// with their labels.
    frmItems fields;
    ComboBox cmbFlag;
    Button cmdOk{"OK"};
    Button cmdCancel{"Cancel"};

    void Form_Load();
    /// As in the dialog of one item.
    void cmbDataType_Click() { fields.cmbDataType_Click(); }
    int txtElements_KeyPress(int code) const { return fields.txtElements_KeyPress(code); }
    /// Checks each item as its own dialog would, then gives all of them what was changed, and
    /// closes. One that is refused leaves all as they were, and the dialog open.
    void cmdOk_Click();
    void cmdCancel_Click() { closed_ = true; }

    bool closed() const { return closed_; }
    /// The items were changed.
    bool applied() const { return applied_; }

 private:
    struct Shown {
        std::string dataType, accessRight, elements, flag;
    };
    Shown shown() const;
    bool isAccepted(Node& item) const;

    Document& document_;
    Desktop& desktop_;
    const std::vector<Node*>& items_;
    Shown loaded_;
    bool closed_ = false;
    bool applied_ = false;
};
