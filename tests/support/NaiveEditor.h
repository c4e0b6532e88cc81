// A naive model of the editor, with lists and plain loops: it stores no keys, finds everything by
// linear search, and shares only alphabeticallyBefore() with the editor. It performs an action of
// ScriptedUser and returns the state that the editor must then have. Outdated rows are taken from
// the editor.
#pragma once

#include "support/ScriptedUser.h"

/// Pairs of a name and a value to compare.
using State = std::vector<std::pair<std::string, std::string>>;

/// The state of the real editor.
inline State stateOf(const EditorWorld& world) {
    const Document& document = world.document;
    std::string nodes, records, rows, messages;
    for (const ConfigTree* tree : {&document.tree(), &document.detached()}) {
        for (TreeWalk walk(*tree->root()); const Node* node = walk.next();)
            nodes.append(tagOf(node->kind())).append(" " + node->key() + ", ");
        nodes += "| ";
    }
    for (const auto& [key, device] : document.devices())
        records.append(key).append(", ");
    for (const auto& [key, branch] : document.branches())
        records.append(key).append(", ");
    for (const auto& [key, item] : document.items())
        records.append(key).append("=" + item->sKey + " '" + item->sComment + "', ");
    for (const auto& row : world.editor.ListView1.rows())
        rows += row.key + " " + row.text() + " '" + row.cell(1) + (row.selected ? "' *, " : "', ");
    for (std::size_t i = 0; i < world.desktop.messages().size(); ++i)
        messages += world.desktop.messages()[i] + world.desktop.styles()[i] + "\n";
    return {{"nodes", nodes},
            {"records", records},
            {"list", rows},
            {"selected", document.tree().selected()->key().string()},
            {"enabled", stateNameOf(world.enabledNow())},
            {"saved", document.saved ? "yes" : "no"},
            {"next item", std::to_string(document.itemCounter())},
            {"clipboard", world.desktop.clipboard},
            {"messages", messages}};
}

class NaiveEditor {
 public:
    void perform(const Step& step) {
        messages_.clear();
        refused_.clear();
        step_ = &step;
        act(step.verb, step.what);
        if (sortColumn_) sortRows();
    }
    /// Takes the keys of outdated rows, whose things were removed, dragged or renamed, from the
    /// editor.
    void adoptOutdatedRows(const std::deque<ListView::Row>& shown) {
        for (std::size_t i = 0; i < std::min(rows_.size(), shown.size()); ++i)
            if (isOutdated(rows_[i])) rows_[i].key = shown[i].key.string();
    }

    State state() const {
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
                records +=
                    each->key() + (kind == item ? "=" + key + " '" + comment + "'" : "") + ", ";
            }
        for (const Row& row : rows_)
            rows +=
                row.key + " " + row.text + " '" + row.comment + (row.selected ? "' *, " : "', ");
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
    enum Kind : std::size_t { config, plcKind, branchKind, item };
    static constexpr std::array tags{"config", "plc", "branch", "item"};
    /// Shared by dragged copies. Its key is that of the last place.
    struct Record {
        std::string key, comment;
    };
    struct Thing {
        Kind kind = config;
        std::string name;
        Thing* parent = nullptr;
        std::shared_ptr<Record> record;  // null for the root and a dropped device
        std::vector<Thing*> below;

        bool isDevice() const { return kind == plcKind && record != nullptr; }
        std::string key() const {
            if (kind == config) return "config";
            if (parent == nullptr) return "";
            return isDevice() ? name : parent->key() + "." + name;
        }
        bool isWithin(const Thing* other) const {
            return this == other || (parent != nullptr && parent->isWithin(other));
        }
    };
    struct Row {
        const Thing* thing;
        std::string key, text, comment;
        bool selected = false;
    };
    struct Fault {
        const char* text;
    };
    static constexpr Fault taken{
        "457  This key is already associated with an element of this collection"};
    static constexpr Fault notUnique{"35602  Key is not unique in collection"};
    static constexpr Fault notFound{"35601  Element not found"};
    static constexpr Fault invalid{"5  Invalid procedure call or argument"};
    static constexpr Fault notSet{"91  Object variable or With block variable not set"};

    template <typename Act>
    bool report(const std::string& routine, const Act& act) {
        try {
            act();
            return true;
        } catch (const Fault& fault) {
            return tell(" Error n. " + std::string(fault.text) + " in " + routine);
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

    // Searching.
    static std::vector<Thing*> allIn(Thing& top) {
        std::vector<Thing*> all{&top};
        for (Thing* child : top.below)
            for (Thing* each : allIn(*child))
                all.push_back(each);
        return all;
    }
    Thing* find(const std::string& key, bool alsoDetached = false) const {
        for (Thing* root : {root_, detached_})
            for (Thing* each : allIn(*root))
                if (each->key() == key && (root == root_ || alsoDetached)) return each;
        return nullptr;
    }
    Thing& at(const std::string& key) const {
        Thing* thing = find(key);
        if (thing == nullptr) throw notFound;
        return *thing;
    }
    Thing& itemAt(const std::string& key, const Fault& otherwise) const {
        Thing* thing = find(key);
        if (thing == nullptr) throw otherwise;
        if (thing->kind != item) throw invalid;
        return *thing;
    }
    static std::string inUpperCase(const std::string& text) {
        return readBack::utf8(readBack::inUpperCase(readBack::latin1(text)));
    }
    bool isTaken(Kind kind, const std::string& key) const {
        return std::ranges::any_of(records_, [&](const Thing* other) {
            return other->kind == kind && inUpperCase(other->key()) == inUpperCase(key);
        });
    }
    void requireFree(Kind kind, bool hasRecord, const std::string& key) const {
        if (hasRecord && isTaken(kind, key)) throw taken;
        if (find(key, true) != nullptr) throw notUnique;
    }
    bool isOutdated(const Row& row) const {
        return !row.thing->isWithin(root_) || row.thing->key() != row.key;
    }

    // Changes.
    Thing& add(Thing& parent, Kind kind, const std::string& name, std::shared_ptr<Record> record) {
        things_.push_back({kind, name, &parent, std::move(record), {}});
        Thing& thing = things_.back();
        parent.below.push_back(&thing);
        addRecord(thing);
        return thing;
    }
    /// Moves its record to the end of the records, with its present key.
    void addRecord(Thing& thing) {
        std::erase(records_, &thing);
        if (thing.record == nullptr) return;
        records_.push_back(&thing);
        thing.record->key = thing.key();
    }
    /// Removes them from the tree and selects a neighbour that stays.
    void detach(const std::vector<Thing*>& gone) {
        for (Thing* thing : gone) {
            if (!selected_->isWithin(thing)) continue;
            selected_ = thing->parent;
            bool isPast = false;
            for (Thing* sibling : thing->parent->below) {
                isPast = isPast || sibling == thing;
                if (std::ranges::find(gone, sibling) != gone.end()) continue;
                selected_ = sibling;
                if (isPast) break;
            }
            break;
        }
        for (Thing* thing : gone)
            std::erase(std::exchange(thing->parent, nullptr)->below, thing);
    }
    void remove(const std::vector<Thing*>& gone) {
        for (Thing* thing : gone)
            std::erase_if(records_, [&](const Thing* each) { return each->isWithin(thing); });
        detach(gone);
    }
    void rename(Thing& thing, const std::string& name) {
        const std::string old = thing.key();
        const std::string key = thing.isDevice() ? name : thing.parent->key() + "." + name;
        const auto changed = allIn(thing);
        for (const Thing* each : changed) {
            const std::string before = each->key(), after = key + before.substr(old.size());
            const bool isSame = inUpperCase(before) == inUpperCase(after);
            if (after != before) requireFree(each->kind, each->record && !isSame, after);
        }
        std::vector<Row*> followers;
        for (Row& row : rows_)
            if (!isOutdated(row) && row.thing->isWithin(&thing)) followers.push_back(&row);
        thing.name = name;
        for (Thing* each : changed)
            addRecord(*each);
        for (Row* row : followers)
            row->key = row->thing->key();
    }

    // The list.
    void list(Thing& thing) {
        rows_.push_back({&thing, thing.key(), thing.name, thing.record->comment});
    }
    void nodeClick(Thing& thing) {
        std::ranges::stable_sort(thing.below, [](const Thing* a, const Thing* b) {
            return alphabeticallyBefore(a->name, b->name);
        });
        rows_.clear();
        current_ = none;
        const bool itemFirst = !thing.below.empty() && thing.below[0]->kind == item;
        enabled_ = thing.kind == config ? "root"
                   : thing.kind == item ? "item"
                   : itemFirst          ? "container, items listed"
                                        : "container";
        if (thing.kind == item) list(thing);
        if (thing.kind == config)
            for (Thing* each : records_)
                if (each->kind == plcKind) list(*each);
        if (thing.kind != config)
            for (Thing* child : thing.below)
                if (child->kind == item) list(*child);
    }
    void selectRows(const std::vector<std::string>& texts) {
        focus_ = "list";
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            rows_[i].selected = std::ranges::find(texts, rows_[i].text) != texts.end();
            if (rows_[i].selected) current_ = i;
        }
    }
    void sortRows() {
        const std::string current = current_ < rows_.size() ? rows_[current_].key : "";
        std::ranges::stable_sort(rows_, [&](const Row& a, const Row& b) {
            return sortColumn_ == 0 ? alphabeticallyBefore(a.text, b.text)
                                    : alphabeticallyBefore(a.comment, b.comment);
        });
        for (std::size_t i = 0; i < rows_.size(); ++i)
            if (rows_[i].key == current) current_ = i;
    }
    Row* selectedRow() {
        return current_ < rows_.size() && rows_[current_].selected ? &rows_[current_] : nullptr;
    }

    // Dialogs: "FIELD = NAME; BUTTON; ...".
    std::string typed(std::size_t entry) const {
        return cut(step_->entries.at(entry), " = ").second;
    }
    std::string lastButton() const { return step_->entries.at(step_->entries.size() - 2); }
    bool store(Kind kind, const std::string& name, bool modify, const char* routine) {
        for (const Thing* child : (modify ? selected_->parent : selected_)->below)
            if (child->kind == kind && child->name == name && child != selected_)
                return tell("Name already existing. Please use a different name");
        return report(routine, [&] {
            Thing& parent = kind == plcKind ? *root_ : *selected_;
            if (modify) {
                rename(*selected_, name);
            } else {
                requireFree(kind, true, kind == plcKind ? name : parent.key() + "." + name);
                Thing& added = add(parent, kind, name, std::make_shared<Record>());
                if (kind != item) selected_ = &added;
                if (kind == plcKind) added.record->comment = "COM1";
            }
            saved_ = false;
        });
    }
    void itemDialog(bool modify) {
        std::string name = typed(0), comment = typed(1);
        const int presses = lastButton() == "OK" ? 3 : 1;
        for (int i = 0; i < presses; ++i) {
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
    void selectContainer() {
        Thing* container = selected_->kind == item ? selected_->parent : selected_;
        if (container->kind == config)
            container = selectedRow() == nullptr ? nullptr : find(selectedRow()->key);
        if (container == nullptr || container->kind == config || container->kind == item)
            throw notSet;
        selected_ = container;
    }
    void openProperties() {
        report("TreeView1_DblClick", [&] {
            Thing& thing = *selected_;
            if (thing.kind == plcKind && !thing.record) throw invalid;
            if (thing.kind == branchKind) nameDialog(branchKind, true);
            if (thing.kind == plcKind) nameDialog(plcKind, true);
            if (thing.kind == plcKind) nodeClick(thing);
            if (thing.kind != item) return;
            itemDialog(true);
            for (Row& row : rows_) {
                if (row.key != thing.key()) continue;
                row.text = thing.name;
                row.comment = thing.record->comment;
            }
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
            bool first = true;
            for (const Row& row : rows_) {
                if (focus_ != "list" || !row.selected) continue;
                if (row.text.starts_with("New_Item") || row.text.starts_with("Copied_Item"))
                    return void(tell(refusal));
                Thing& copied = itemAt(row.key, invalid);
                if (std::exchange(first, false)) copied_.clear();
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
                requireFree(item, true, target.key() + "." + name);
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
                std::vector<Thing*> gone;
                try {
                    for (const Row& row : rows_)
                        if (row.selected) gone.push_back(&itemAt(row.key, notFound));
                } catch (const Fault&) {
                    remove(gone);
                    throw;
                }
                remove(gone);
                nodeClick(toShow);
            } else if (focus_ == "tree" && selected_->kind != config) {
                const bool isItem = selected_->kind == item;
                const std::string question = "Are you sure you want to delete " + selected_->name;
                if (ask(question + (isItem ? " ? [No]" : " and all its items? [No]")))
                    remove({selected_});
                if (isItem && selected_->parent == nullptr) throw notSet;
                if (isItem) nodeClick(*selected_->parent);
            }
        });
    }
    void drag(Thing& source, Thing* target, bool isCopy) {
        if (target == nullptr || target == source.parent) return;
        if (target->kind == item || (target->isWithin(&source) && source.parent != nullptr))
            return void(tell("Unable to drag nodes here (exclamation)"));
        if (source.parent == nullptr) return;
        const std::string key = target->key() + "." + source.name;
        if (find(key, true) != nullptr)
            return void(tell("Name already in use at this level. Move not allowed (stop)"));
        if (!source.isDevice() && source.record && isTaken(source.kind, key)) return;
        const auto contents = allIn(source);
        const bool isFree = report("CopySubTree", [&] {
            for (const Thing* each : contents)
                if (!source.isDevice())
                    requireFree(each->kind, each->record != nullptr,
                                key + each->key().substr(source.key().size()));
        });
        if (!isFree) return;
        if (source.isDevice()) add(*target, plcKind, source.name, nullptr);
        if (isCopy && !source.isDevice()) copyBelow(source, *target);
        if (isCopy) return;
        detach({&source});
        Thing& place = source.isDevice() ? *detached_ : *target;
        place.below.push_back(&source);
        source.parent = &place;
        for (Thing* each : contents)
            if (!source.isDevice()) addRecord(*each);
    }
    void copyBelow(const Thing& source, Thing& target) {
        Thing& copy = add(target, source.kind, source.name, source.record);
        for (const Thing* child : source.below)
            copyBelow(*child, copy);
    }
    void pasteTexts(bool names) {
        const char* const routine = names ? "Paste_Name_Click" : "Paste_Comment_Click";
        report(routine, [&] {
            if (clipboard_.empty()) return void(tell("Empty clipboard !"));
            const bool hasReturns = clipboard_.find("\r\n") != std::string::npos;
            auto lines = split(clipboard_, hasReturns ? "\r\n" : "\n");
            if (lines.size() > 1) lines.pop_back();
            std::vector<Row*> rows;
            for (Row& row : rows_)
                if (row.selected) rows.push_back(&row);
            for (const std::string& line : lines)
                for (const Thing* child : selected_->below) {
                    const auto isIts = [&](const Row* row) { return row->key == child->key(); };
                    if (!names || child->kind != item || child->name != line) continue;
                    if (std::ranges::any_of(rows, isIts)) continue;
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
                    if (!names) {
                        itemAt(rows[i]->key, invalid).record->comment = lines[i];
                        rows[i]->comment = lines[i];
                    } else if (lines[i].find('.') != std::string::npos) {
                        tell("Character (.) not acceptable in string " + lines[i]);
                    } else {
                        rename(itemAt(rows[i]->key, notFound), lines[i]);
                        rows[i]->text = lines[i];
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
        if (verb == "mnuNewCfg") {
            newConfiguration();
        } else if (verb == "click") {
            focus_ = "tree";
            selected_ = &at(what);
            nodeClick(*selected_);
        } else if (verb == "focus") {
            focus_ = what;
        } else if (verb == "sort") {
            sortColumn_ = std::stoi(what);
        } else if (verb == "rows") {
            selectRows(split(what, " "));
            report("ListView1_Click", [&] {
                if (selectedRow() == nullptr) return;
                const Kind kind = at(selectedRow()->key).kind;
                enabled_ = kind == plcKind      ? "device row"
                           : kind == branchKind ? "container"
                                                : "item";
            });
        } else if (verb == "doublerow") {
            selectRows({what});
            report("ListView1_DblClick", [&] {
                selected_ = &at(selectedRow()->key);
                openProperties();
            });
        } else if (verb == "doubleclick") {
            openProperties();
        } else if (verb == "clipboard") {
            clipboard_ = withLineEnds(what);
        } else if (verb == "drag") {
            const auto [nodes, shift] = cut(what, " with ");
            const auto [from, target] = cut(nodes, " to ");
            drag(at(from), find(target), !shift.empty());
        } else if (verb == "mnuAddPlc") {
            nameDialog(plcKind, false);
        } else if (verb == "mnuAddBranch") {
            report("EH_mnuAddbranch_Click", [&] {
                selectContainer();
                nameDialog(branchKind, false);
            });
        } else if (verb == "mnuAddItem") {
            report("mnuAddItem_Click", [&] {
                selectContainer();
                itemDialog(false);
                nodeClick(*selected_);
            });
        } else if (verb == "mnuPaste") {
            paste();
        } else if (verb == "mnuPasteName" || verb == "mnuPasteComment") {
            pasteTexts(verb == "mnuPasteName");
        }
        if (verb == "mnuCopy" || verb == "mnuCut") copy();
        if (verb == "mnuDelete" || verb == "mnuCut") removeSelected();
    }

    static constexpr std::size_t none = ~std::size_t{0};
    std::deque<Thing> things_{2};  // also removed ones, as rows and copied items point to them
    Thing *root_ = &things_[0], *detached_ = &things_[1], *selected_ = root_;
    std::vector<Thing*> records_;  // the things with a record, in order of adding
    std::vector<Row> rows_;
    std::size_t current_ = none;
    std::optional<int> sortColumn_;
    std::vector<Thing*> copied_;
    int pasteCounter_ = 1, nextItem_ = 0;
    bool isOpen_ = false, saved_ = false;
    std::string enabled_, focus_, clipboard_;
    std::string messages_;
    std::string refused_;  // one character per pasted row: "!" if it was not renamed
    const Step* step_ = nullptr;
};

/// Runs the editor and the naive model side by side.
class TwoEditors : public ScriptedUser {
 public:
    TwoEditors() {
        disk.writesSpoiledFiles = true;
        differs = [this](const auto&...) { dialogDiffers_ = true; };
        forms.whenShown<frmReplace>([this](frmReplace& form) {
            playDialog(form);
            for (std::size_t row = 1; form.accepted() && row < form.faults.size(); ++row)
                signs_ += form.faults[row].empty() ? '.' : '!';
        });
    }

    /// Performs the step in both. Returns the difference of their states, or "".
    std::string differenceAfter(const std::string& line) {
        const Step step(line);
        desktop.forgetMessages();
        signs_.clear();
        if (!play(step) || dialogDiffers_) return "";
        naive_.perform(step);
        naive_.adoptOutdatedRows(editor.ListView1.rows());
        const State expected = naive_.state();
        State actual = stateOf(*this);
        actual.emplace_back("signs of the preview", signs_);
        desktop.forgetMessages();
        for (std::size_t i = 0; i < expected.size(); ++i)
            if (expected[i] != actual[i])
                return "step:     " + line + "\nexpected " + expected[i].first + ": " +
                       expected[i].second + "\nactual   " + actual[i].first + ": " +
                       actual[i].second;
        return "";
    }

 private:
    NaiveEditor naive_;
    std::string signs_;
    bool dialogDiffers_ = false;  // in shortened sequences of steps
};
