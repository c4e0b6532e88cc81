// Measures how long a user waits in the window. Needs a display or QT_QPA_PLATFORM=offscreen.

#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QTreeView>
#include <filesystem>
#include <memory>
#include <string>

#include "Building.h"
#include "Measuring.h"
#include "dialogs/frmPLC.h"
#include "dialogs/frmReplace.h"
#include "editor/frmEditing.h"
#include "file/CreateXML.h"
#include "qt/MainWindow.h"
#include "qt/QtForms.h"

namespace {

/// Chooses always the same file.
class ChoosingDesktop : public SilentDesktop {
 public:
    explicit ChoosingDesktop(std::string path) : path_(std::move(path)) {}
    std::string chooseFileToOpen(const std::string& /*title*/,
                                 const FileFilter& /*filter*/) override {
        return path_;
    }
    void processPendingEvents() override {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }

 private:
    std::string path_;
};

class SilentRegistry : public FLRegistry {
 public:
    void SetRegValue(RegistryRoot /*root*/, const std::string& /*subKey*/,
                     const std::string& /*valueName*/, const std::string& /*text*/) override {}
};

/// Accepts every preview and renames every device.
class AnsweringForms : public QtForms {
 public:
    using QtForms::showModal;
    void showModal(frmReplace& form) override { form.Command2_Click(); }
    void showModal(frmPLC& form) override {
        form.txtName.text += "2";
        form.cmdApply_Click();
    }
    void show(frmFind& form) override { find = &form; }
    void close(frmFind& /*form*/) override { find = nullptr; }

    frmFind* find = nullptr;
};

/// The complete editor, and a file with this number of items.
class Editor {
 public:
    Editor(void (*fill)(Document&, int), int items)
        : path_((std::filesystem::temp_directory_path() / "opcolvan_window_bench.xml").string()),
          desktop_(path_),
          form_(document_, desktop_, forms_, *disk_, registry_) {
        Document toSave;
        fill(toSave, items);
        CreateXML(path_, toSave, *disk_, desktop_);
        window_ = std::make_unique<MainWindow>(form_, document_);
        window_->show();
        settle();
    }
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;
    ~Editor() { std::filesystem::remove(path_); }

    Document& document() { return document_; }
    frmEditing& form() { return form_; }
    AnsweringForms& forms() { return forms_; }
    ChoosingDesktop& desktop() { return desktop_; }
    Node& nodeAt(const char* key) { return document_.tree().nodeAt(key); }

    void click(Node& node) {
        document_.tree().select(&node);
        form_.activeControl = frmEditing::ActiveControl::tree;
        form_.TreeView1_NodeClick(node);
    }

    /// Selects every `step`th row of the list. Returns the number of selected rows.
    int selectRows(std::size_t step) {
        int selected = 0;
        const ListView::Update update(form_.ListView1);
        for (std::size_t row = 0; row < form_.ListView1.rows().size(); row += step, ++selected)
            form_.ListView1.setSelected(row, true);
        form_.activeControl = frmEditing::ActiveControl::list;
        return selected;
    }

    /// Processes events until everything is painted.
    static void settle() {
        QApplication::processEvents();
        QApplication::sendPostedEvents();
        QApplication::processEvents();
    }

    void open() {
        window_->findChild<QAction*>("mnuOpenCfg")->trigger();
        settle();
    }

 private:
    std::string path_;
    std::unique_ptr<Disk> disk_ = systemDisk();
    ChoosingDesktop desktop_;
    AnsweringForms forms_;
    SilentRegistry registry_;
    Document document_;
    frmEditing form_;
    std::unique_ptr<MainWindow> window_;
};

/// Measures the time from choosing a file to the painted window.
void openFile(benchmark::State& state, void (*fill)(Document&, int)) {
    Editor editor(fill, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.SetIterationTime(secondsOf([&] { editor.open(); }));
        editor.form().mnuCloseCfg_Click();
        Editor::settle();
    }
}

/// Measures the time from a click on the branch with all items to its painted list.
void clickBranch(benchmark::State& state) {
    Editor editor(fillOneBranch, static_cast<int>(state.range(0)));
    editor.open();
    for (auto _ : state) {
        Node& branch = editor.document().tree().nodeAt("Building.ALL");
        state.SetIterationTime(secondsOf([&] {
            editor.form().TreeView1_NodeClick(branch);
            Editor::settle();
        }));
    }
}

/// One branch with this number of items, and a second device with a branch of 1,000 items.
void fillForEditing(Document& document, int items) {
    fillOneBranch(document, items);
    addBranchOf(document, "Annex", 1000);
}

/// Measures one command in the window, from its start to the painted result. Each round has a new
/// editor, as the command changes the configuration. `prepare` selects the input of the command.
/// The counters are the times of undo and redo divided by that of the command, and the bytes of the
/// undo step.
void edit(benchmark::State& state, void (*prepare)(Editor&), void (*command)(Editor&)) {
    Figures undo, redo;
    double bytes = 0;
    for (auto _ : state) {
        Editor editor(fillForEditing, static_cast<int>(state.range(0)));
        editor.open();
        editor.click(editor.nodeAt("Building.ALL"));
        prepare(editor);
        Editor::settle();
        const auto timeOf = [&](auto&& work) {
            return secondsOf([&] {
                work();
                Editor::settle();
            });
        };
        const double time = timeOf([&] { command(editor); });
        state.SetIterationTime(time);
        bytes = static_cast<double>(editor.document().historyBytes());
        if (bytes == 0) continue;
        undo.add(timeOf([&] { editor.form().mnuUndo_Click(); }) / time);
        redo.add(timeOf([&] { editor.form().mnuRedo_Click(); }) / time);
    }
    if (bytes == 0) return;
    state.counters["undo"] = undo.median();
    state.counters["redo"] = redo.median();
    state.counters["step_bytes"] = bytes;
}

void drop(Editor& editor, DropEffect effect) {
    TreeDrag& drag = editor.form().treeDrag();
    drag.TreeView1_MouseDown(TreeDrag::rightButton, 0, &editor.nodeAt("Building.ALL"));
    drag.TreeView1_OLEDragOver(&editor.nodeAt("Annex"));
    drag.TreeView1_OLEDragDrop(effect);
}

void fillClipboard(Editor& editor, std::size_t step) {
    const int lines = editor.selectRows(step);
    std::string& text = editor.desktop().clipboard;
    for (int i = 0; i < lines; ++i)
        text += "Pasted_" + std::to_string(i) + "\r\n";
}

const struct {
    const char* name;
    void (*prepare)(Editor&);
    void (*command)(Editor&);
} edits[] = {
    {"Paste1000Items",
     [](Editor& editor) {
         editor.click(editor.nodeAt("Annex.MORE"));
         editor.selectRows(1);
         editor.form().mnuCopy_Click();
         editor.click(editor.nodeAt("Building.ALL"));
     },
     [](Editor& editor) { editor.form().mnuPaste_Click(); }},
    {"DeleteEverySixthRow", [](Editor& editor) { editor.selectRows(6); },
     [](Editor& editor) { editor.form().mnuDelete_Click(); }},
    {"MoveBranch", [](Editor&) {}, [](Editor& editor) { drop(editor, DropEffect::move); }},
    {"CopyBranch", [](Editor&) {}, [](Editor& editor) { drop(editor, DropEffect::copy); }},
    {"RenameDeviceAbove", [](Editor& editor) { editor.click(editor.nodeAt("Building")); },
     [](Editor& editor) { editor.form().TreeView1_DblClick(); }},
    {"PasteAllComments", [](Editor& editor) { fillClipboard(editor, 1); },
     [](Editor& editor) { editor.form().mnuPasteComment_Click(); }},
    {"PasteEverySixthName", [](Editor& editor) { fillClipboard(editor, 6); },
     [](Editor& editor) { editor.form().mnuPasteName_Click(); }},
    {"FindLastNode",
     [](Editor& editor) {
         editor.form().mnuFind_Click();
         editor.forms().find->txtFind.text = "more_999";
     },
     [](Editor& editor) { editor.forms().find->cmdFind_Click(); }},
};

void windowSizes(benchmark::internal::Benchmark* benchmark) {
    for (const int items : {8192, 65536})
        benchmark->Arg(items);
    benchmark->UseManualTime()->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RegisterBenchmark("OpenBuilding", openFile, fillBuilding)->Apply(windowSizes);
    benchmark::RegisterBenchmark("OpenOneBranch", openFile, fillOneBranch)->Apply(windowSizes);
    benchmark::RegisterBenchmark("ClickBranch", clickBranch)->Apply(windowSizes);
    for (const auto& [name, prepare, command] : edits) {
        benchmark::RegisterBenchmark(name, edit, prepare, command)
            ->Arg(6553)
            ->Arg(65536)
            ->Iterations(3)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
}
