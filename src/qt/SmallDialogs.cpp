#include "qt/SmallDialogs.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/Text.h"

namespace {

struct Row {
    QLabel* label;
    QWidget* field;
};

/// Lays out fields with their labels on the left.
QFormLayout* fieldsOf(std::initializer_list<Row> rows) {
    auto* fields = new QFormLayout;
    for (const Row& row : rows) {
        row.field->setMinimumWidth(row.field->fontMetrics().averageCharWidth() * 32);
        fields->addRow(row.label, row.field);
    }
    return fields;
}

}  // namespace

DeviceDialog::DeviceDialog(frmPLC& form)
    : FormDialog(
          frmPLC::caption, [&form] { return form.closed(); }, [&form] { form.cmdExit_Click(); }) {
    setObjectName("frmPLC");
    auto* name =
        bind("txtName", form.txtName, [&form](int code) { return form.txtName_KeyPress(code); });
    auto* port = bind("cmbPort", form.cmbPort, true);
    auto* type = bind("cmbEdiType", form.cmbEdiType, true);
    auto* timeout = bind("txtTimeout", form.txtTimeout);
    for (QLineEdit* edit : {name, port->lineEdit(), type->lineEdit()})
        mark(edit, FilePlace::attribute);
    auto* apply = bind("cmdApply", form.cmdApply, 'O', [&form] { form.cmdApply_Click(); });
    auto* exit = bind("cmdExit", form.cmdExit, 'x', [&form] { form.cmdExit_Click(); });
    arrange(fieldsOf({{bind(form.Label6, 'N', name), name},
                      {bind(form.lblIP, 'P', port), port},
                      {bind(form.lblId, 'E', type), type},
                      {bind(form.lblPassword, 'R', timeout), timeout}}),
            {apply, exit});
    showForm();
    focusAndSelect(name);
}

CommonPropertiesDialog::CommonPropertiesDialog(CommonProperties& form)
    : FormDialog(
          CommonProperties::caption, [&form] { return form.closed(); },
          [&form] { form.cmdCancel_Click(); }) {
    setObjectName("CommonProperties");
    frmItems& item = form.fields;
    auto* type =
        bind("cmbDataType", item.cmbDataType, false, [&form] { form.cmbDataType_Click(); });
    auto* right = bind("cmbAccessRight", item.cmbAccessRight, false);
    auto* elements = bind("txtElements", item.txtElements,
                          [&form](int code) { return form.txtElements_KeyPress(code); });
    auto* flag = bind("cmbFlag", form.cmbFlag, false);
    auto* ok = bind("cmdOk", form.cmdOk, 'O', [&form] { form.cmdOk_Click(); });
    auto* cancel = bind("cmdCancel", form.cmdCancel, 'C', [&form] { form.cmdCancel_Click(); });
    auto* fields = new QVBoxLayout;
    fields->addWidget(new QLabel(toQt(form.lblCount.caption)));
    fields->addLayout(fieldsOf({{bind(item.Label5, 'D', type), type},
                                {bind(item.Label6, 'R', right), right},
                                {bind(item.lblElements, 'b', elements), elements},
                                {bind(item.Label4, 'F', flag), flag}}));
    fields->addStretch();
    arrange(fields, {ok, cancel});
    showForm();
}

BranchDialog::BranchDialog(frmBranch& form)
    : FormDialog(
          frmBranch::caption, [&form] { return form.closed(); },
          [&form] { form.cmdCancel_Click(); }) {
    setObjectName("frmBranch");
    auto* name = bind("txtBranchName", form.txtBranchName);
    mark(name, FilePlace::elementName);
    auto* ok = bind("cmdOk", form.cmdOk, 'O', [&form] { form.cmdOk_Click(); });
    auto* cancel = bind("cmdCancel", form.cmdCancel, 'C', [&form] { form.cmdCancel_Click(); });
    arrange(fieldsOf({{bind(form.Label1, 'n', name), name}}), {ok, cancel});
    showForm();
    resize(sizeHint());  // the toolkit's default is higher
    focusAndSelect(name);
}

SettingsDialog::SettingsDialog(frmSetts& form)
    : FormDialog(
          frmSetts::caption, [&form] { return form.closed(); }, [&form] { form.cmdExit_Click(); }) {
    setObjectName("frmSetts");
    auto* port = bind("cmbPort", form.cmbPort, true);
    auto* type = bind("cmbEdiType", form.cmbEdiType, true);
    auto* timeout = bind("txtTimeout", form.txtTimeout);
    for (const QComboBox* box : {port, type})
        mark(box->lineEdit(), FilePlace::attribute);
    auto* apply = bind("cmdApply", form.cmdApply, 'O', [&form] { form.cmdApply_Click(); });
    auto* exit = bind("cmdExit", form.cmdExit, 'x', [&form] { form.cmdExit_Click(); });
    arrange(fieldsOf({{bind(form.lblPortName, 'P', port), port},
                      {bind(form.lblBaud, 'E', type), type},
                      {bind(form.lblTimeout, 'R', timeout), timeout}}),
            {apply, exit});
    showForm();
    focusAndSelect(port->lineEdit());
}
