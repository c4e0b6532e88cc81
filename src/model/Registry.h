// The keyed collections of the records of a configuration.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "base/KeyedSet.h"
#include "base/RunTimeError.h"
#include "base/Text.h"

/// An ordered, keyed collection of shared records. It keeps insertion order and ignores the case of
/// keys. Adding, finding and removing take constant time.
///
///     Registry<clsItem> items;
///     items.add(item, "Plant.Floor1.Light3");
///     items.at("plant.floor1.light3").sComment;
///     for (const auto& [key, item] : items) use(key, item->sComment);
///
/// Records are shared pointers for two reasons: the editor clipboard keeps a removed item alive,
/// and one record may have two keys (a copy made by dragging). A constant registry returns constant
/// records only.
template <typename T>
class Registry {
    struct Entry {
        SharedText key;
        std::shared_ptr<T> record;
    };
    struct Keys {
        static bool isEmpty(const Entry& entry) { return entry.key.empty(); }
        static const SharedText& keyOf(const Entry& entry) { return entry.key; }
        static bool equal(std::string_view a, std::string_view b) {
            return equalIgnoringCase(a, b);
        }
    };
    using Entries = KeyedSet<Entry, Keys>;

 public:
    /// An entry that was taken out, with its place: `element.key`, `element.record`.
    using Taken = typename Entries::Taken;

    /// Key and record of each entry, in insertion order.
    class Iterator {
     public:
        struct Value {
            const SharedText& key;
            const T* record;
        };
        explicit Iterator(typename Entries::Iterator entry) : entry_(entry) {}
        Value operator*() const { return {(*entry_).key, (*entry_).record.get()}; }
        Iterator& operator++() {
            ++entry_;
            return *this;
        }
        bool operator==(const Iterator&) const = default;

     private:
        typename Entries::Iterator entry_;
    };

    Registry() = default;
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;
    ~Registry() = default;

    std::size_t count() const { return entries_.size(); }
    Iterator begin() const { return Iterator(entries_.begin()); }
    Iterator end() const { return Iterator(entries_.end()); }

    /// The record under the key; null when there is none.
    const T* find(const SharedText& key) const {
        const Entry* entry = entries_.find(key);
        return entry == nullptr ? nullptr : entry->record.get();
    }

    /// The record under the key. Raises ErrorNumber::invalidCall when there is none.
    const T& at(const SharedText& key) const { return *entryAt(key).record; }

    /// The same as a shared pointer.
    std::shared_ptr<const T> share(const SharedText& key) const { return entryAt(key).record; }

    /// The same as a pointer to a record that may be changed.
    const std::shared_ptr<T>& recordAt(const SharedText& key) { return entryAt(key).record; }

    /// Appends the record under the key. Raises ErrorNumber::keyTaken when the key exists in any
    /// case, and ErrorNumber::invalidCall when it is empty.
    void add(std::shared_ptr<T> record, SharedText key) {
        if (key.empty()) throw RunTimeError(ErrorNumber::invalidCall);
        if (!entries_.add({std::move(key), std::move(record)})) {
            throw RunTimeError(ErrorNumber::keyTaken);
        }
    }

    /// Removes and returns the entry with the key. Raises ErrorNumber::invalidCall when there is
    /// none.
    Taken take(const SharedText& key) {
        Taken taken = entries_.take(key);
        if (Keys::isEmpty(taken.element)) throw RunTimeError(ErrorNumber::invalidCall);
        return taken;
    }

    /// Puts an entry back at its place. The key must be free.
    void putBack(Taken&& taken) { entries_.putBack(std::move(taken)); }

    /// As in KeyedSet.
    std::size_t holes() const { return entries_.holes(); }
    void compact(std::vector<typename Entries::Place*> reserved) {
        entries_.compact(std::move(reserved));
    }

    void clear() { entries_.clear(); }

 private:
    const Entry& entryAt(const SharedText& key) const {
        const Entry* entry = entries_.find(key);
        if (entry == nullptr) throw RunTimeError(ErrorNumber::invalidCall);
        return *entry;
    }

    Entries entries_;
};
