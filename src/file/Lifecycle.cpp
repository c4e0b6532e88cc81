#include "file/Lifecycle.h"

#include "base/Numbers.h"
#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "file/CreateXML.h"
#include "file/ImportXML.h"
#include "model/Product.h"

namespace {

const FileFilter configurationFiles{"configuration files ", "*.xml"};

std::string proposedFileName() { return std::string(productName) + ".xml"; }

}  // namespace

void Lifecycle::mnuNewCfg_Click() {
    reportErrors(desktop_, "mnuNewCfg_Click", [&] {
        if (!saveFirst()) return;
        document_.open = false;
        window_.InitObjects();
        document_.startNew(desktop_.defaultFolder() + proposedFileName());
        document_.open = true;
        document_.saved = false;
        window_.configurationOpened();
    });
}

void Lifecycle::mnuOpenCfg_Click(const std::string& given) {
    reportErrors(desktop_, "mnuOpenCfg_Click", [&] {
        if (!saveFirst()) return;
        const std::string path = given.empty() ? ShowDialSave() : given;
        if (path.empty()) return;
        // If the file cannot be opened, the current configuration stays open.
        if (!reportErrors(desktop_, "ImportXML", [&] { disk_.openToRead(path); })) return;

        load(path);
        if (loading_.endsApplication) mnuExit_Click();
    });
}

/// Sets the flag `underWay` during its lifetime.
class Lifecycle::LoadingUnderWay {
 public:
    explicit LoadingUnderWay(Loading& loading) : loading_(loading) {
        loading_ = {.underWay = true};
    }
    LoadingUnderWay(const LoadingUnderWay&) = delete;
    LoadingUnderWay& operator=(const LoadingUnderWay&) = delete;
    ~LoadingUnderWay() { loading_.underWay = false; }

 private:
    Loading& loading_;
};

void Lifecycle::load(const std::string& path) {
    window_.InitObjects();
    // The old configuration is closed now. Without this line, a failed reading would leave an empty
    // configuration open, and the user would be asked to save it over the chosen file.
    document_.open = false;
    document_.startAt(path);
    noteFile(path);
    const LoadingUnderWay underWay(loading_);
    window_.loadingStarted();
    const auto began = std::chrono::steady_clock::now();
    const bool read = ImportXML(
        path, document_, disk_, desktop_, [&] { window_.itemLoaded(); },
        [&] { return goesOn(began); });
    window_.loadingEnded();
    if (!read) return window_.configurationClosed();

    document_.setCountersFromRecords();
    window_.listDevices();
    document_.open = true;
    document_.saved = true;
    window_.configurationOpened();
}

/// True if the reading that began at that time should continue.
bool Lifecycle::goesOn(std::chrono::steady_clock::time_point began) {
    constexpr std::chrono::seconds patience(1);
    if (std::chrono::steady_clock::now() - began > patience) window_.loadingTakesLong();
    return loading_.goesOn;
}

void Lifecycle::mnuSaveCfg_Click() { save(); }

void Lifecycle::mnuSaveAs_Click() { saveAs(); }

void Lifecycle::mnuCloseCfg_Click() {
    reportErrors(desktop_, "mnuCloseCfg_Click", [&] {
        if (!saveFirst("Do you want to save this configuration?")) return;
        document_.open = false;
        window_.InitObjects();
        window_.configurationClosed();
    });
}

void Lifecycle::mnuExit_Click() { exitApplication("mnuExit_Click"); }

bool Lifecycle::Form_Unload() { return exitApplication("Form_Unload"); }

bool Lifecycle::mayEnd(const std::function<bool()>& mayAsk) {
    bool may = false;
    if (loading_.underWay) cancelLoading();
    reportErrors(desktop_, "Form_Unload", [&] { may = !unsaved() || !mayAsk() || saveFirst(); });
    return may;
}

std::string Lifecycle::ShowDialSave() {
    std::string path;
    reportChooserErrors(desktop_, "ShowDialSave", [&] {
        try {
            path = desktop_.chooseFileToOpen("Open as existing configuration", configurationFiles);
        } catch (const RunTimeError& error) {
            if (error.number() != ErrorNumber::cancelled) throw;
        }
    });
    return path;
}

Lifecycle::SaveOutcome Lifecycle::save() {
    auto outcome = SaveOutcome::failed;
    reportErrors(desktop_, "mnuSaveCfg_Click", [&] {
        if (!document_.open) return;
        const std::string path = document_.currentPath();
        auto known = path == lastPath_ ? lastStamp_ : disk_.stampOf(path);
        if (!mayReplace(path, known)) {
            outcome = SaveOutcome::declined;
            return;
        }
        const Answer answer =
            disk_.exists(path)
                ? desktop_.askYesNoCancel("File " + path + " already existing. Overwrite?")
                : Answer::yes;
        switch (answer) {
            case Answer::yes:
                if (!canBeReadBack()) return;
                // Another program may have changed the file while the questions were open.
                if (!mayReplace(path, known)) {
                    outcome = SaveOutcome::declined;
                    break;
                }
                outcome = write(path);
                if (outcome == SaveOutcome::saved) desktop_.showMessage(path + " saved");
                break;
            case Answer::no: outcome = saveAs(); break;
            case Answer::cancel: outcome = SaveOutcome::declined; break;
        }
    });
    return outcome;
}

Lifecycle::SaveOutcome Lifecycle::saveAs() {
    auto outcome = SaveOutcome::failed;
    reportErrors(desktop_, "mnuSaveAs_Click", [&] {
        if (!document_.open) return;
        try {
            const std::string present = document_.currentPath();
            const char separator = desktop_.defaultFolder().back();
            const std::string folder = present.substr(0, present.find_last_of(separator) + 1);
            const std::string path = desktop_.chooseFileToSave(
                "Save configuration", configurationFiles, folder + proposedFileName());
            auto known = path == lastPath_ ? lastStamp_ : disk_.stampOf(path);
            if (!canBeReadBack()) return;
            if (!mayReplace(path, known)) {
                outcome = SaveOutcome::declined;
                return;
            }
            document_.setPath(path);
            outcome = write(path);
        } catch (const RunTimeError& error) {
            if (error.number() != ErrorNumber::cancelled) throw;
            outcome = SaveOutcome::declined;
        }
    });
    return outcome;
}

void Lifecycle::noteFile(const std::string& path) {
    lastPath_ = path;
    lastStamp_ = disk_.stampOf(path);
}

/// Asks the user if another program has changed the file since the stamp `known`, and sets `known`
/// to the new stamp. Repeats that if the file changes again during the question. Does not ask if
/// the file was removed. Returns false if the user does not want to save.
bool Lifecycle::mayReplace(const std::string& path, std::optional<FileStamp>& known) {
    for (auto stamp = disk_.stampOf(path); stamp && stamp != known; stamp = disk_.stampOf(path)) {
        if (!desktop_.askYesNo(
                "File " + path +
                    " was changed by another program since it was last read or saved "
                    "here. Go on with saving?",
                Answer::no)) {
            return false;
        }
        known = stamp;
    }
    return true;
}

/// True if the configuration can be read back, or the user wants to save it anyway. Otherwise
/// shows the node with the fault and returns false.
bool Lifecycle::canBeReadBack() {
    if (const auto refusal = rules_.refusal()) {
        reportErrors(desktop_, "CreateXML", [&] { throw refusal->error; });
        if (refusal->shown != nullptr) window_.showFault(*refusal->shown);
        return false;
    }
    const auto unreadable = rules_.unreadable();
    if (unreadable.count == 0 ||
        desktop_.askYesNo(withThousandsSeparators(unreadable.count) +
                              " texts cannot be read back by the OPC server, the first in " +
                              unreadable.firstPath + ". Save all the same?",
                          Answer::no)) {
        return true;
    }
    window_.showFault(*unreadable.shown);
    return false;
}

/// The last part of both save commands: writes the file, sets the saved flag and the registry
/// record.
Lifecycle::SaveOutcome Lifecycle::write(const std::string& path) {
    if (!CreateXML(path, document_, disk_, desktop_)) return SaveOutcome::failed;
    noteFile(path);
    document_.noteSaved();
    const std::string subKey =
        "Software\\" + std::string(companyName) + "\\" + std::string(productName);
    try {
        registry_.SetRegValue(RegistryRoot::localMachine, subKey, "ConfigFile", path);
    } catch (...) {
        // The save succeeds even if the record cannot be written.
    }
    return SaveOutcome::saved;
}

bool Lifecycle::saveFirst(const char* question) {
    if (!unsaved() || !desktop_.askYesNo(question)) return true;
    save();
    return document_.saved;
}

/// Deliberate: the application also ends when the user refuses to overwrite the file. It does not
/// end when the user wanted to save and writing failed, as the work would be lost. Returns true if
/// it ends.
bool Lifecycle::exitApplication(const char* routine) {
    bool isEnding = false;
    if (loading_.underWay) {
        loading_.goesOn = false;
        loading_.endsApplication = true;
        return false;
    }
    reportErrors(desktop_, routine, [&] {
        if (unsaved() && desktop_.askYesNo(saveActiveQuestion) && save() == SaveOutcome::failed) {
            return;
        }
        isEnding = true;
        document_.open = false;
        window_.InitObjects();
        document_.clear();
        window_.endApplication();
    });
    return isEnding;
}
