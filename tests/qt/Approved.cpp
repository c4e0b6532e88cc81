#include "qt/Approved.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMetaEnum>
#include <QTest>
#include <QToolTip>
#include <algorithm>

namespace {

/// The controls in the order in which Tab reaches them, from the one that has the keyboard.
QList<QObject*> tabOrder(QWidget& window) {
    QList<QObject*> reached;
    for (QWidget* now = window.focusWidget(); now != nullptr && !reached.contains(now);) {
        reached.append(now);
        QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
        now = window.focusWidget();
    }
    return reached;
}

QString tooltipOf(QWidget& widget) {
    const QString none("none");
    QToolTip::showText({}, none);
    QHelpEvent hover(QEvent::ToolTip, {1, 1}, widget.mapToGlobal(QPoint(1, 1)));
    QCoreApplication::sendEvent(&widget, &hover);
    return QToolTip::text() == none ? QString() : QToolTip::text();
}

class Description {
 public:
    explicit Description(QWidget& window) {
        // A file chooser is the toolkit's or the platform's own but for what it is asked for.
        if (const auto* chooser = qobject_cast<QFileDialog*>(&window)) {
            QDebug(&text_) << chooser->windowTitle() << chooser->nameFilters()
                           << chooser->acceptMode() << chooser->fileMode() << chooser->options()
                           << chooser->defaultSuffix();
            text_ += chooser->findChild<QLineEdit*>("fileNameEdit")->text() + "\n";
            return;
        }
        tabOrder_ = tabOrder(window);
        add(*QAccessible::queryAccessibleInterface(&window), "");
    }
    QString text() const { return text_; }

 private:
    void add(QAccessibleInterface& control, QString indent) {
        const auto state = control.state();
        const auto role = control.role();
        const bool inMenu = role == QAccessible::PopupMenu || role == QAccessible::MenuItem ||
                            role == QAccessible::Separator;
        if (state.invisible && !inMenu) return;
        if (const QString line = lineOf(control); !line.isEmpty()) {
            // Labels may lie behind what they tell of.
            const bool isAlone = control.childCount() == 0 && role != QAccessible::StaticText;
            const QRect place = isAlone && !inMenu ? control.rect() : QRect();
            const bool hides = std::ranges::any_of(
                places_, [&](const QRect& other) { return other.intersects(place); });
            places_.append(place);
            text_ += indent + line + (hides ? " hides another" : "") + "\n";
            indent += "  ";
        }
        for (int i = 0; i < control.childCount(); ++i)
            if (QAccessibleInterface* child = control.child(i)) add(*child, indent);
    }

    QString lineOf(QAccessibleInterface& control) const {
        QStringList told;
        QStringList texts;
        const auto tell = [&](const char* what, const QString& text) {
            if (text.isEmpty() || texts.contains(text)) return;
            texts.append(text);
            told.append(what + ("\"" + text + "\""));
        };
        auto* widget = qobject_cast<QWidget*>(control.object());
        tell("", control.text(QAccessible::Name));
        if (const auto* combo = qobject_cast<QComboBox*>(widget)) {
            QStringList choices;
            for (int i = 0; i < combo->count(); ++i)
                choices.append(combo->itemText(i));
            tell("named ", combo->accessibleName());
            tell("choices ", choices.join('|'));
        }
        tell("text ", control.text(QAccessible::Value));
        tell("tooltip ", widget == nullptr ? QString() : tooltipOf(*widget));
        tell("description ", control.text(QAccessible::Description));
        tell("key ", control.text(QAccessible::Accelerator));
        told.append(statesOf(control.state()));
        if (const auto place = tabOrder_.indexOf(control.object()); place >= 0)
            told.append(QString("tab %1").arg(place + 1));
        const char* role = QMetaEnum::fromType<QAccessible::Role>().valueToKey(control.role());
        const bool isSilent = told.isEmpty() && control.role() != QAccessible::Separator;
        if (isSilent) return {};
        return QString("%1 %2").arg(role, told.join(' ')).replace('\n', "\\n");
    }

    static QStringList statesOf(const QAccessible::State& state) {
        QStringList names;
        const auto add = [&](bool is, const char* name) {
            if (is) names.append(name);
        };
        add(state.disabled, "disabled");
        add(state.focused, "focused");
        add(state.defaultButton, "default");
        add(state.checkable, "checkable");
        add(state.checked, "checked");
        add(state.selected, "selected");
        add(state.expanded, "expanded");
        add(state.collapsed, "collapsed");
        add(state.readOnly, "read-only");
        return names;
    }

    QList<QObject*> tabOrder_;
    QList<QRect> places_;  // of what has no parts
    QString text_;
};

}  // namespace

void approve(const QString& name, QWidget& window) { approve(name, Description(window).text()); }

void approve(const QString& name, const QString& text) {
    const QByteArray now = text.toUtf8();
    QFile file(APPROVED_DIR "/" + name + ".txt");
    if (qEnvironmentVariableIsSet("APPROVE")) {
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(now);
        return;
    }
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(name));
    const auto approved = file.readAll().split('\n');
    const auto lines = now.split('\n');
    for (qsizetype i = 0; i < std::max(approved.size(), lines.size()); ++i) {
        const QByteArray told = name.toUtf8() + " " + QByteArray::number(i + 1) + ": ";
        QCOMPARE(told + lines.value(i), told + approved.value(i));
    }
}
