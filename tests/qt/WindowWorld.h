// The editor with its main window open, and functions that operate it.
#pragma once

#include "qt/MainWindow.h"
#include "qt/Reading.h"
#include "qt/Text.h"
#include "qt/TreePane.h"
#include "support/EditorWorld.h"

class WindowWorld {
 public:
    /// Parts that are not given are fakes. Every warning of Qt fails the running test.
    explicit WindowWorld(Forms* ownForms = nullptr, Disk* ownDisk = nullptr,
                         Desktop* ownDesktop = nullptr)
        : form(document, ownDesktop != nullptr ? *ownDesktop : desktop,
               ownForms != nullptr ? *ownForms : forms, ownDisk != nullptr ? *ownDisk : disk,
               registry) {
        // A platform without a display warns of what it cannot do.
        QTest::failOnWarning(QRegularExpression("^(?!This plugin does not support)"));
        window.show();
        static_cast<void>(QTest::qWaitForWindowExposed(&window));
    }

    FakeDesktop desktop;
    FakeForms forms;
    FakeDisk disk;
    FakeRegistry registry;
    Document document;
    frmEditing form;
    MainWindow window{form, document};
    TreePane& tree = *window.findChild<TreePane*>("TreeView1");
    QStackedWidget& list = *window.findChild<QStackedWidget*>("ListView1");

    QAction& entry(const char* name) const { return *window.findChild<QAction*>(name); }
    QToolButton& button(const char* key) const { return *window.findChild<QToolButton*>(key); }
    /// The list in its present view.
    QAbstractItemView& rows() const {
        return *qobject_cast<QAbstractItemView*>(list.currentWidget());
    }
    QTreeView* report() const { return qobject_cast<QTreeView*>(list.currentWidget()); }

    void openText(const std::string& text) {
        disk.files["/plant.xml"] = text;
        desktop.willChoose("/plant.xml");
        entry("mnuOpenCfg").trigger();
    }

    /// A position on the icon of a node or a row.
    static QPoint spotOn(QAbstractItemView& view, const QModelIndex& index) {
        view.scrollTo(index);
        const QRect place = view.visualRect(index);
        return {place.left() + 8, place.center().y()};
    }
    QModelIndex indexOf(const char* key) const {
        return qobject_cast<TreeModel*>(tree.model())->indexOf(document.tree().FindNode(key));
    }
    QPoint spotOnNode(const char* key) const { return spotOn(tree, indexOf(key)); }
    QPoint spotOnRow(int row) const { return spotOn(rows(), rows().model()->index(row, 0)); }

    static void clicks(const QAbstractScrollArea& view, QPoint spot,
                       Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers held = {}) {
        QTest::mouseClick(view.viewport(), button, held, spot);
        QCoreApplication::processEvents();
    }
    void clicks(const char* key, Qt::MouseButton button = Qt::LeftButton) const {
        clicks(tree, spotOnNode(key), button);
    }
    void clicks(int row, Qt::MouseButton button = Qt::LeftButton,
                Qt::KeyboardModifiers held = {}) const {
        clicks(rows(), spotOnRow(row), button, held);
    }
    /// A double click with the events of a mouse.
    static void doubleClick(const QAbstractItemView& view, QPoint spot) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, spot);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, spot);
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, spot);
    }
    void openNode(const char* key) const { doubleClick(tree, spotOnNode(key)); }

    /// The first difference between the views and the editor, or "". The tree must be as wide as
    /// its widest expanded row, visible or not: otherwise a scroll bar that hides that row would
    /// switch itself off and on forever.
    QString disagreement(bool alsoInTree = true) const {
        if (TreeModel::nodeAt(tree.currentIndex()) != document.tree().selected())
            return "another node is selected";
        int widest = 0;
        alsoInTree = alsoInTree && tree.isVisible();
        auto row = alsoInTree ? tree.model()->index(0, 0) : QModelIndex();
        for (; row.isValid(); row = tree.indexBelow(row)) {
            const Node& node = *TreeModel::nodeAt(row);
            if (node.expanded() != tree.isExpanded(row) && !node.GetChildren().empty())
                return "other nodes are expanded";
            widest =
                std::max(widest, tree.visualRect(row).left() + tree.sizeHintForIndex(row).width());
        }
        widest += tree.horizontalScrollBar()->value();
        const int width = tree.header()->sectionSize(0);
        const int most = std::max(widest * 21 / 20 + 20, tree.viewport()->width());
        if (alsoInTree && (width < widest || width > most))
            return QString("the tree is %1 wide for %2").arg(width).arg(widest);
        const auto& shown = form.ListView1.rows();
        if (rows().model()->rowCount() != static_cast<int>(shown.size())) return "other rows";
        for (int i = 0; const auto& each : shown) {
            if (rows().model()->index(i, 0).data().toString() != toQt(each.text(), drawnCharacters))
                return "a row is outdated";
            if (rows().selectionModel()->isRowSelected(i++) != each.selected)
                return "other rows are selected";
        }
        const QRect area = window.centralWidget()->rect();
        return area.contains(tree.geometry() | list.geometry()) ? "" : "a part is cut off";
    }

    /// The texts of the first row of the list.
    QString cells() const {
        QStringList texts;
        for (int i = 0; i < rows().model()->columnCount(); ++i)
            texts.append(rows().model()->index(0, i).data().toString());
        return texts.join('|');
    }
    /// The texts of the first column, from the first row to the last.
    QString names() const {
        QStringList texts;
        for (const auto& row : form.ListView1.rows())
            texts.append(toQt(row.text()));
        return texts.join(' ');
    }
};
