#include "qt/ItemDialog.h"

#include <QButtonGroup>
#include <QClipboard>
#include <QComboBox>
#include <QFormLayout>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <utility>

#include "model/DataTypes.h"
#include "qt/Text.h"

/// A pale line of text, elided in the middle if it is too long. It has its height without a text
/// too.
class ItemDialog::HintLabel : public QLabel {
 public:
    using QLabel::QLabel;

    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }
    QSize sizeHint() const override { return minimumSizeHint(); }

 protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
        QPainter painter(this);
        painter.setOpacity(0.6);
        painter.drawText(rect(), Qt::AlignVCenter, shown);
    }
};

namespace {

/// Sets the description of each data type, and of the chosen one, as a tooltip.
void explainDataTypes(QComboBox* types) {
    const auto explanation = [](const QString& name) {
        const DataType* type = findDataType(fromQt(name));
        return type == nullptr ? QString() : toQt(descriptionOf(*type));
    };
    {
        const QSignalBlocker quiet(types);  // setItemData() must not count as a choice
        for (int i = 0; i < types->count(); ++i)
            types->setItemData(i, explanation(types->itemText(i)), Qt::ToolTipRole);
    }
    const auto look = [=] { types->setToolTip(explanation(types->currentText())); };
    QObject::connect(types, &QComboBox::currentTextChanged, types, look);
    look();
}

}  // namespace

ItemDialog::ItemDialog(frmItems& form)
    : FormDialog(
          frmItems::caption, [&form] { return form.closed(); },
          [&form] { form.cmdCancel_Click(); }),
      form_(form) {
    setObjectName("frmItems");
    fields_ = buildFields();
    panel_ = buildCountPanel();
    panel_->hide();
    bind([this] {
        fields_->setEnabled(form_.frmMain.enabled);
        showCountPanel(form_.frmInserimento.visible);
        hint_->setText(toQt(form_.addressHint()));
    });
    auto* contents = new QVBoxLayout;
    contents->addWidget(fields_);
    contents->addWidget(panel_);
    contents->addStretch();
    const char ok = form_.modify() ? 'f' : 'A';
    ok_ = bind("cmdOk", form_.cmdOk, ok, [this] { form_.cmdOk_Click(); });
    auto* add = bind("cmdAdd", form_.cmdAdd, 'm', [this] { form_.cmdAdd_Click(); });
    auto* group = bind("cmdGroup", form_.cmdGroup, 'V', [this] { form_.cmdGroup_Click(); });
    auto* cancel = bind("cmdCancel", form_.cmdCancel, 'x', [this] { form_.cmdCancel_Click(); });
    arrange(contents, {ok_, add, group, cancel});
    showForm();
    focusAndSelect(name_);
}

QWidget* ItemDialog::buildFields() {
    auto* frame = new QWidget(this);
    frame->setObjectName("frmMain");
    auto* rows = new QFormLayout(frame);
    rows->setContentsMargins(QMargins());
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
    hint_ = new HintLabel(this);
    hint_->setObjectName("addressHint");
    rows->addRow(nullptr, hint_);
    auto* type =
        bind("cmbDataType", form_.cmbDataType, false, [this] { form_.cmbDataType_Click(); });
    explainDataTypes(type);
    add(form_.Label5, 'D', type);
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
    row->setContentsMargins(QMargins());
    const char* const names[] = {"txtAddress0", "txtAddress1", "txtAddress2"};
    const QString titles[] = {tr("main"), tr("middle"), tr("sub")};
    for (std::size_t i = 0; i < form_.txtAddress.size(); ++i) {
        if (i > 0) row->addWidget(new QLabel("/", parts));
        auto* part = bind(names[i], form_.txtAddress[i],
                          [this](int code) { return form_.txtAddress_KeyPress(code); });
        part->setAccessibleDescription(titles[i]);
        mark(part, FilePlace::content);
        part->setAccessibleName(QString::fromStdString(form_.lbladdress.caption));
        part->installEventFilter(this);
        address_.append(part);
        connect(part, &QLineEdit::textChanged, this,
                [this, i](const QString& text) { acceptInput([&] { addressChanged(i, text); }); });
        row->addWidget(part);
    }
    return parts;
}

QWidget* ItemDialog::buildFlag() {
    auto* frame = new QWidget(this);
    frame->setObjectName("frmOption");
    auto* row = new QHBoxLayout(frame);
    row->setContentsMargins(QMargins());
    auto* group = new QButtonGroup(frame);
    const char* const names[] = {"optLettura0", "optLettura1"};
    const char accelerators[] = {'e', 'T'};
    for (std::size_t i = 0; i < form_.optLetturaCaptions.size(); ++i) {
        auto* option =
            new QRadioButton(withAccelerator(form_.optLetturaCaptions[i], accelerators[i]), frame);
        option->setObjectName(names[i]);
        option->setAccessibleDescription(QString::fromStdString(form_.Label4.caption));
        group->addButton(option, static_cast<int>(i));
        row->addWidget(option);
    }
    row->addStretch();
    frame->setFocusProxy(group->button(0));
    connect(group, &QButtonGroup::idToggled, this, [this](int option, bool chosen) {
        acceptInput([&] {
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
    okCount_ = bind("cmdOkNumber", form_.cmdOkNumber, 'K', [this] { form_.cmdOkNumber_Click(); });
    auto* row = new QHBoxLayout(panel);
    row->addWidget(bind(form_.Label7, 'I', count_));
    row->addWidget(count_);
    row->addWidget(okCount_);
    return panel;
}

/// Makes the dialog higher for the panel, and restores its height when the panel closes.
void ItemDialog::showCountPanel(bool visible) {
    if (visible == panel_->isVisibleTo(this)) return;
    (visible ? okCount_ : ok_)->setDefault(true);
    const int before = height();
    panel_->setVisible(visible);
    layout()->activate();
    if (visible) {
        grownBy_ = height() - before;
    } else {
        resize(width(), before - grownBy_);
    }
}

/// While the count panel is open, Escape closes only that.
void ItemDialog::keyPressEvent(QKeyEvent* event) {
    if (form_.frmInserimento.visible && event->matches(QKeySequence::Cancel)) {
        run([this] { form_.closeCountPanel(); });
    } else {
        FormDialog::keyPressEvent(event);
    }
}

/// A slash that is typed into a part of the address continues in the next part.
bool ItemDialog::eventFilter(QObject* object, QEvent* event) {
    QString typed;
    if (event->type() == QEvent::KeyPress) typed = static_cast<QKeyEvent&>(*event).text();
    if (event->type() == QEvent::InputMethod) {
        typed = static_cast<QInputMethodEvent&>(*event).commitString();
    }
    if (!typed.contains('/')) return FormDialog::eventFilter(object, event);
    enterAddress(static_cast<std::size_t>(address_.indexOf(object)), typed);
    return true;
}

bool ItemDialog::enterAddress(std::size_t part, const QString& text) {
    if (!form_.enterAddress(part, fromQt(text))) return false;
    showForm();
    return true;
}

/// Called when the text of a part of the address has changed. A text with a slash was pasted; the
/// field may then contain old text around it.
void ItemDialog::addressChanged(std::size_t part, const QString& text) {
    if (text.contains('/')) {
        const QString pasted = QGuiApplication::clipboard()->text().trimmed();
        const std::string whole = std::exchange(form_.txtAddress[part].text, {});
        if (enterAddress(part, text.contains(pasted) ? pasted : text)) return;
        form_.txtAddress[part].text = whole;
    }
    hint_->setText(toQt(form_.addressHint()));
}
