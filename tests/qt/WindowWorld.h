// The editor with its main window open, and the hands of its user.
#pragma once

#include <QAction>
#include <QListView>
#include <QStackedWidget>
#include <QTest>
#include <QToolButton>
#include <string>

#include "qt/MainWindow.h"
#include "qt/Text.h"
#include "qt/TreePane.h"
#include "support/EditorWorld.h"

class WindowWorld {
 public:
    /// Without a disk and dialogs of its own it has faked ones.
    explicit WindowWorld(Disk* own = nullptr, Forms* ownForms = nullptr)
        : form(document, desktop, ownForms != nullptr ? *ownForms : forms,
               own != nullptr ? *own : disk, registry) {
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
    /// The list in its present mode.
    QAbstractItemView& rows() const {
        return *qobject_cast<QAbstractItemView*>(list.currentWidget());
    }
    QTreeView* report() const { return qobject_cast<QTreeView*>(list.currentWidget()); }

    void openText(const std::string& text) {
        disk.files["/plant.xml"] = text;
        open("/plant.xml");
    }
    void open(const std::string& path) {
        desktop.willChoose(path);
        entry("mnuOpenCfg").trigger();
    }

    /// A spot on a node's or a row's picture.
    static QPoint spotOn(QAbstractItemView& view, const QModelIndex& index) {
        view.scrollTo(index);
        const QRect place = view.visualRect(index);
        return {place.left() + 8, place.center().y()};
    }
    QPoint spotOnNode(const char* key) {
        const auto* model = qobject_cast<TreeModel*>(tree.model());
        return spotOn(tree, model->indexOf(document.tree().FindNode(key)));
    }
    QPoint spotOnRow(int row) const { return spotOn(rows(), rows().model()->index(row, 0)); }

    void clickNode(const char* key) {
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, spotOnNode(key));
    }
    void clickRow(int row, Qt::KeyboardModifiers keys = {}) const {
        QTest::mouseClick(rows().viewport(), Qt::LeftButton, keys, spotOnRow(row));
    }
    /// Two clicks as a mouse makes them.
    static void doubleClick(const QAbstractItemView& view, QPoint spot) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, spot);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, spot);
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, spot);
    }
    void openNode(const char* key) { doubleClick(tree, spotOnNode(key)); }

    /// The texts in the list's first column, from the first row to the last.
    QString names() const {
        QStringList texts;
        for (int row = 0; row < rows().model()->rowCount(); ++row)
            texts.append(rows().model()->index(row, 0).data().toString());
        return texts.join(' ');
    }
};
