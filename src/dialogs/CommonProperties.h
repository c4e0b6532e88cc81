// The dialog for the properties of several items.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "desktop/Desktop.h"
#include "dialogs/Controls.h"
#include "dialogs/frmItems.h"
#include "model/Document.h"

/// Edits data type, access right, flag and number of elements of several items. A field in which
/// the items differ is empty. A field that the user does not change is not changed in any item.
class CommonProperties {
 public:
    /// `items` contains at least one item.
    CommonProperties(Document& document, Desktop& desktop, const std::vector<Node*>& items);

    static constexpr const char* caption = "Properties of Several Items";
    Label lblCount;
    /// The item dialog of the first item. The window shows only its `cmbDataType`, `cmbAccessRight`
    /// and `txtElements`, with their labels.
    frmItems fields;
    ComboBox cmbFlag;
    Button cmdOk{"OK"};
    Button cmdCancel{"Cancel"};

    void Form_Load();
    /// The same as in the dialog of one item.
    void cmbDataType_Click() { fields.cmbDataType_Click(); }
    int txtElements_KeyPress(int code) const { return fields.txtElements_KeyPress(code); }
    /// Checks each item like the dialog of one item, then stores the changed fields in all items,
    /// and closes. When an item is refused, no item is changed, the field that the message is about
    /// gets the focus, and the dialog stays open.
    void cmdOk_Click();
    void cmdCancel_Click() { closed_ = true; }

    bool closed() const { return closed_; }
    /// True when the items were changed.
    bool applied() const { return applied_; }
    /// The items. Raises ErrorNumber::objectNotSet when one was removed meanwhile.
    std::vector<Node*> items() const;

 private:
    struct Shown {
        std::string dataType, accessRight, elements, flag;
    };
    Shown shown() const;
    bool isAccepted(Node& item);

    Document& document_;
    Desktop& desktop_;
    std::deque<ConfigTree::Reference> items_;
    Shown loaded_;
    bool closed_ = false;
    bool applied_ = false;
};
