#include "qt/Approved.h"

#include <QtTest>
#include <QtWidgets>
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

class Description {
 public:
    explicit Description(QWidget& window) {
        // A file chooser is the toolkit's or the platform's own but for what it is asked for.
        if (const auto* chooser = qobject_cast<QFileDialog*>(&window)) {
            QDebug(&text_) << chooser->windowTitle() << chooser->nameFilters()
                           << chooser->acceptMode() << chooser->fileMode() << chooser->options()
                           << chooser->defaultSuffix()
                           << QDir(SAMPLES_DIR).relativeFilePath(chooser->directory().path());
            text_ += chooser->findChild<QLineEdit*>("fileNameEdit")->text() + "\n";
            return;
        }
        tabOrder_ = tabOrder(window);
        add(*QAccessible::queryAccessibleInterface(&window), "");
        addLayout(window);
        if (const QCursor* pointer = QGuiApplication::overrideCursor())
            QDebug(&text_).noquote() << "Pointer" << pointer->shape() << '\n';
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
            text_ += indent + line + "\n";
            indent += "  ";
            auto* part = qobject_cast<QWidget*>(control.object());
            const bool isWhole = part != nullptr && part->layout() == nullptr &&
                                 (parts_.isEmpty() || !parts_.back().widget->isAncestorOf(part));
            const QString name = part == nullptr ? "" : part->objectName();
            if (isWhole)
                parts_.append({name.isEmpty() ? line.section('"', 1, 1) : name, part, {}, {}, {}});
        }
        for (int i = 0; i < control.childCount(); ++i)
            if (QAccessibleInterface* child = control.child(i)) add(*child, indent);
    }

    /// The parts as they lie, in lines from left to right: with a bar between those that are set
    /// apart, "#" between those that overlap. What becomes wider or higher with the window has "+"
    /// or "^" after its name, or "'" for larger letters, what moves to the right or down ">" or "v"
    /// before it. All is as before when the window is.
    void addLayout(QWidget& window) {
        const QSize size = window.size();
        const auto measure = [&](QSize now, Place Part::*place) {
            window.resize(now);
            QCoreApplication::processEvents();
            for (Part& part : parts_)
                part.*place = {{part.widget->mapTo(&window, QPoint()), part.widget->size()},
                               part.widget->font().pointSizeF()};
        };
        measure(size, &Part::before);
        measure(size + QSize(200, 200), &Part::larger);
        measure(size, &Part::now);
        std::ranges::stable_sort(parts_, {}, [](const Part& part) { return part.now.first.top(); });
        for (auto line = parts_.begin(); line != parts_.end();) {
            const int bottom = line->now.first.bottom();
            const auto end = std::find_if(line, parts_.end(), [&](const Part& part) {
                return part.now.first.center().y() > bottom;
            });
            std::ranges::sort(line, end, {},
                              [](const Part& part) { return part.now.first.left(); });
            int right = 0;
            for (text_ += "_"; line != end; ++line) {
                const auto& [place, font] = line->now;
                const auto& [larger, largerFont] = line->larger;
                if (line->before != line->now) QTest::qFail("changed", __FILE__, __LINE__);
                text_ += QString(place.left() > right + 2 ? " | "
                                 : place.left() < right   ? " # "
                                                          : " ") +
                         (larger.left() > place.left() ? ">" : "") +
                         (larger.top() > place.top() ? "v" : "") + line->name +
                         (larger.width() > place.width() ? "+" : "") +
                         (larger.height() > place.height() ? "^" : "") +
                         (isBlank(*line->widget) ? " (blank)" : "") +
                         (largerFont > font ? "'" : "");
                right = place.right();
            }
            text_ += "\n";
        }
    }

    static bool isBlank(QWidget& widget) {
        return widget.grab().toImage().convertToFormat(QImage::Format_Indexed8).colorCount() < 2;
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
        if (const auto* table = qobject_cast<QTableView*>(widget)) {
            QStringList widths;
            for (int i = 0; i < table->model()->columnCount(); ++i)
                widths.append(QString::number(10 * table->columnWidth(i) / table->width()));
            tell("tenths wide ", widths.join('|'));
        }
        tell("tooltip ", widget == nullptr ? QString() : tooltipAt(*widget, {1, 1}));
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
        for (const auto& [is, name] :
             std::initializer_list<std::pair<bool, const char*>>{{state.disabled, "disabled"},
                                                                 {state.focused, "focused"},
                                                                 {state.defaultButton, "default"},
                                                                 {state.checkable, "checkable"},
                                                                 {state.checked, "checked"},
                                                                 {state.selected, "selected"},
                                                                 {state.expanded, "expanded"},
                                                                 {state.collapsed, "collapsed"},
                                                                 {state.readOnly, "read-only"}})
            if (is) names.append(name);
        return names;
    }

    using Place = std::pair<QRect, double>;  // within the window, and the letters' size
    struct Part {
        QString name;
        QWidget* widget;
        Place before, now, larger;
    };
    QList<QObject*> tabOrder_;
    QList<Part> parts_;
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

QString tooltipAt(QWidget& widget, QPoint spot) {
    QToolTip::showText({}, "none");
    QHelpEvent hover(QEvent::ToolTip, spot, widget.mapToGlobal(spot));
    QCoreApplication::sendEvent(&widget, &hover);
    const QString tip = QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText();
    return tip == "none" ? "" : tip;
}

void inDialog(const std::function<void()>& open, const std::function<void(QWidget&)>& act) {
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
