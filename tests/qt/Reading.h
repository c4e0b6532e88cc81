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
/// "Data Type: EIS1" is a field without free text. Then the texts that belong to no field.
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
    for (const auto* label : window.findChildren<QLabel*>())
        if (label->buddy() == nullptr && label->isVisible() && label->text().size() > 1)
            parts.append(label->text());
    return window.windowTitle() + ": " + parts.join(", ");
}

/// Checks that no part of the window overlaps another or is cut off, at its own size and enlarged,
/// and that the layout returns to the original one. In the editor's dialogs the fields are aligned,
/// and only the buttons below them move.
inline void expectValidLayout(QWidget& window) {
    const bool isOwn = window.inherits("FormDialog") || window.inherits("AboutBox");
    const auto placeOf = [&](const QWidget* part) {
        return QRect(part->mapTo(&window, QPoint()), part->size());
    };
    const auto places = [&] {
        QMap<QWidget*, QRect> all;
        for (auto* part : window.findChildren<QWidget*>())
            if (part->isVisible() && part->window() == window.window() &&
                !part->inherits("QSizeGrip") && part->layout() == nullptr &&
                std::ranges::none_of(part->findChildren<QWidget*>(), &QWidget::isVisible))
                all[part] = placeOf(part);
        return all;
    };
    const auto before = places();
    const QSize own = window.size();
    for (const int more : {0, 200, 0}) {
        window.resize(own + QSize(more, more));
        QCoreApplication::processEvents();
        const QRect room = window.rect() - window.layout()->contentsMargins();
        QRect buttons, others;
        QSet<int> columns;
        const auto now = places();
        for (const auto& [part, place] : now.asKeyValueRange()) {
            const auto* label = qobject_cast<QLabel*>(part);
            const bool isButton = part->inherits("QPushButton");
            const bool isText = isButton || (label != nullptr && !label->wordWrap());
            const QSize least = isText ? part->sizeHint() : part->minimumSizeHint();
            const QString name = part->objectName() + " " + part->metaObject()->className() + " ";
            QVERIFY2(room.contains(place) && place.size() == place.size().expandedTo(least),
                     qPrintable(name + "is cut off"));
            for (const auto& [other, otherPlace] : now.asKeyValueRange())
                QVERIFY2(other == part || !otherPlace.intersects(place),
                         qPrintable(name + "overlaps " + other->objectName()));
            const bool isBelow = isButton && part->parentWidget()->objectName() != "frmInserimento";
            const QPoint moved = place.topLeft() - before[part].topLeft();
            QVERIFY2(!isOwn || (isBelow ? moved == QPoint(more, more) : moved.y() == 0),
                     qPrintable(name + "moves"));
            (isBelow ? buttons : others) |= place;
            if (label != nullptr && label->buddy() != nullptr && label->isEnabled())
                columns.insert(placeOf(label->buddy()).left());
        }
        QVERIFY(columns.size() < 2);
        if (isOwn) QCOMPARE(buttons.bottomRight(), room.bottomRight());
        const int gap = window.layout()->spacing() + window.fontMetrics().height() / 2;
        QVERIFY(!isOwn || buttons.top() - others.bottom() > gap);
    }
    QCOMPARE(places(), before);
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
