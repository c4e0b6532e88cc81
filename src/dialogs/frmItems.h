// The item dialog.
#pragma once

#include <array>
#include <string>

#include "desktop/Desktop.h"
#include "dialogs/Controls.h"
#include "dialogs/KeyFilters.h"
#include "model/Document.h"

/// Name, comment, group address, data type, access right, flag and number of elements of an
/// item: to add one, to add a run of them with consecutive addresses, or to change one.
class frmItems {
 public:
    /// To change the item `node` or, without `modify`, to add items below `node`.
    frmItems(Document& document, Desktop& desktop, Node& node, bool modify)
        : document_(document), desktop_(desktop), node_(document.tree(), &node), modify_(modify) {}

    static constexpr const char* caption = "Group Address Properties";

    /// Holds the item's fields; disabled while the count panel is shown.
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
    /// Option 0 ("Read") is chosen, or option 1 ("Transmit").
    std::array<const char*, 2> optLetturaCaptions{"Read", "Transmit"};
    std::size_t optLettura = 0;
    Button cmdOk;
    Button cmdAdd{"Add and Increment"};
    Button cmdGroup{"Add Vector...."};
    Button cmdCancel{"Exit"};
    /// A hint on the address as it is typed: that the bus does not reach so far, or which other
    /// item has it. Empty for none. Goes through all items.
    std::string addressHint() const;

    /// Asks how many items a vector has.
    struct CountPanel {
        bool visible = false;
    } frmInserimento;
    Label Label7{"INSERT NUMBER OF ITEMS TO ADD"};
    TextBox txtNumbItems;
    Button cmdOkNumber{"OK"};

    void Form_Load();
    /// Enters a text with slashes, typed or pasted into a part of the address: a whole address
    /// fills all parts, fewer numbers that part and those after it. False when there are too many;
    /// then nothing changes. An empty number leaves its part as it is, for the user to type over.
    bool enterAddress(std::size_t part, std::string_view text);
    /// Another data type is chosen: only some types have a number of elements.
    void cmbDataType_Click();
    /// False after telling the user what is wrong with the fields.
    bool CheckFields();
    /// Checks and stores the item; false when it was refused.
    bool AddItemToColl();
    /// Stores and closes; a refused item leaves the dialog open.
    void cmdOk_Click();
    /// Stores and prepares the next item: a default name, the next address.
    void cmdAdd_Click();
    void cmdGroup_Click();
    /// Adds as many items as the count panel says; stops at the first that is refused.
    void cmdOkNumber_Click();
    /// Hides the count panel again.
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
