// The item dialog.
#pragma once

#include <array>
#include <string>

#include "desktop/Desktop.h"
#include "dialogs/Controls.h"
#include "dialogs/KeyFilters.h"
#include "model/Document.h"

/// Edits name, comment, group address, data type, access right, flag and number of elements of an
/// item. Adds one item or several with consecutive addresses, or changes one.
class frmItems {
 public:
    /// With `modify`, changes the item `node`; otherwise adds items below `node`.
    frmItems(Document& document, Desktop& desktop, Node& node, bool modify)
        : document_(document), desktop_(desktop), node_(document.tree(), &node), modify_(modify) {}

    static constexpr const char* caption = "Group Address Properties";

    /// Contains the fields of the item; disabled while the count panel is visible.
    struct Frame {
        bool enabled = true;
    } frmMain;
    Label lblName{"Item Name"};
    TextBox txtItemName;
    Label Label1{"Comment"};
    TextBox txtComment;
    Label lbladdress{"Group Address"};
    std::array<TextBox, 3> txtAddress;
    Label Label5{"Data Type"};
    ComboBox cmbDataType;
    Label Label6{"Access Right"};
    ComboBox cmbAccessRight;
    Label lblElements{"Number of Elements"};
    TextBox txtElements;
    Label Label4{"Olvan Flag"};
    /// `optLettura` is the number of the chosen option: 0 for "Read", 1 for "Transmit".
    std::array<const char*, 2> optLetturaCaptions{"Read", "Transmit"};
    std::size_t optLettura = 0;
    Button cmdOk;
    Button cmdAdd{"Add and Increment"};
    Button cmdGroup{"Add Vector...."};
    Button cmdCancel{"Exit"};
    /// A hint about the typed address: that it is out of the range of the bus, or which other item
    /// has it. Empty when there is no hint. Takes time proportional to the number of items.
    std::string addressHint() const;

    /// The panel that asks for the number of items of a vector.
    struct CountPanel {
        bool visible = false;
    } frmInserimento;
    Label Label7{"INSERT NUMBER OF ITEMS TO ADD"};
    TextBox txtNumbItems;
    Button cmdOkNumber{"OK"};

    void Form_Load();
    /// Enters a text with slashes that was typed or pasted into a part of the address. A complete
    /// address fills all parts; fewer numbers fill that part and those after it. An empty number
    /// does not change its part. Returns false, and changes nothing, when there are too many
    /// numbers.
    bool enterAddress(std::size_t part, std::string_view text);
    /// Called when a data type was chosen: enables the number of elements if the type has one.
    void cmbDataType_Click();
    /// True when all fields are valid; otherwise shows a message about the first invalid one.
    bool CheckFields();
    /// Checks and stores the item. Returns false, after a message, when the item was refused.
    bool AddItemToColl();
    /// Stores the item and closes. When the item is refused, the dialog stays open.
    void cmdOk_Click();
    /// Stores the item and prepares the next one: a proposed name, no comment, the next address.
    void cmdAdd_Click();
    /// Shows the count panel.
    void cmdGroup_Click();
    /// Adds the number of items in the count panel; stops at the first item that is refused.
    void cmdOkNumber_Click();
    /// Hides the count panel, and enables the fields.
    void closeCountPanel();
    void cmdCancel_Click() { closed_ = true; }

    int txtItemName_KeyPress(int code) const { return filterNameKey(code); }
    int txtAddress_KeyPress(int code) const { return FilterNumericKey(code); }
    int txtNumbItems_KeyPress(int code) const { return FilterNumericKey(code); }
    int txtElements_KeyPress(int code) const { return FilterNumericKey(code); }

    bool closed() const { return closed_; }
    bool modify() const { return modify_; }

 private:
    std::string address() const;
    void loadItem();
    void loadDefaults();
    void setElements(const std::string& text);
    ItemFields fields() const;
    void store();
    bool addAndIncrement();

    Document& document_;
    Desktop& desktop_;
    ConfigTree::Reference node_;
    bool modify_;
    bool closed_ = false;
};
