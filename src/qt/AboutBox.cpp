#include "qt/AboutBox.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "model/Product.h"
#include "qt/Icons.h"
#include "qt/Text.h"

AboutBox::AboutBox(QWidget* parent) : QDialog(parent) {
    setObjectName("frmAbout");
    setWindowTitle(tr("About %1").arg(toQt(productName)));
    auto* picture = new QLabel(this);
    picture->setPixmap(icons::application().pixmap(QSize(64, 64), devicePixelRatioF()));
    picture->setAccessibleName(toQt(productName));

    auto* title = new QLabel(toQt(productName), this);
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * 1.6);
    large.setBold(true);
    title->setFont(large);

    auto* texts = new QVBoxLayout;
    texts->addWidget(title);
    texts->addWidget(new QLabel(tr("Version %1").arg(toQt(productVersion)), this));
    texts->addWidget(new QLabel(toQt(productDescription), this));
    texts->addSpacing(fontMetrics().height());
    auto* contact = new QLabel(toQt(companyContact), this);
    contact->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    contact->setFocusPolicy(Qt::StrongFocus);  // so that the keyboard can copy it
    texts->addWidget(contact);

    auto* row = new QHBoxLayout;
    row->setSpacing(fontMetrics().height());
    row->addWidget(picture, 0, Qt::AlignTop);
    row->addLayout(texts, 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setText("&OK");
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    buttons->setFocus();
    auto* column = new QVBoxLayout(this);
    column->addLayout(row);
    column->addStretch();
    column->addSpacing(fontMetrics().height() / 2);
    column->addWidget(buttons);
}
