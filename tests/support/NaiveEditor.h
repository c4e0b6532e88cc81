// A naive model of the editor. It performs an action of ScriptedUser and returns the state that the
// editor must then have. It shares only alphabeticallyBefore() with the editor.
#pragma once

#include "support/NaiveModel.h"

/// Pairs of a name and a value to compare.
using State = std::vector<std::pair<std::string, std::string>>;

class NaiveEditor : private NaiveModel {
 public:
    void perform(const Step& step) {
        messages_.clear();
        refused_.clear();
        step_ = &step;
        act(step.verb, step.what);
        if (sortColumn_ && *sortColumn_ < 2) sortRows();  // no list has a column 6
    }

    State state() const {
        static constexpr std::array tags{"config", "plc", "branch", "item"};
        std::string nodes, records, rows;
        for (Thing* root : {root_, detached_}) {
            for (const Thing* each : allIn(*root))
                if (each != root) nodes += tags.at(each->kind) + (" " + each->key() + ", ");
            nodes += "| ";
        }
        for (const Kind kind : {plcKind, branchKind, item})
            for (const Thing* each : records_) {
                if (each->kind != kind) continue;
                const auto& [key, comment] = *each->record;
                records += each->key() + (kind == item ? "=" + key + "/" + comment : "") + ", ";
            }
        for (const auto& [key, text, comment, selected] : rows_)
            rows += key + "=" + text + "/" + comment + (selected ? " *, " : ", ");
        return {{"nodes", nodes},
                {"records", records},
                {"list", rows},
                {"selected", selected_->key()},
                {"enabled", enabled_},
                {"saved", saved_ ? "yes" : "no"},
                {"next item", std::to_string(nextItem_)},
                {"clipboard", clipboard_},
                {"messages", messages_},
                {"signs of the preview", refused_}};
    }

 private:
    struct Row {
        std::string key, text, comment;
        bool selected = false;
    };

    template <typename Act>
    bool report(const std::string& routine, const Act& act) {
        try {
            act();
            return true;
        } catch (const char* error) {
            return tell(" Error n. " + std::string(error) + " in " + routine);
        }
    }
    bool tell(const std::string& message) {
        messages_ += message + "\n";
        return false;
    }
    bool ask(const std::string& question) {
        tell(question);
        return step_->answers.front() == "yes";
    }

    // The list.
    Row* rowOf(const std::string& key) {
        const auto row = std::ranges::find(rows_, key, &Row::key);
        return row == rows_.end() ? nullptr : &*row;
    }
    void selectRows(const std::vector<std::string>& texts) {
        focus_ = "list";
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            rows_[i].selected = std::ranges::find(texts, rows_[i].text) != texts.end();
            if (rows_[i].selected) current_ = i;
        }
    }
    const Row* selectedRow() const {
        return current_ < rows_.size() && rows_[current_].selected ? &rows_[current_] : nullptr;
    }
    std::vector<Row*> selectedRows() {
        std::vector<Row*> rows;
        for (Row& row : rows_)
            if (row.selected) rows.push_back(&row);
        return rows;
    }
    void sortRows() {
        const std::string current = current_ < rows_.size() ? rows_[current_].key : "";
        std::ranges::stable_sort(rows_, alphabeticallyBefore,
                                 sortColumn_ == 0 ? &Row::text : &Row::comment);
        for (std::size_t i = 0; i < rows_.size(); ++i)
            if (rows_[i].key == current) current_ = i;
    }
    /// A row follows the thing that has its key now. A thing that was removed or dragged leaves its
    /// row, and another one may get the key.
    void renameListed(Thing& thing, const std::string& name) {
        std::vector<std::pair<Row*, const Thing*>> followers;
        for (Row& row : rows_)
            if (const Thing* shown = find(row.key); shown != nullptr && shown->isWithin(&thing))
                followers.emplace_back(&row, shown);
        rename(thing, name);
        for (const auto& [row, shown] : followers)
            row->key = shown->key();
    }

    // Clicks.
    void nodeClick(Thing& thing) {
        std::ranges::stable_sort(thing.below, alphabeticallyBefore, &Thing::name);
        rows_.clear();
        current_ = none;
        const bool itemFirst = !thing.below.empty() && thing.below[0]->kind == item;
        enabled_ = thing.kind == config ? "root"
                   : thing.kind == item ? "item"
                   : itemFirst          ? "container, items listed"
                                        : "container";
        const auto listed = thing.kind == config ? records_
                            : thing.kind == item ? std::vector{&thing}
                                                 : thing.below;
        for (const Thing* each : listed)
            if (each->kind == (thing.kind == config ? plcKind : item))
                rows_.push_back({each->key(), each->name, each->record->comment});
    }
    void clickRows() {
        selectRows(split(step_->what, " "));
        report("ListView1_Click", [&] {
            if (selectedRow() == nullptr) return;
            const Kind kind = at(selectedRow()->key).kind;
            enabled_ = kind == plcKind ? "device row" : kind == branchKind ? "container" : "item";
        });
    }
    void doubleClickRow() {
        selectRows({step_->what});
        report("ListView1_DblClick", [&] {
            selected_ = &at(selectedRow()->key);
            openProperties();
        });
    }

    // Dialogs: "FIELD = NAME; BUTTON; ...".
    std::string typed(std::size_t entry) const {
        return cut(step_->entries.at(entry), " = ").second;
    }
    bool store(Kind kind, const std::string& name, bool modify, const char* routine) {
        for (const Thing* child : (modify ? selected_->parent : selected_)->below)
            if (child->kind == kind && child->name == name && child != selected_)
                return tell("Name already existing. Please use a different name");
        return report(routine, [&] {
            if (modify) {
                renameListed(*selected_, name);
            } else {
                Thing& parent = kind == plcKind ? *root_ : *selected_;
                Thing& added = add(parent, kind, name, std::make_shared<Record>());
                if (kind != item) selected_ = &added;
                if (kind == plcKind) added.record->comment = "COM1";  // listed at its place
            }
            saved_ = false;
        });
    }
    void itemDialog(bool modify) {
        std::string name = typed(0), comment = typed(1);
        const bool isVector = step_->entries.at(step_->entries.size() - 2) == "OK";
        for (int i = 0; i < (isVector ? 3 : 1); ++i) {
            if (name.empty()) return void(tell("Item name field is empty."));
            if (!store(item, name, modify, "AddItemToColl")) return;
            (modify ? *selected_ : *selected_->below.back()).record->comment = comment;
            if (!modify) name = "New_Item_" + std::to_string(++nextItem_);
            comment.clear();
        }
    }
    void nameDialog(Kind kind, bool modify) {
        const bool isDevice = kind == plcKind;
        if (isDevice && typed(0).empty()) return void(tell("Object Name field is empty."));
        if (!store(kind, typed(0), modify, isDevice ? "cmdApply_Click" : "cmdOk_Click")) return;
        if (isDevice) nodeClick(*selected_);
    }
    void openProperties() {
        report("TreeView1_DblClick", [&] {
            Thing& thing = *selected_;
            if (thing.kind == plcKind && !thing.record) throw invalid;
            if (thing.kind == plcKind || thing.kind == branchKind) nameDialog(thing.kind, true);
            if (thing.kind == plcKind) nodeClick(thing);
            if (thing.kind != item) return;
            Row* own = rowOf(thing.key());
            itemDialog(true);
            for (Row* row : {own, rowOf(thing.key())})
                if (row != nullptr)
                    std::tie(row->text, row->comment) = std::tie(thing.name, thing.record->comment);
        });
    }
    void addBelow(Kind kind) {
        report(kind == item ? "mnuAddItem_Click" : "EH_mnuAddbranch_Click", [&] {
            Thing* container = selected_->kind == item ? selected_->parent : selected_;
            if (container->kind == config)
                container = selectedRow() == nullptr ? root_ : find(selectedRow()->key);
            if (container == nullptr || container->kind == config || container->kind == item)
                throw notSet;
            selected_ = container;
            if (kind == branchKind) return nameDialog(branchKind, false);
            itemDialog(false);
            nodeClick(*selected_);
        });
    }

    // Commands.
    void copy() {
        pasteCounter_ = 0;
        report("mnuCopy_Click", [&] {
            const std::string refusal =
                "Please change Item name (do not use default name) before copying";
            if (focus_ == "tree") {
                if (selected_->kind == branchKind)
                    tell("Please use Drag&Drop to copy and paste branches");
                if (selected_->kind != item) return;
                if (selected_->name.starts_with("New_Item")) return void(tell(refusal));
                copied_ = {selected_};
            }
            if (focus_ != "list") return;
            for (bool isFirst = true; const Row* row : selectedRows()) {
                if (row->text.starts_with("New_Item") || row->text.starts_with("Copied_Item"))
                    return void(tell(refusal));
                Thing& copied = itemAt(row->key, invalid);
                if (std::exchange(isFirst, false)) copied_.clear();
                copied_.push_back(&copied);
            }
        });
    }
    void paste() {
        Thing& target = *selected_;
        if (target.kind != plcKind && target.kind != branchKind) return;
        bool any = false;
        const bool isWhole = report("mnuPaste_Click", [&] {
            for (const Thing* source : copied_) {
                std::string name = source->name;
                if (name.empty()) continue;
                const std::string& from = source->record->key;
                const bool isBeside = from.substr(0, from.rfind('.')) == target.key();
                if (isBeside) name += "_" + std::to_string(pasteCounter_);
                while (isTaken(item, target.key() + "." + name))
                    name += "_" + std::to_string(++pasteCounter_);
                add(target, item, name, std::make_shared<Record>(*source->record));
                any = true;
            }
        });
        if (any) nodeClick(target);
        if (isWhole) ++pasteCounter_;
    }
    void removeSelected() {
        report("mnuDelete_Click", [&] {
            if (focus_ == "list") {
                if (!ask("Are you sure you want to delete the selected items ? [No]")) return;
                Thing& toShow = selected_->parent == nullptr ? *selected_ : *selected_->parent;
                for (const Row* row : selectedRows())
                    remove(itemAt(row->key, notFound));
                nodeClick(toShow);
            } else if (focus_ == "tree" && selected_->kind != config) {
                const bool isItem = selected_->kind == item;
                const std::string question = "Are you sure you want to delete " + selected_->name;
                if (ask(question + (isItem ? " ? [No]" : " and all its items? [No]")))
                    remove(*selected_);
                if (isItem && selected_->parent == nullptr) throw notSet;
                if (isItem) nodeClick(*selected_->parent);
            }
        });
    }
    void drag() {
        const auto [nodes, shift] = cut(step_->what, " with ");
        const auto [from, to] = cut(nodes, " to ");
        Thing& source = at(from);
        Thing* target = find(to);
        if (target == nullptr || target == source.parent) return;
        if (target->kind == item || (target->isWithin(&source) && source.parent != nullptr))
            return void(tell("Unable to drag nodes here (exclamation)"));
        if (source.parent == nullptr) return;
        const std::string key = target->key() + "." + source.name;
        if (find(key, true) != nullptr)
            return void(tell("Name already in use at this level. Move not allowed (stop)"));
        const bool isDevice = source.isDevice(), isCopy = !shift.empty();
        if (!isDevice && source.record && isTaken(source.kind, key)) return;
        const auto contents = isDevice ? std::vector<Thing*>{} : allIn(source);
        const bool isFree = report("CopySubTree", [&] {
            for (const Thing* each : contents)
                requireFree(each->kind, each->record != nullptr,
                            key + each->key().substr(source.key().size()));
        });
        if (!isFree) return;
        if (isDevice) add(*target, plcKind, source.name, nullptr);
        if (isCopy && !isDevice) copyBelow(source, *target);
        if (isCopy) return;
        detach(source);
        source.parent = isDevice ? detached_ : target;
        source.parent->below.push_back(&source);
        for (Thing* each : contents)
            addRecord(*each);
    }
    void pasteTexts(bool names) {
        const char* const routine = names ? "Paste_Name_Click" : "Paste_Comment_Click";
        report(routine, [&] {
            if (clipboard_.empty()) return void(tell("Empty clipboard !"));
            const bool hasReturns = clipboard_.find("\r\n") != std::string::npos;
            auto lines = split(clipboard_, hasReturns ? "\r\n" : "\n");
            if (lines.size() > 1) lines.pop_back();
            const auto rows = selectedRows();
            for (const Thing* child : selected_->below) {
                const auto isIts = [&](const Row* row) { return row->key == child->key(); };
                if (!names || child->kind != item || std::ranges::any_of(rows, isIts)) continue;
                if (std::ranges::find(lines, child->name) == lines.end()) continue;
                clipboard_.clear();
                return void(tell("Name already existing"));
            }
            if (rows.size() != lines.size()) return void(tell("Invalid selection"));
            for (const Row* row : rows)
                if (!names) itemAt(row->key, invalid);
            if (step_->entries.front() != "Replace") return;
            saved_ = false;
            refused_.assign(rows.size(), names ? '!' : '.');
            const bool isWhole = report(routine, [&] {
                for (std::size_t i = 0; i < rows.size(); ++i) {
                    const std::string& line = lines[i];
                    if (!names) {
                        rows[i]->comment = itemAt(rows[i]->key, invalid).record->comment = line;
                    } else if (line.find('.') != std::string::npos) {
                        tell("Character (.) not acceptable in string " + line);
                    } else {
                        Thing& thing = itemAt(rows[i]->key, notFound);
                        const std::string key = thing.parent->key() + "." + line;
                        // The row of a thing that is gone may have the key.
                        if (const Row* row = rowOf(key); row != nullptr && row != rows[i]) {
                            requireFree(item, !isSame(key, thing.key()), key);
                            throw notUnique;
                        }
                        renameListed(thing, line);
                        rows[i]->text = line;
                        refused_[i] = '.';
                    }
                }
            });
            if (isWhole) clipboard_.clear();
        });
    }
    void newConfiguration() {
        if (isOpen_ && !saved_) ask("Do you want to save active configuration?");
        NaiveEditor fresh;
        fresh.isOpen_ = true;
        fresh.enabled_ = "configuration open";
        fresh.focus_ = focus_;
        fresh.clipboard_ = clipboard_;
        fresh.messages_ = messages_;
        *this = std::move(fresh);
    }

    void act(const std::string& verb, const std::string& what) {
        if (verb == "click") {
            focus_ = "tree";
            selected_ = &at(what);
            nodeClick(*selected_);
        }
        if (verb == "focus") focus_ = what;
        if (verb == "sort") sortColumn_ = std::stoi(what);
        if (verb == "clipboard") clipboard_ = withLineEnds(what);
        if (verb == "rows") clickRows();
        if (verb == "doublerow") doubleClickRow();
        if (verb == "doubleclick") openProperties();
        if (verb == "drag") drag();
        if (verb == "mnuAddPlc") nameDialog(plcKind, false);
        if (verb == "mnuAddBranch") addBelow(branchKind);
        if (verb == "mnuAddItem") addBelow(item);
        if (verb == "mnuCopy" || verb == "mnuCut") copy();
        if (verb == "mnuDelete" || verb == "mnuCut") removeSelected();
        if (verb == "mnuPaste") paste();
        if (verb == "mnuPasteName") pasteTexts(true);
        if (verb == "mnuPasteComment") pasteTexts(false);
        if (verb == "mnuNewCfg") newConfiguration();
    }

    static constexpr std::size_t none = ~std::size_t{0};
    std::vector<Row> rows_;
    std::size_t current_ = none;
    std::optional<int> sortColumn_;
    std::vector<Thing*> copied_;
    int pasteCounter_ = 1, nextItem_ = 0;
    bool isOpen_ = false, saved_ = false;
    std::string enabled_, focus_, clipboard_, messages_;
    std::string refused_;  // one character per pasted row: "!" if it was not renamed
    const Step* step_ = nullptr;
};
