// What a window shows, read as by an assistive tool.
#pragma once

#include <QtTest>
#include <QtWidgets>
#include <functional>

/// The controls that Tab reaches, from the one that has the focus.
inline QList<QWidget*> tabOrder(const QWidget& window) {
    QList<QWidget*> reached;
    for (QWidget* now = window.focusWidget(); now != nullptr && !reached.contains(now);) {
        reached.append(now);
        QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
        now = window.focusWidget();
    }
    return reached;
}

inline QString accessible(QWidget& widget, QAccessible::Text text) {
    return QAccessible::queryAccessibleInterface(&widget)->text(text);
}

/// "Branch: Branch name:*=B, [OK], Cancel": the title and, in tab order, all fields with their
/// values and all buttons. Fields that can show a sign have "*", the default button has brackets;
/// "Data Type: EIS1" is a field without free text.
inline QString reading(const QWidget& window) {
    QStringList parts;
    for (QWidget* part : tabOrder(window)) {
        const auto* button = qobject_cast<QPushButton*>(part);
        QString text = accessible(*part, QAccessible::Name);
        const auto* combo = qobject_cast<QComboBox*>(part);
        const auto* edit = combo ? combo->lineEdit() : qobject_cast<QLineEdit*>(part);
        const QString is = edit == nullptr ? ": " : edit->actions().isEmpty() ? "=" : "*=";
        if (combo != nullptr) {
            text = combo->accessibleName() + is + combo->currentText();
        } else if (edit != nullptr) {
            const QString which = accessible(*part, QAccessible::Description);
            text += (which.isEmpty() ? "" : " (" + which + ")") + is + edit->text();
        }
        parts.append(button != nullptr && button->isDefault() ? "[" + text + "]" : text);
    }
    return window.windowTitle() + ": " + parts.join(", ");
}

/// Checks that no part of the window overlaps another or is cut off, at its own size and enlarged,
/// and that the layout returns to the original one.
inline void expectValidLayout(QWidget& window) {
    const auto leaves = [&] {
        QList<QWidget*> all;
        for (auto* part : window.findChildren<QWidget*>())
            if (part->isVisibleTo(&window) && part->window() == &window &&
                qobject_cast<QSizeGrip*>(part) == nullptr &&
                (part->layout() == nullptr && part->findChildren<QWidget*>().isEmpty()))
                all.append(part);
        return all;
    };
    const auto placeOf = [&](const QWidget* part) {
        return QRect(part->mapTo(&window, QPoint()), part->size());
    };
    QList<QRect> before;
    for (const QWidget* part : leaves())
        before.append(placeOf(part));
    const QSize own = window.size();
    for (const QSize size : {own, own + QSize(200, 200), own}) {
        window.resize(size);
        QCoreApplication::processEvents();
        const auto parts = leaves();
        for (QWidget* part : parts) {
            const QRect place = placeOf(part);
            const QString name = part->objectName() + " " + part->metaObject()->className();
            QVERIFY2(window.rect().contains(place), qPrintable(name + " is cut off"));
            for (const QWidget* other : parts)
                QVERIFY2(other == part || !placeOf(other).intersects(place),
                         qPrintable(name + " overlaps " + other->objectName()));
        }
    }
    QList<QRect> after;
    for (const QWidget* part : leaves())
        after.append(placeOf(part));
    QCOMPARE(after, before);
}

/// Each button has a mnemonic letter that no other button or label has.
inline void expectMnemonics(const QWidget& window) {
    QStringList known;
    const auto check = [&](const QString& text, bool isButton) {
        const QString letter = QKeySequence::mnemonic(text).toString();
        QVERIFY2(letter.isEmpty() ? !isButton : !known.contains(letter), qPrintable(text));
        known.append(letter);
    };
    for (const auto* label : window.findChildren<QLabel*>())
        if (label->buddy() != nullptr) check(label->text(), false);
    for (const auto* button : window.findChildren<QAbstractButton*>())
        if (!button->text().isEmpty() && !button->inherits("QToolButton"))
            check(button->text(), true);
}

/// The tooltip at a position of a widget, as plain text.
inline QString tooltipAt(QWidget& widget, QPoint spot) {
    QToolTip::showText({}, "none");
    QHelpEvent hover(QEvent::ToolTip, spot, widget.mapToGlobal(spot));
    QCoreApplication::sendEvent(&widget, &hover);
    const QString tip = QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText();
    return tip == "none" ? "" : tip;
}

/// Opens a dialog with `open`, and calls `act` when it is active.
inline void inDialog(const std::function<void()>& open, const std::function<void(QWidget&)>& act) {
    bool shown = false;
    QTimer::singleShot(0, qApp, [&] {
        QWidget* const dialog = QApplication::activeModalWidget();
        QVERIFY(dialog != nullptr && QTest::qWaitForWindowActive(dialog));
        shown = true;
        act(*dialog);
    });
    open();
    QVERIFY(shown);
}
