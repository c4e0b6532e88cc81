// A naive model of a configuration, with lists and plain loops: it stores no keys of nodes, finds
// everything by linear search, and shares no rule with the program.
#pragma once

#include "support/ScriptedUser.h"

class NaiveModel {
 protected:
    enum Kind : std::size_t { config, plcKind, branchKind, item };
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

    // Errors, which are thrown.
    static constexpr const char* taken =
        "457  This key is already associated with an element of this collection";
    static constexpr const char* notUnique = "35602  Key is not unique in collection";
    static constexpr const char* notFound = "35601  Element not found";
    static constexpr const char* invalid = "5  Invalid procedure call or argument";
    static constexpr const char* notSet = "91  Object variable or With block variable not set";

    /// The thing and everything below it.
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
    Thing& at(const std::string& key, const char* otherwise = notFound) const {
        Thing* thing = find(key);
        if (thing == nullptr) throw otherwise;
        return *thing;
    }
    Thing& itemAt(const std::string& key, const char* otherwise) const {
        Thing& thing = at(key, otherwise);
        if (thing.kind != item) throw invalid;
        return thing;
    }
    static bool isSame(const std::string& a, const std::string& b) {
        using namespace readBack;
        return inUpperCase(latin1(a)) == inUpperCase(latin1(b));
    }
    bool isTaken(Kind kind, const std::string& key) const {
        return std::ranges::any_of(records_, [&](const Thing* other) {
            return other->kind == kind && isSame(other->key(), key);
        });
    }
    void requireFree(Kind kind, bool hasRecord, const std::string& key) const {
        if (hasRecord && isTaken(kind, key)) throw taken;
        if (find(key, true) != nullptr) throw notUnique;
    }

    Thing& add(Thing& parent, Kind kind, const std::string& name, std::shared_ptr<Record> record) {
        const Thing thing{kind, name, &parent, std::move(record), {}};
        requireFree(kind, thing.record != nullptr, thing.key());
        things_.push_back(thing);
        parent.below.push_back(&things_.back());
        addRecord(things_.back());
        return things_.back();
    }
    void copyBelow(const Thing& source, Thing& target) {
        Thing& copy = add(target, source.kind, source.name, source.record);
        for (const Thing* child : source.below)
            copyBelow(*child, copy);
    }
    /// Moves its record to the end of the records, with its present key.
    void addRecord(Thing& thing) {
        std::erase(records_, &thing);
        if (thing.record == nullptr) return;
        records_.push_back(&thing);
        thing.record->key = thing.key();
    }
    void rename(Thing& thing, const std::string& name) {
        const std::string old = thing.key();
        const std::string key = thing.isDevice() ? name : thing.parent->key() + "." + name;
        const auto changed = allIn(thing);
        for (const Thing* each : changed) {
            const std::string before = each->key(), after = key + before.substr(old.size());
            const bool isNew = each->record != nullptr && !isSame(before, after);
            if (after != before) requireFree(each->kind, isNew, after);
        }
        thing.name = name;
        for (Thing* each : changed)
            addRecord(*each);
    }
    /// Removes it from its parent. A selection within it moves to the next, else the previous
    /// sibling, else the parent.
    void detach(Thing& thing) {
        auto& siblings = thing.parent->below;
        const auto place = std::ranges::find(siblings, &thing);
        if (selected_->isWithin(&thing)) {
            selected_ = thing.parent;
            if (place != siblings.begin()) selected_ = place[-1];
            if (place + 1 != siblings.end()) selected_ = place[1];
        }
        siblings.erase(place);
        thing.parent = nullptr;
    }
    void remove(Thing& thing) {
        std::erase_if(records_, [&](const Thing* each) { return each->isWithin(&thing); });
        detach(thing);
    }

    std::deque<Thing> things_{2};  // also removed ones, as rows and copied items point to them
    Thing *root_ = &things_[0], *detached_ = &things_[1], *selected_ = root_;
    std::vector<Thing*> records_;  // the things with a record, in order of adding
};
