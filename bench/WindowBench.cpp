// What a person waits for in the window. Run it on a display, or with QT_QPA_PLATFORM=offscreen.

#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QTreeView>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include "Building.h"
#include "editor/frmEditing.h"
#include "file/CreateXML.h"
#include "qt/MainWindow.h"
#include "qt/QtForms.h"

namespace {

/// Chooses the one file that there is.
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

/// The whole editor, with a file that holds so many items.
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
    Editor(Editor&&) = delete;
    Editor& operator=(Editor&&) = delete;
    ~Editor() { std::filesystem::remove(path_); }

    Document& document() { return document_; }
    frmEditing& form() { return form_; }

    /// Until everything is painted and nothing is left to do.
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
    QtForms forms_;
    SilentRegistry registry_;
    Document document_;
    frmEditing form_;
    std::unique_ptr<MainWindow> window_;
};

template <typename Work>
double secondsOf(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// From choosing a file to a painted window.
void openFile(benchmark::State& state, void (*fill)(Document&, int)) {
    Editor editor(fill, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.SetIterationTime(secondsOf([&] { editor.open(); }));
        editor.form().mnuCloseCfg_Click();
        Editor::settle();
    }
}

/// A click on the branch that holds all items, to its painted list.
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

void sizes(benchmark::internal::Benchmark* benchmark) {
    for (const int items : {8192, 65536})
        benchmark->Arg(items);
    benchmark->UseManualTime()->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RegisterBenchmark("OpenBuilding", openFile, fillBuilding)->Apply(sizes);
    benchmark::RegisterBenchmark("OpenOneBranch", openFile, fillOneBranch)->Apply(sizes);
    benchmark::RegisterBenchmark("ClickBranch", clickBranch)->Apply(sizes);
    benchmark::RunSpecifiedBenchmarks();
}
