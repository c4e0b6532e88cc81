#include "qt/ItemDialog.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFormLayout>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

ItemDialog::ItemDialog(frmItems& form)
    : FormDialog(
          frmItems::caption, [&form] { return form.closed(); },
          [&form] { form.cmdCancel_Click(); }),
      form_(form) {
    setObjectName("frmItems");
    fields_ = buildFields();
    panel_ = buildCountPanel();
    auto* column = new QVBoxLayout(this);
    column->addWidget(fields_);
    column->addWidget(panel_);
    column->addStretch();
    column->addLayout(buildButtons());
    bind([this] {
        fields_->setEnabled(form_.frmMain.enabled);
        showCountPanel(form_.frmInserimento.visible);
    });
    panel_->hide();
    ok_->setDefault(true);
    showForm();
    enter(name_);
}

QWidget* ItemDialog::buildFields() {
    auto* frame = new QWidget(this);
    frame->setObjectName("frmMain");
    auto* rows = new QFormLayout(frame);
    rows->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](const Label& label, char accelerator, QWidget* field) {
        rows->addRow(bind(label, accelerator, field), field);
    };
    name_ = bind("txtItemName", form_.txtItemName,
                 [this](int code) { return form_.txtItemName_KeyPress(code); });
    auto* comment = bind("txtComment", form_.txtComment);
    mark(name_, FilePlace::content);
    mark(comment, FilePlace::content);
    add(form_.lblName, 'N', name_);
    add(form_.Label1, 'C', comment);
    QWidget* address = buildAddress();
    rows->addRow(bind(form_.lbladdress, 'G', address->findChild<QLineEdit*>("txtAddress0")),
                 address);
    add(form_.Label5, 'D',
        bind("cmbDataType", form_.cmbDataType, false, [this] { form_.cmbDataType_Click(); }));
    add(form_.Label6, 'R', bind("cmbAccessRight", form_.cmbAccessRight, false));
    add(form_.lblElements, 'b', bind("txtElements", form_.txtElements, [this](int code) {
            return form_.txtElements_KeyPress(code);
        }));
    QWidget* flag = buildFlag();
    add(form_.Label4, 'O', flag);
    return frame;
}

QWidget* ItemDialog::buildAddress() {
    auto* parts = new QWidget(this);
    auto* row = new QHBoxLayout(parts);
    row->setContentsMargins(0, 0, 0, 0);
    const char* const names[] = {"txtAddress0", "txtAddress1", "txtAddress2"};
    const QString titles[] = {tr("main"), tr("middle"), tr("sub")};
    for (std::size_t i = 0; i < form_.txtAddress.size(); ++i) {
        if (i > 0) row->addWidget(new QLabel("/", parts));
        auto* part = bind(names[i], form_.txtAddress[i],
                          [this](int code) { return form_.txtAddress_KeyPress(code); });
        part->setAccessibleDescription(titles[i]);
        mark(part, FilePlace::content);
        part->setMinimumWidth(part->fontMetrics().averageCharWidth() * 8);
        part->setAccessibleName(QString::fromStdString(form_.lbladdress.caption));
        row->addWidget(part, 1);
    }
    return parts;
}

QWidget* ItemDialog::buildFlag() {
    auto* frame = new QWidget(this);
    frame->setObjectName("frmOption");
    auto* row = new QHBoxLayout(frame);
    row->setContentsMargins(0, 0, 0, 0);
    auto* group = new QButtonGroup(frame);
    const char* const names[] = {"optLettura0", "optLettura1"};
    for (std::size_t i = 0; i < form_.optLetturaCaptions.size(); ++i) {
        auto* option = new QRadioButton(form_.optLetturaCaptions[i], frame);
        option->setObjectName(names[i]);
        option->setAccessibleDescription(QString::fromStdString(form_.Label4.caption));
        group->addButton(option, static_cast<int>(i));
        row->addWidget(option);
    }
    row->addStretch();
    frame->setFocusProxy(group->button(0));
    connect(group, &QButtonGroup::idToggled, this, [this](int option, bool chosen) {
        learn([&] {
            if (chosen) form_.optLettura = static_cast<std::size_t>(option);
        });
    });
    bind([this, group] { group->button(static_cast<int>(form_.optLettura))->setChecked(true); });
    return frame;
}

QWidget* ItemDialog::buildCountPanel() {
    auto* panel = new QFrame(this);
    panel->setObjectName("frmInserimento");
    panel->setAccessibleName(QString::fromStdString(form_.Label7.caption));
    panel->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    count_ = bind("txtNumbItems", form_.txtNumbItems,
                  [this](int code) { return form_.txtNumbItems_KeyPress(code); });
    okCount_ = bind("cmdOkNumber", form_.cmdOkNumber, [this] { form_.cmdOkNumber_Click(); });
    auto* row = new QHBoxLayout(panel);
    row->addWidget(bind(form_.Label7, 'I', count_));
    row->addWidget(count_, 1);
    row->addWidget(okCount_);
    return panel;
}

QLayout* ItemDialog::buildButtons() {
    ok_ = bind("cmdOk", form_.cmdOk, [this] { form_.cmdOk_Click(); });
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(ok_);
    row->addWidget(bind("cmdAdd", form_.cmdAdd, [this] {
        form_.cmdAdd_Click();
        showForm();
        enter(name_);
    }));
    row->addWidget(bind("cmdGroup", form_.cmdGroup, [this] {
        form_.cmdGroup_Click();
        showForm();
        enter(count_);
    }));
    row->addWidget(bind("cmdCancel", form_.cmdCancel, [this] { form_.cmdCancel_Click(); }));
    return row;
}

void ItemDialog::showCountPanel(bool visible) {
    if (visible == panel_->isVisibleTo(this)) return;
    panel_->setVisible(visible);
    (visible ? okCount_ : ok_)->setDefault(true);
    if (!visible) enter(name_);
}
